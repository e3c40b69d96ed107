// A call is made to fail by having the system do another one that there is not, and putting an error in its place.
#include "faults/traced_run.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <map>
#include <stdexcept>

namespace triglub_test {

#if defined(__x86_64__)

namespace {

// Calls that do not fail, or whose failure the C library takes for a fault of its own and ends the process.
constexpr std::array kLeftOut = {
    SYS_exit,
    SYS_exit_group,
    SYS_getpid,
    SYS_getppid,
    SYS_gettid,
    SYS_getuid,
    SYS_geteuid,
    SYS_getgid,
    SYS_getegid,
    SYS_umask,  // cannot fail
    SYS_futex,  // locks
    SYS_rt_sigaction,
    SYS_rt_sigprocmask,
    SYS_rt_sigreturn,
    SYS_rt_sigtimedwait,
    SYS_tgkill,
    SYS_tkill,   // what raise() and abort() stand on
    SYS_munmap,  // memory is given back
    SYS_set_robust_list,
    SYS_rseq,
    SYS_set_tid_address,
    SYS_arch_prctl,  // the beginning of a thread
    SYS_restart_syscall,
    SYS_sched_yield,
    SYS_kill,  // ends what would go on without its parent
};

int error_for(std::uint64_t call) {
  switch (call) {
    case SYS_open:
    case SYS_openat:
      return EMFILE;
    case SYS_write:
    case SYS_writev:
    case SYS_linkat:
    case SYS_rename:
      return ENOSPC;
    case SYS_mmap:
    case SYS_mprotect:
      return ENOMEM;
    case SYS_clone:
    case SYS_clone3:
    case SYS_fork:
    case SYS_vfork:
      return EAGAIN;
    default:
      return EIO;
  }
}

struct Tracee {
  pid_t process = 0;           // that the thread belongs to
  int error = 0;               // that its call is to have, when it has been done
  std::uint64_t argument = 0;  // that was taken from its call, and is to be put back then; 0 for none
};

class Tracer {
 public:
  Tracer(const Start& start, const CallPlan& plan) : plan_(plan) {
    main_ = fork();
    if (main_ < 0) throw std::runtime_error("no process can be made");
    if (main_ == 0) {
      ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
      raise(SIGSTOP);
      become(start);
    }
    waitpid(main_, nullptr, 0);
    ptrace(PTRACE_SETOPTIONS, main_, nullptr,
           PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACECLONE | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK | PTRACE_O_TRACEEXEC |
               PTRACE_O_EXITKILL);
    tracees_[main_].process = main_;
    go_on(main_, 0);
  }

  CallOutcome run() {
    const WaitLimit limit;
    int status = 0;
    for (pid_t thread = 0; (thread = waitpid(-1, &status, __WALL)) > 0 || errno == EINTR;) {
      if (thread < 0) {
        end_all();
      } else if (WIFSTOPPED(status)) {
        take_stop(thread, status);
      } else {
        take_end(thread, status);
      }
    }
    return outcome_;
  }

 private:
  static void go_on(pid_t thread, int signal) { ptrace(PTRACE_SYSCALL, thread, nullptr, signal); }

  void end_all() {
    outcome_.ending.has_hung = true;
    for (const auto& [thread, tracee] : tracees_) kill(tracee.process, SIGKILL);
  }

  void take_end(pid_t thread, int status) {
    if (thread == main_ && !outcome_.ending.has_hung) outcome_.ending = Ending::of(status);
    tracees_.erase(thread);
  }

  void take_stop(pid_t thread, int status) {
    const int event = status >> 16;
    const int signal = WSTOPSIG(status);
    if (event != 0) {
      take_event(thread, event);
      go_on(thread, 0);
    } else if (signal == (SIGTRAP | 0x80)) {
      take_call(thread);
      go_on(thread, 0);
    } else {
      // The stop that a new one begins with is the tracer's own.
      const bool is_beginning = signal == SIGSTOP;
      go_on(thread, is_beginning ? 0 : signal);
    }
  }

  void take_event(pid_t thread, int event) {
    unsigned long made = 0;
    if (event != PTRACE_EVENT_CLONE && event != PTRACE_EVENT_FORK && event != PTRACE_EVENT_VFORK) return;
    ptrace(PTRACE_GETEVENTMSG, thread, nullptr, &made);
    const auto born = static_cast<pid_t>(made);
    tracees_[born].process = event == PTRACE_EVENT_CLONE ? process_of(thread) : born;
  }

  // One that stopped before it was told of is one of a process that was.
  pid_t process_of(pid_t thread) {
    const auto [entry, is_new] = tracees_.try_emplace(thread);
    if (is_new) entry->second.process = thread;
    return entry->second.process;
  }

  void take_call(pid_t thread) {
    __ptrace_syscall_info call{};
    if (ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof call, &call) <= 0) return;
    if (call.op == PTRACE_SYSCALL_INFO_ENTRY) return take_entry(thread, call);
    if (call.op != PTRACE_SYSCALL_INFO_EXIT) return;
    process_of(thread);
    Tracee& tracee = tracees_[thread];
    if (tracee.error != 0) poke(thread, offsetof(user_regs_struct, rax), -static_cast<std::int64_t>(tracee.error));
    if (tracee.argument != 0) poke(thread, offsetof(user_regs_struct, rdi), static_cast<std::int64_t>(tracee.argument));
    tracee.error = 0;
    tracee.argument = 0;
  }

  static bool is_unnamed_file(const __ptrace_syscall_info& call) {
    return call.entry.nr == SYS_openat && (call.entry.args[2] & O_TMPFILE) == O_TMPFILE;
  }

  bool is_counted(pid_t thread, const __ptrace_syscall_info& call) {
    is_in_main_ = is_in_main_ || (call.entry.nr == SYS_fcntl && call.entry.args[1] == F_GETFD);
    if (!is_in_main_ || (plan_.is_for_workers && process_of(thread) == main_)) return false;
    return std::find(kLeftOut.begin(), kLeftOut.end(), static_cast<long>(call.entry.nr)) == kLeftOut.end();
  }

  static bool is_of_messages(const __ptrace_syscall_info& call) {
    return call.entry.nr == SYS_write && call.entry.args[0] == STDERR_FILENO;
  }

  void take_entry(pid_t thread, const __ptrace_syscall_info& call) {
    if (!plan_.has_unnamed_files && is_unnamed_file(call)) return replace(thread, EOPNOTSUPP);
    if (!is_counted(thread, call)) return;
    const std::uint64_t number = ++outcome_.calls;
    if (plan_.at == 0 || number < plan_.at || (number > plan_.at && !plan_.are_later_ones_too)) return;
    if (number > plan_.at && is_of_messages(call)) return;  // what it tells of the rest is to be seen
    if (number == plan_.at) note(call);
    if (plan_.signal == 0) return fail(thread, call);
    kill(process_of(thread), plan_.signal);
  }

  void note(const __ptrace_syscall_info& call) {
    outcome_.is_met = true;
    outcome_.is_of_messages = is_of_messages(call);
    outcome_.call = std::to_string(call.entry.nr) + "(" + std::to_string(call.entry.args[0]) + ", " +
                    std::to_string(call.entry.args[1]) + ", " + std::to_string(call.entry.args[2]) + ")";
  }

  static void poke(pid_t thread, std::size_t register_offset, std::int64_t value) {
    ptrace(PTRACE_POKEUSER, thread, register_offset, value);
  }

  void fail(pid_t thread, const __ptrace_syscall_info& call) {
    if (call.entry.nr != SYS_brk) return replace(thread, error_for(call.entry.nr));
    // It fails by leaving the end of the memory where it is, as for 0, and without an error.
    poke(thread, offsetof(user_regs_struct, rdi), 0);
    tracees_[thread].argument = call.entry.args[0];
  }

  void replace(pid_t thread, int error) {
    poke(thread, offsetof(user_regs_struct, orig_rax), -1);
    process_of(thread);
    tracees_[thread].error = error;
  }

  CallPlan plan_;
  CallOutcome outcome_;
  pid_t main_ = 0;
  bool is_in_main_ = false;
  std::map<pid_t, Tracee> tracees_;  // by thread
};

}  // namespace

std::string why_not_traced() {
  const CallOutcome outcome = run_traced({{"/bin/true"}, {}, "/dev/null", "/dev/null"}, {});
  return outcome.ending.status == 0 ? "" : "processes cannot be traced here";
}

CallOutcome run_traced(const Start& start, const CallPlan& plan) { return Tracer(start, plan).run(); }

#else

std::string why_not_traced() { return "the tracer knows the registers of x86-64 only"; }

CallOutcome run_traced(const Start&, const CallPlan&) { return {}; }

#endif

}  // namespace triglub_test
