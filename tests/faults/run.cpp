// The wait for a process is cut short by an alarm.
#include "faults/run.h"

#include <fcntl.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace triglub_test {

namespace {

void redirect(int descriptor, const std::string& path) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (file < 0 || dup2(file, descriptor) < 0) _exit(126);
  close(file);
}

void set_alarm(std::chrono::seconds after) {
  const itimerval once = {{0, 0}, {after.count(), 0}};
  setitimer(ITIMER_REAL, &once, nullptr);
}

}  // namespace

Ending Ending::of(int wait_status) {
  Ending ending;
  if (WIFEXITED(wait_status)) ending.status = WEXITSTATUS(wait_status);
  if (WIFSIGNALED(wait_status)) ending.signal = WTERMSIG(wait_status);
  return ending;
}

std::string Ending::text() const {
  if (has_hung) return "hung";
  return signal != 0 ? "signal " + std::to_string(signal) : "status " + std::to_string(status);
}

void become(const Start& start) {
  for (const std::string& variable : start.environment) putenv(const_cast<char*>(variable.c_str()));
  redirect(STDOUT_FILENO, start.standard_output);
  redirect(STDERR_FILENO, start.standard_error);
  std::vector<char*> arguments;
  for (const std::string& argument : start.arguments) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  // Whoever runs the tests in the background has some of them ignored, and what is ignored stays so.
  for (const int signal_number : {SIGINT, SIGHUP, SIGQUIT, SIGTERM}) std::signal(signal_number, SIG_DFL);
  if (start.prepare) start.prepare();
  execv(arguments[0], arguments.data());
  _exit(126);
}

WaitLimit::WaitLimit() {
  struct sigaction action {};
  action.sa_handler = [](int) {};  // a wait that it comes into ends
  sigaction(SIGALRM, &action, nullptr);
  set_alarm(kMostTime);
}

WaitLimit::~WaitLimit() { set_alarm(std::chrono::seconds(0)); }

Ending run(const Start& start) {
  const pid_t process = fork();
  if (process < 0) throw std::runtime_error("no process can be made");
  if (process == 0) become(start);
  const WaitLimit limit;
  int status = 0;
  if (waitpid(process, &status, 0) == process) return Ending::of(status);
  kill(process, SIGKILL);
  waitpid(process, &status, 0);
  Ending ending;
  ending.has_hung = true;
  return ending;
}

}  // namespace triglub_test
