// A document with the wrong time in it looks as right as any.
#include "tool/check_clock.h"

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/elog.h"

namespace triglub::tool {

namespace {

constexpr const char* kVariable = "SOURCE_DATE_EPOCH";
constexpr std::uint64_t kYear10000 = 253402300800;  // its begin, in epoch seconds

bool is_time(std::string_view text) {
  std::uint64_t seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  return error == std::errc() && end == text.data() + text.size() && seconds < kYear10000;
}

}  // namespace

void check_clock() {
  const char* const set = std::getenv(kVariable);
  if (set == nullptr || is_time(set)) return;
  elog_die(0, "%s is \"%s\", expected whole seconds since 1970, before the year 10000", kVariable, set);
}

}  // namespace triglub::tool
