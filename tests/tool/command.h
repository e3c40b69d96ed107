// Runs the command as a user would.
#ifndef TRIGLUB_TESTS_TOOL_COMMAND_H
#define TRIGLUB_TESTS_TOOL_COMMAND_H

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace triglub_test {

struct Outcome {
  std::string output;
  int status;
};

// The standard output and exit status of a line for the shell, in which $TRIGLUB is the command.
inline Outcome run_shell(const std::string& line) {
  const std::string setup =
      "export SOURCE_DATE_EPOCH=1700000000 TRIGLUB_PFPATH=" TRIGLUB_SOURCE_DIR "/data TRIGLUB=" TRIGLUB_COMMAND "; ";
  FILE* pipe = popen((setup + line).c_str(), "r");
  Outcome outcome{"", -1};
  std::array<char, 65536> buffer;
  for (std::size_t n = 0; (n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
    outcome.output.append(buffer.data(), n);
  outcome.status = WEXITSTATUS(pclose(pipe));
  return outcome;
}

}  // namespace triglub_test

#endif
