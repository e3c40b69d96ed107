// Processes where a conversion keeps its state in the process: each writes with the memory of the parent as it was, and
// none can disturb another. Threads where all state is the writer's own.
#include "tool/workers.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/database.h"
#include "platform/elog.h"
#include "tool/endings.h"
#include "tool/sequencer.h"
#include "tool/turn_buffer.h"

namespace triglub::tool {

namespace {

// What all workers together may hold back until their turn comes. Memory that nobody writes to is not taken.
constexpr std::size_t kHeldBack = std::size_t{64} << 20;

void tell(ElogLevel level, const char* text, void* buffer) { static_cast<TurnBuffer*>(buffer)->tell(level, text); }

// Takes piece after piece until there is none.
void write_pieces(TurnBuffer& buffer, std::size_t pieces, Sequencer& sequencer, const PieceWriter& write) {
  std::ostream out(&buffer);
  for (std::size_t piece = sequencer.take(); piece < pieces; piece = sequencer.take()) {
    buffer.begin(piece);
    write(out, piece);
    buffer.end();
  }
  buffer.finish();
}

void work(const Output& output, std::size_t pieces, std::size_t capacity, Sequencer& sequencer,
          const PieceWriter& write) {
  set_threads(1);  // the processors are taken by the other workers
  TurnBuffer buffer(output.descriptor(), output.name(), capacity, sequencer);
  elog_set_sink(tell, &buffer);
  write_pieces(buffer, pieces, sequencer, write);
}

// A process of this one that works; -1 where none can be made.
pid_t start_worker(const std::function<void()>& work) {
  const pid_t parent = getpid();
  auto held = std::make_optional<HeldSignals>();  // until it is decided whose they are
  const pid_t worker = fork();
  if (worker != 0) return worker;
  end_silently();
  prctl(PR_SET_PDEATHSIG, SIGKILL);  // nobody would wait for what is written after the parent
  if (getppid() != parent) _exit(EXIT_FAILURE);
  held.reset();
  work();
  _exit(EXIT_SUCCESS);  // not by way of exit: what is to be done at the end is the parent's
}

// The processes that were started here. Others that this process may have, from who started it, are left alone.
class Workers {
 public:
  // Tells nobody how many: fewer do the same.
  Workers(std::size_t count, const std::function<void()>& work) : before_() {
    sigset_t child;
    sigemptyset(&child);
    sigaddset(&child, SIGCHLD);
    pthread_sigmask(SIG_BLOCK, &child, &before_);  // to be waited for
    while (workers_.size() < count) {
      const pid_t worker = start_worker(work);
      if (worker < 0) return;
      workers_.push_back(worker);
    }
  }
  ~Workers() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  bool is_any() const { return !workers_.empty(); }

  // One that fails has told why, unless a signal ended it; the others then have nothing to wait for.
  void wait_for_all() {
    while (is_any()) {
      const std::size_t before = workers_.size();
      std::erase_if(workers_, [this](pid_t worker) { return has_ended(worker); });
      if (workers_.size() == before && is_any()) wait_for_change();
    }
  }

 private:
  static void wait_for_change() {
    sigset_t child;
    sigemptyset(&child);
    sigaddset(&child, SIGCHLD);
    siginfo_t ignored;
    sigwaitinfo(&child, &ignored);
  }

  bool has_ended(pid_t worker) {
    int status = 0;
    const pid_t ended = waitpid(worker, &status, WNOHANG);
    if (ended == 0 || (ended < 0 && errno == EINTR)) return false;
    if (ended < 0) die_of_no_status();
    if (!WIFEXITED(status) || WEXITSTATUS(status) != EXIT_SUCCESS) end_with(worker, status);
    return true;
  }

  [[noreturn]] void die_of_no_status() {
    const int error = errno;
    end_others(0);
    elog_die(0, "what became of a part of the document cannot be known: %s", std::strerror(error));
  }

  // Nobody reads what this process would write where the signal was that of a closed pipe: it ends likewise.
  [[noreturn]] void end_with(pid_t worker, int status) {
    end_others(worker);
    if (WIFEXITED(status)) std::exit(EXIT_FAILURE);
    if (WTERMSIG(status) == SIGPIPE) raise(SIGPIPE);
    elog_die(0, "a process that wrote a part of the document was ended by signal %d (%s)", WTERMSIG(status),
             strsignal(WTERMSIG(status)));
  }

  // When this returns they write no more.
  void end_others(pid_t but) {
    std::erase(workers_, but);
    for (const pid_t worker : workers_) kill(worker, SIGKILL);
    for (const pid_t worker : workers_) waitpid(worker, nullptr, 0);
  }

  std::vector<pid_t> workers_;
  sigset_t before_;
};

void write_here(Output& output, std::size_t pieces, const PieceWriter& write) {
  for (std::size_t piece = 0; piece < pieces; ++piece) write(output.stream(), piece);
}

}  // namespace

void write_in_order(Output& output, std::size_t pieces, unsigned int jobs, const PieceWriter& write) {
  const std::size_t count = std::min<std::size_t>(jobs, pieces);
  if (count <= 1) return write_here(output, pieces, write);
  output.finish();
  Sequencer& sequencer = Sequencer::make();
  Workers workers(count, [&] { work(output, pieces, kHeldBack / count, sequencer, write); });
  if (!workers.is_any()) write_here(output, pieces, write);
  workers.wait_for_all();
  Sequencer::release(sequencer);
}

void write_side_by_side(Output& output, std::size_t pieces, unsigned int jobs, const std::function<void()>& before_text,
                        const MakePieceWriter& make_writer) {
  const std::size_t count = std::max<std::size_t>(1, std::min<std::size_t>(jobs, pieces));
  output.finish();
  Sequencer& sequencer = Sequencer::make();
  const auto work = [&] {
    TurnBuffer buffer(output.descriptor(), output.name(), kHeldBack / count, sequencer, before_text);
    write_pieces(buffer, pieces, sequencer, make_writer());
  };
  end_without_destruction(true);
  std::vector<std::thread> workers;
  try {
    while (workers.size() + 1 < count) workers.emplace_back(work);
  } catch (const std::system_error&) {
    // The system gives no more threads; those that run do the work.
  }
  work();
  for (std::thread& worker : workers) worker.join();
  end_without_destruction(false);
  Sequencer::release(sequencer);
}

}  // namespace triglub::tool
