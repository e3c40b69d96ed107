// Which allocation of memory fails: shared between a test and the processes that it has fail.
#ifndef TRIGLUB_TESTS_FAULTS_ALLOCATION_PLAN_H
#define TRIGLUB_TESTS_FAULTS_ALLOCATION_PLAN_H

#include <atomic>
#include <cstdint>

namespace triglub_test {

// The environment variable with the path of the file that an AllocationPlan stands in.
inline constexpr const char* kPlanVariable = "TRIGLUB_TEST_ALLOCATIONS";

struct AllocationPlan {
  std::uint64_t at = 0;  // from 1; 0: none fails
  bool do_later_ones_too = false;
  std::atomic<std::uint64_t> made = 0;  // by all threads and processes
};

}  // namespace triglub_test

#endif
