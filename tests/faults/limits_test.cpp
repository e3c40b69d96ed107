// A process that may have little of something.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <iostream>
#include <vector>

#include "faults/conversion.h"
#include "faults/sample.h"

namespace {

using triglub_test::Kind;
using triglub_test::Start;
using triglub_test::TrackedConversion;

constexpr rlim_t kMebibyte = rlim_t{1} << 20;

void set_limit(__rlimit_resource which, rlim_t most) {
  rlimit limit{};
  limit.rlim_cur = limit.rlim_max = most;
  setrlimit(which, &limit);
}

// So little that the system cannot load any program: what comes of that is not the program's.
bool can_load_anything(__rlimit_resource which, rlim_t most) {
  Start start;
  start.arguments = {TRIGLUB_COMMAND, "--version"};
  start.standard_output = start.standard_error = "/dev/null";
  start.prepare = [=] { set_limit(which, most); };
  return triglub_test::run(start).status == 0;
}

void try_limits(const char* what, __rlimit_resource which, const std::vector<rlim_t>& amounts) {
  for (const Kind& kind : triglub_test::all_kinds()) {
    SCOPED_TRACE(kind.text());
    TrackedConversion conversion(kind);
    for (const rlim_t amount : amounts) {
      if (!can_load_anything(which, amount)) continue;
      Start start = conversion.start();
      start.prepare = [=] { set_limit(which, amount); };
      EXPECT_EQ(conversion.fault_of(triglub_test::run(start)), "") << what << " " << amount;
    }
    std::cout << "table: " << what << " | " << kind.text() << " | " << conversion.tally() << std::endl;
  }
}

std::vector<rlim_t> steps(rlim_t first, rlim_t last, rlim_t step, rlim_t wide_step) {
  std::vector<rlim_t> amounts;
  const rlim_t by = triglub_test::are_all_tried() ? step : wide_step;
  for (rlim_t amount = first; amount <= last; amount += by) amounts.push_back(amount);
  return amounts;
}

TEST(Limits, OfOpenFiles) { try_limits("open files", RLIMIT_NOFILE, steps(3, 20, 1, 1)); }
TEST(Limits, OfTheFileSize) { try_limits("file size", RLIMIT_FSIZE, steps(64, 8192, 64, 512)); }
TEST(Limits, OfData) {
  try_limits("data", RLIMIT_DATA, steps(kMebibyte / 4, 40 * kMebibyte, kMebibyte / 4, 2 * kMebibyte));
}
TEST(Limits, OfAddresses) {
  try_limits("addresses", RLIMIT_AS, steps(8 * kMebibyte, 120 * kMebibyte, kMebibyte / 2, 4 * kMebibyte));
}
TEST(Limits, OfTheStack) { try_limits("stack", RLIMIT_STACK, steps(64 << 10, kMebibyte, 16 << 10, 128 << 10)); }

}  // namespace
