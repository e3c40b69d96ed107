// Every call of the system that a conversion makes fails in turn.
#include <gtest/gtest.h>

#include <iostream>

#include "faults/conversion.h"
#include "faults/sample.h"
#include "faults/traced_run.h"

namespace {

using triglub_test::all_kinds;
using triglub_test::CallPlan;
using triglub_test::Kind;
using triglub_test::run_traced;
using triglub_test::TrackedConversion;

// Runs of one kind that are enough where not all are asked for.
constexpr std::uint64_t kFew = 12;

std::uint64_t calls_of(TrackedConversion& conversion, CallPlan plan) {
  plan.at = 0;
  return run_traced(conversion.start(), plan).calls;
}

void try_plan(TrackedConversion& conversion, const CallPlan& plan) {
  const auto outcome = run_traced(conversion.start(), plan);
  EXPECT_EQ(conversion.fault_of(outcome.ending, plan.signal, outcome.is_of_messages), "")
      << "call " << plan.at << ": " << outcome.call;
}

void try_all(const char* what, const CallPlan& plan) {
  if (const std::string why = triglub_test::why_not_traced(); !why.empty()) GTEST_SKIP() << why;
  for (const Kind& kind : all_kinds()) {
    if (plan.is_for_workers && (kind.edition == 2 || kind.jobs == 1)) continue;
    SCOPED_TRACE(kind.text());
    TrackedConversion conversion(kind);
    const std::uint64_t calls = calls_of(conversion, plan);
    ASSERT_GT(calls, 0U) << "calls are not counted";
    CallPlan at = plan;
    for (const std::uint64_t call : triglub_test::sample(calls, kFew)) {
      at.at = call;
      try_plan(conversion, at);
    }
    std::cout << "table: " << what << " | " << kind.text() << " | " << conversion.tally() << std::endl;
  }
}

TEST(SystemCalls, ThatFailOnce) { try_all("one call fails", {}); }

TEST(SystemCalls, ThatFailFromOneOnward) {
  CallPlan plan;
  plan.are_later_ones_too = true;
  try_all("calls fail from one on", plan);
}

TEST(SystemCalls, ThatFailWithoutUnnamedFiles) {
  CallPlan plan;
  plan.has_unnamed_files = false;
  try_all("one call fails, no unnamed files", plan);
}

void try_signal(const char* what, int signal, bool is_for_workers = false) {
  CallPlan plan;
  plan.signal = signal;
  plan.is_for_workers = is_for_workers;
  try_all(what, plan);
}

TEST(Signals, Int) { try_signal("SIGINT", SIGINT); }
TEST(Signals, Term) { try_signal("SIGTERM", SIGTERM); }
TEST(Signals, Hup) { try_signal("SIGHUP", SIGHUP); }
TEST(Signals, Quit) { try_signal("SIGQUIT", SIGQUIT); }
TEST(Signals, Kill) { try_signal("SIGKILL", SIGKILL); }

// As the system does it that has no more memory.
TEST(Workers, ThatAreKilled) { try_signal("a worker is killed", SIGKILL, true); }

}  // namespace
