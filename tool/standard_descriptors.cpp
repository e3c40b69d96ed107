// Opened the wrong way round: nobody takes a document that nobody gets for written.
#include "tool/standard_descriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace triglub::tool {

namespace {

[[noreturn]] void die() {
  // It may be standard error that is closed: the status tells it then.
  constexpr std::string_view kText = "triglub: fatal: /dev/null cannot be opened for a standard file that is closed\n";
  if (write(STDERR_FILENO, kText.data(), kText.size()) < 0) _exit(EXIT_FAILURE);
  _exit(EXIT_FAILURE);
}

}  // namespace

void open_standard_descriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) >= 0) continue;
    // The lowest number that is free is the one that was closed.
    if (open("/dev/null", descriptor == STDOUT_FILENO ? O_RDONLY : O_WRONLY) != descriptor) die();
  }
}

}  // namespace triglub::tool
