// Every allocation of memory fails in turn.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <iostream>
#include <new>
#include <stdexcept>

#include "faults/allocation_plan.h"
#include "faults/conversion.h"
#include "faults/sample.h"

namespace {

using triglub_test::AllocationPlan;
using triglub_test::Ending;
using triglub_test::Kind;
using triglub_test::Start;
using triglub_test::TrackedConversion;

constexpr std::uint64_t kFew = 25;

// A plan in a file of its own, which goes with it.
class SharedPlan {
 public:
  SharedPlan() : path_("/dev/shm/triglub_plan_XXXXXX") {
    const int file = mkstemp(path_.data());
    if (file < 0 || ftruncate(file, sizeof(AllocationPlan)) != 0) throw std::runtime_error("no shared memory");
    void* memory = mmap(nullptr, sizeof(AllocationPlan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    if (memory == MAP_FAILED) throw std::runtime_error("no shared memory");
    plan_ = new (memory) AllocationPlan;
  }
  ~SharedPlan() {
    munmap(plan_, sizeof(AllocationPlan));
    unlink(path_.c_str());
  }
  SharedPlan(const SharedPlan&) = delete;
  SharedPlan& operator=(const SharedPlan&) = delete;

  Ending run(Start start, std::uint64_t at, bool do_later_ones_too) {
    plan_->at = at;
    plan_->do_later_ones_too = do_later_ones_too;
    plan_->made = 0;
    start.environment.push_back(std::string(triglub_test::kPlanVariable) + "=" + path_);
    start.environment.emplace_back("LD_PRELOAD=" TRIGLUB_FAILING_ALLOCATIONS);
    return triglub_test::run(start);
  }
  std::uint64_t made() const { return plan_->made; }

 private:
  std::string path_;
  AllocationPlan* plan_ = nullptr;
};

void try_all(const char* what, bool do_later_ones_too) {
  SharedPlan plan;
  for (const Kind& kind : triglub_test::all_kinds()) {
    SCOPED_TRACE(kind.text());
    TrackedConversion conversion(kind);
    ASSERT_EQ(conversion.fault_of(plan.run(conversion.start(), 0, false)), "");
    ASSERT_GT(plan.made(), kFew) << "allocations are not counted";
    for (const std::uint64_t number : triglub_test::sample(plan.made(), kFew)) {
      EXPECT_EQ(conversion.fault_of(plan.run(conversion.start(), number, do_later_ones_too)), "")
          << "allocation " << number;
    }
    std::cout << "table: " << what << " | " << kind.text() << " | " << conversion.tally() << std::endl;
  }
}

TEST(Allocations, ThatFailOnce) { try_all("one allocation fails", false); }
TEST(Allocations, ThatFailFromOneOnward) { try_all("allocations fail from one on", true); }

}  // namespace
