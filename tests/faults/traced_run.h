// A run in which calls of the system fail, or signals come in between, at a point that is chosen.
#ifndef TRIGLUB_TESTS_FAULTS_TRACED_RUN_H
#define TRIGLUB_TESTS_FAULTS_TRACED_RUN_H

#include <cstdint>
#include <string>

#include "faults/run.h"

namespace triglub_test {

// What is to happen at a call of the system. Calls are counted from 1, from the first one of the program's main on,
// over all threads and processes; those that are left out (traced_run.cpp says why) do not count.
struct CallPlan {
  std::uint64_t at = 0;  // 0: at none
  bool are_later_ones_too = false;
  int signal = 0;                 // comes before the call; 0: the call fails
  bool is_for_workers = false;    // calls of processes that the program made alone count, and signals go there
  bool has_unnamed_files = true;  // no: the file system can have no files without a name
};

struct CallOutcome {
  Ending ending;
  std::uint64_t calls = 0;  // that were counted
  bool is_met = false;      // what was planned has happened
  bool is_of_messages = false;
  std::string call;  // the number of the one that it happened at, with its first arguments
};

// Why nothing can be traced here; empty when it can.
std::string why_not_traced();

CallOutcome run_traced(const Start& start, const CallPlan& plan);

}  // namespace triglub_test

#endif
