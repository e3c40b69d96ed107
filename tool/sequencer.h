// Whose turn it is, in memory that processes share.
#ifndef TRIGLUB_TOOL_SEQUENCER_H
#define TRIGLUB_TOOL_SEQUENCER_H

#include <pthread.h>

#include <atomic>
#include <cstddef>

namespace triglub::tool {

// Hands out the pieces of a document to whoever works on them, and the turns to write them, both in the order of the
// pieces.
class Sequencer {
 public:
  // In memory that this process shares with those it forks from now on. Fatal when there is none.
  static Sequencer& make();
  // Gives the memory back, which others may go on using.
  static void release(Sequencer& sequencer);

  // The next piece that nobody works on, from 0.
  std::size_t take() { return next_++; }
  bool is_turn_of(std::size_t piece) const { return turn_ == piece; }
  void wait_for(std::size_t piece);
  // To the next piece. To be called by who has the turn.
  void pass_on();

 private:
  Sequencer();

  pthread_mutex_t mutex_;  // the turn is passed on under it, so that who waits does not miss it
  pthread_cond_t changed_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<std::size_t> turn_ = 0;
  static_assert(std::atomic<std::size_t>::is_always_lock_free, "a lock of its own would not be shared");
};

}  // namespace triglub::tool

#endif
