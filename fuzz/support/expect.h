// What has to hold of every input. Where it does not, the process ends so that the input is kept as a finding.
#ifndef TRIGLUB_FUZZ_SUPPORT_EXPECT_H
#define TRIGLUB_FUZZ_SUPPORT_EXPECT_H

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace triglub_fuzz {

inline void expect(bool holds, const char* what, std::string_view detail = {}) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n%.*s\n", what, static_cast<int>(detail.size()), detail.data());
  std::abort();
}

// Both texts, from a little before the place where they part.
inline void expect_same(std::string_view expected, std::string_view actual, const char* what) {
  if (expected == actual) return;
  std::size_t at = 0;
  while (at < expected.size() && at < actual.size() && expected[at] == actual[at]) ++at;
  constexpr std::size_t kBefore = 300;
  constexpr std::size_t kShown = 600;
  const std::size_t from = at < kBefore ? 0 : at - kBefore;
  expect(false, what,
         "--- expected\n" + std::string(expected.substr(from, kShown)) + "\n--- actual\n" +
             std::string(actual.substr(from, kShown)));
}

}  // namespace triglub_fuzz

#endif
