// Asked of the clock or of the environment once a process.
#include "engine/expression/now.h"

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string_view>

#include "platform/elog.h"

namespace triglub::expression {

namespace {

std::optional<double> source_date_epoch() {
  const char* set = std::getenv("SOURCE_DATE_EPOCH");
  if (set == nullptr) return std::nullopt;
  const std::string_view text = set;
  std::uint64_t seconds = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (read.ec == std::errc() && read.ptr == text.data() + text.size()) return static_cast<double>(seconds);
  elog_complain(0, "SOURCE_DATE_EPOCH is \"%s\", expected seconds since 1970; now() is the clock's time", set);
  return std::nullopt;
}

}  // namespace

double now() {
  static const double first_call = source_date_epoch().value_or(static_cast<double>(std::time(nullptr)));
  return first_call;
}

}  // namespace triglub::expression
