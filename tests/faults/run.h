// One run of the command, watched from outside.
#ifndef TRIGLUB_TESTS_FAULTS_RUN_H
#define TRIGLUB_TESTS_FAULTS_RUN_H

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace triglub_test {

// How a process ended.
struct Ending {
  int status = -1;  // of its exit; -1 for none
  int signal = 0;   // that ended it; 0 for none
  bool has_hung = false;

  static Ending of(int wait_status);
  std::string text() const;  // "status 1", "signal 11", "hung"
};

// What a process is started with.
struct Start {
  std::vector<std::string> arguments;         // the first one is the program's path
  std::vector<std::string> environment = {};  // beside that of this process, NAME=VALUE
  std::string standard_output;                // a path, as the next one
  std::string standard_error;
  std::function<void()> prepare = nullptr;  // is called in the new process before the program
};

inline constexpr std::chrono::seconds kMostTime{20};

// To be called in a process made for it. Status 126 when the program cannot be started.
[[noreturn]] void become(const Start& start);

// Runs it to its end, which is brought about by SIGKILL after kMostTime.
Ending run(const Start& start);

// Ends a wait of this process with EINTR after kMostTime, as long as it lives.
class WaitLimit {
 public:
  WaitLimit();
  ~WaitLimit();
  WaitLimit(const WaitLimit&) = delete;
  WaitLimit& operator=(const WaitLimit&) = delete;
};

}  // namespace triglub_test

#endif
