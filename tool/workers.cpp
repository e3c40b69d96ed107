#include "tool/workers.h"

#include <pthread.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/elog.h"
#include "tool/messages.h"

namespace triglub::tool {

namespace {

// What all workers together may hold back until their turn comes. Memory that nobody writes to is not taken.
constexpr std::size_t HELD_BACK = std::size_t{64} << 20;

// Whose turn it is, in memory that all processes share.
class Turns {
 public:
  static Turns& make() {
    void* memory = mmap(nullptr, sizeof(Turns), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) elog_die(0, "no memory to share with other processes: %s", std::strerror(errno));
    return *new (memory) Turns;
  }
  static void release(Turns& turns) { munmap(&turns, sizeof(Turns)); }

  // The next piece that nobody works on.
  std::size_t take() {
    lock();
    const std::size_t piece = next_++;
    unlock();
    return piece;
  }
  bool is_turn_of(std::size_t piece) {
    lock();
    const bool is_turn = turn_ == piece;
    unlock();
    return is_turn;
  }
  void wait_for(std::size_t piece) {
    lock();
    while (turn_ != piece) pthread_cond_wait(&changed_, &mutex_);
    unlock();
  }
  void pass_on() {
    lock();
    ++turn_;
    pthread_cond_broadcast(&changed_);
    unlock();
  }

 private:
  Turns() {
    pthread_mutexattr_t mutex;
    pthread_mutexattr_init(&mutex);
    pthread_mutexattr_setpshared(&mutex, PTHREAD_PROCESS_SHARED);
    pthread_mutex_init(&mutex_, &mutex);
    pthread_mutexattr_destroy(&mutex);
    pthread_condattr_t condition;
    pthread_condattr_init(&condition);
    pthread_condattr_setpshared(&condition, PTHREAD_PROCESS_SHARED);
    pthread_cond_init(&changed_, &condition);
    pthread_condattr_destroy(&condition);
  }

  void lock() { pthread_mutex_lock(&mutex_); }
  void unlock() { pthread_mutex_unlock(&mutex_); }

  pthread_mutex_t mutex_;
  pthread_cond_t changed_;
  std::size_t next_ = 0;
  std::size_t turn_ = 0;
};

// Holds back the text and the messages of one piece after the other until their turn has come.
class TurnBuffer final : public DescriptorBuffer {
 public:
  TurnBuffer(const Output& output, std::size_t capacity, Turns& turns)
      : DescriptorBuffer(output.descriptor(), output.name(), capacity), turns_(turns) {
    elog_set_sink(receive, this);
  }
  ~TurnBuffer() override { elog_set_sink(show_message, nullptr); }

  void begin(std::size_t piece) {
    piece_ = piece;
    has_turn_ = false;
  }

  // Writes what is left of the piece and passes the turn on.
  void end() {
    finish();
    wait_for_turn();
    turns_.pass_on();
  }

 private:
  struct Message {
    ElogLevel level;
    std::string text;
  };

  void prepare_to_write() override { wait_for_turn(); }
  bool is_time_to_write() override { return has_turn_ || turns_.is_turn_of(piece_); }

  void wait_for_turn() {
    if (has_turn_) return;
    turns_.wait_for(piece_);
    has_turn_ = true;
    for (const Message& message : messages_) show_message(message.level, message.text.c_str(), nullptr);
    messages_.clear();
  }

  static void receive(ElogLevel level, const char* text, void* buffer) {
    static_cast<TurnBuffer*>(buffer)->tell(level, text);
  }

  void tell(ElogLevel level, const char* text) {
    // What ends the conversion is told when all before it stands.
    if (level == ElogLevel::fatal) wait_for_turn();
    if (has_turn_) {
      show_message(level, text, nullptr);
    } else {
      messages_.push_back({level, text});
    }
  }

  Turns& turns_;
  std::size_t piece_ = 0;
  bool has_turn_ = false;
  std::vector<Message> messages_;
};

[[noreturn]] void work(const Output& output, std::size_t pieces, std::size_t capacity, Turns& turns,
                       const PieceWriter& write) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);  // nobody would wait for what is written after the parent
  set_threads(1);                    // the processors are taken by the other workers
  TurnBuffer buffer(output, capacity, turns);
  std::ostream out(&buffer);
  for (std::size_t piece = turns.take(); piece < pieces; piece = turns.take()) {
    buffer.begin(piece);
    write(out, piece);
    buffer.end();
  }
  // Not by way of exit: what is to be done at the end is the parent's.
  _exit(EXIT_SUCCESS);
}

// Waits for all. One that fails has told why, unless a signal ended it; the others then have nothing to wait for.
void wait_for_all(std::vector<pid_t> workers) {
  while (!workers.empty()) {
    int status = 0;
    const pid_t ended = waitpid(-1, &status, 0);
    if (ended < 0 && errno == EINTR) continue;
    std::erase(workers, ended);
    if (ended >= 0 && WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS) continue;
    for (const pid_t other : workers) kill(other, SIGKILL);
    if (ended >= 0 && WIFEXITED(status)) std::exit(EXIT_FAILURE);
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
  Turns& turns = Turns::make();
  const std::size_t capacity = std::max(HELD_BACK / count, DescriptorBuffer::PIECE);
  std::vector<pid_t> workers;
  for (std::size_t i = 0; i < count; ++i) {
    const pid_t worker = fork();
    if (worker == 0) work(output, pieces, capacity, turns, write);
    if (worker < 0) {
      for (const pid_t other : workers) kill(other, SIGKILL);
      elog_die(0, "no process can be made for a part of the document: %s", std::strerror(errno));
    }
    workers.push_back(worker);
  }
  wait_for_all(std::move(workers));
  Turns::release(turns);
}

}  // namespace triglub::tool
