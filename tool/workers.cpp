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
#include <thread>
#include <vector>

#include "platform/database.h"
#include "platform/elog.h"
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

[[noreturn]] void work(const Output& output, std::size_t pieces, std::size_t capacity, Sequencer& sequencer,
                       const PieceWriter& write) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);  // nobody would wait for what is written after the parent
  set_threads(1);                    // the processors are taken by the other workers
  TurnBuffer buffer(output.descriptor(), output.name(), capacity, sequencer);
  elog_set_sink(tell, &buffer);
  write_pieces(buffer, pieces, sequencer, write);
  // Not by way of exit: what is to be done at the end is the parent's.
  _exit(EXIT_SUCCESS);
}

// Waits for all. One that fails has told why, unless a signal ended it; the others then have nothing to wait for.
// Nobody reads what this process would write where the signal was that of a closed pipe: it ends likewise.
void wait_for_all(std::vector<pid_t> workers) {
  while (!workers.empty()) {
    int status = 0;
    const pid_t ended = waitpid(-1, &status, 0);
    if (ended < 0 && errno == EINTR) continue;
    std::erase(workers, ended);
    if (ended >= 0 && WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS) continue;
    for (const pid_t other : workers) kill(other, SIGKILL);
    if (ended >= 0 && WIFEXITED(status)) std::exit(EXIT_FAILURE);
    if (ended >= 0 && WTERMSIG(status) == SIGPIPE) raise(SIGPIPE);
    elog_die(0, "a process that wrote a part of the document was ended by signal %d", WTERMSIG(status));
  }
}

}  // namespace

void write_in_order(Output& output, std::size_t pieces, unsigned int jobs, const PieceWriter& write) {
  const std::size_t count = std::min<std::size_t>(jobs, pieces);
  if (count <= 1) {
    for (std::size_t piece = 0; piece < pieces; ++piece) write(output.stream(), piece);
    return;
  }
  output.finish();
  Sequencer& sequencer = Sequencer::make();
  const std::size_t capacity = kHeldBack / count;
  std::vector<pid_t> workers;
  for (std::size_t i = 0; i < count; ++i) {
    const pid_t worker = fork();
    if (worker == 0) work(output, pieces, capacity, sequencer, write);
    if (worker < 0) {
      for (const pid_t other : workers) kill(other, SIGKILL);
      elog_die(0, "no process can be made for a part of the document: %s", std::strerror(errno));
    }
    workers.push_back(worker);
  }
  wait_for_all(std::move(workers));
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
  std::vector<std::thread> workers;
  for (std::size_t i = 1; i < count; ++i) workers.emplace_back(work);
  work();
  for (std::thread& worker : workers) worker.join();
  Sequencer::release(sequencer);
}

}  // namespace triglub::tool
