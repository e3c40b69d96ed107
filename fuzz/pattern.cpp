// Patterns: what is compared as a literal, and what is remembered of earlier questions, agrees with RE2 itself.
#include <re2/re2.h>

#include <string>

#include "engine/expression/matcher.h"
#include "platform/text.h"
#include "support/bytes.h"
#include "support/expect.h"

using triglub_fuzz::expect;

namespace {

void compare(const triglub::expression::Matcher& matcher, const RE2& plain, std::string_view text) {
  const std::string_view core = triglub::trimmed(text);
  const bool is_match = RE2::FullMatch(re2::StringPiece(core.data(), core.size()), plain);
  for (int again = 0; again < 2; ++again) expect(matcher.matches(text) == is_match, "RE2 says the same", text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  triglub_fuzz::Bytes bytes(data, size);
  const std::string pattern(bytes.take_until('\n'));
  const RE2 plain(pattern, RE2::Quiet);
  triglub::expression::PatternFault fault;
  const auto matcher = triglub::expression::make_matcher(pattern, &fault);
  expect((matcher != nullptr) == plain.ok(), "RE2 takes the same patterns", pattern);
  if (matcher == nullptr) {
    expect(!fault.reason.empty() && fault.offset <= pattern.size(), "a fault has its place", fault.reason);
    return 0;
  }
  if (matcher->literal() != nullptr) compare(*matcher, plain, *matcher->literal());
  compare(*matcher, plain, pattern);
  while (!bytes.at_end()) compare(*matcher, plain, bytes.take_until('\n'));
  return 0;
}
