// Handlers may use what is safe at any moment only: plain memory, and calls of the system.
#include "tool/endings.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <mutex>
#include <new>
#include <string_view>

namespace triglub::tool {

namespace {

// What ends a process unless it is asked for. Not those of a fault of the program: a handler could not trust the
// memory it stands on.
constexpr std::array kEndingSignals = {SIGHUP,  SIGINT,  SIGQUIT, SIGTERM, SIGALRM,   SIGVTALRM, SIGPROF,
                                       SIGXCPU, SIGUSR1, SIGUSR2, SIGPOLL, SIGSTKFLT, SIGPWR,    SIGABRT};

constexpr std::array kFates = {"; nothing is written\n", "; the document is not whole\n", "; the document is whole\n",
                               "\n"};

constinit std::atomic<Fate> current_fate = Fate::nothing_written;
static_assert(std::atomic<Fate>::is_always_lock_free, "a handler may meet the lock taken");

// A plain array, since a handler may not touch strings.
constinit char unfinished[PATH_MAX] = "";

constinit std::atomic_flag is_ending;
constinit std::atomic<bool> do_threads_work = false;

void put(std::string_view text) {
  // Nobody is left to hear of a failure.
  if (write(STDERR_FILENO, text.data(), text.size()) < 0) return;
}

// Of numbers up to 99, as signals have.
void put_number(int number) {
  const char digits[] = {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
  put(number < 10 ? std::string_view(digits + 1, 1) : std::string_view(digits, 2));
}

void put_fate() { put(kFates[static_cast<std::size_t>(current_fate.load())]); }

void tell_signal(int signal_number) {
  put("triglub: ended by signal ");
  put_number(signal_number);
  const char* name = sigdescr_np(signal_number);
  if (name != nullptr) {
    put(" (");
    put(name);
    put(")");
  }
  put_fate();
}

void tell_left() {
  put("triglub: ");
  put(unfinished);
  put(": is left, for it cannot be removed\n");
}

// The handler was reset when it was called: once it has returned, the signal does what it does by itself.
void die_of_signal(int signal_number) {
  remove_now();
  std::signal(SIGPIPE, SIG_IGN);  // what nobody reads must not end the process by another signal than its own
  if (!is_ending.test_and_set()) tell_signal(signal_number);
  raise(signal_number);
}

// Without a word: who reads the output is gone, and ended it.
void die_of_closed_pipe(int signal_number) {
  remove_now();
  raise(signal_number);
}

[[noreturn]] void die_of(std::string_view what, const char* why) {
  remove_now();
  while (is_ending.test_and_set()) pause();  // until another thread, which has the same to tell, has told it
  put("triglub: ");
  put(what);
  put(why);
  put_fate();
  // Not by way of exit, which may need memory, and waits for what another thread holds.
  _exit(EXIT_FAILURE);
}

[[noreturn]] void die_of_no_memory() { die_of("out of memory", ""); }

[[noreturn]] void die_of_uncaught() {
  try {
    if (std::current_exception() != nullptr) throw;
  } catch (const std::exception& e) {
    die_of("an error that was not expected: ", e.what());
  } catch (...) {
  }
  die_of("an error that was not expected", "");
}

// Called before the destructors of all that was made earlier.
void end_before_destruction() {
  if (!do_threads_work) return;
  remove_now();
  _exit(EXIT_FAILURE);
}

bool is_ignored(int signal_number) {
  struct sigaction action {};
  return sigaction(signal_number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void handle(int signal_number, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigfillset(&action.sa_mask);
  sigaction(signal_number, &action, nullptr);
}

}  // namespace

void prepare_for_no_memory() { std::set_new_handler(die_of_no_memory); }

void prepare_endings() {
  std::set_terminate(die_of_uncaught);
  std::atexit(remove_now);
  for (const int signal_number : kEndingSignals) {
    if (!is_ignored(signal_number)) handle(signal_number, die_of_signal);
  }
  // A reader that has seen enough ends the process without a word, as it does others.
  handle(SIGPIPE, die_of_closed_pipe);
  std::signal(SIGXFSZ, SIG_IGN);
  // Ignored, it would leave nothing to be waited for.
  std::signal(SIGCHLD, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

void end_silently() {
  for (const int signal_number : kEndingSignals) {
    if (!is_ignored(signal_number)) std::signal(signal_number, SIG_DFL);
  }
  std::signal(SIGPIPE, SIG_DFL);
  unfinished[0] = '\0';  // it is the parent's
}

void set_fate(Fate fate) { current_fate = fate; }

void remove_at_end(const std::string& path) { std::snprintf(unfinished, sizeof unfinished, "%s", path.c_str()); }

void remove_now() {
  if (unfinished[0] == '\0') return;
  if (unlink(unfinished) != 0 && errno != ENOENT) tell_left();
  unfinished[0] = '\0';
}

void end_without_destruction(bool is_set) {
  do_threads_work = is_set;
  static std::once_flag once;
  std::call_once(once, [] { std::atexit(end_before_destruction); });
}

HeldSignals::HeldSignals() : before_() {
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before_);
}

HeldSignals::~HeldSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

}  // namespace triglub::tool
