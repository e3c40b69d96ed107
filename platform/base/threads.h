// One piece of work that several threads share.
#ifndef TRIGLUB_BASE_THREADS_H
#define TRIGLUB_BASE_THREADS_H

#include <cstddef>
#include <cstdint>
#include <functional>

namespace triglub {

// How many threads may work side by side, the caller's included: what set_threads was told, 1 before.
std::size_t thread_count();

// Calls work(0) to work(count - 1), in parallel as far as the system gives threads; returns when all have returned.
// What a call throws is thrown here, the first of several, once all calls that had begun have returned; others may then
// not have been made. The calls must not touch the same data and must not log (a helper thread does not have the log
// sink of the caller).
void run_side_by_side(std::size_t count, const std::function<void(std::size_t)>& work);

// Whether work on that many records is worth the start of threads.
bool are_worth_threads(std::size_t records);

// A range of records in equal chunks: one for each thread, but none too small to be worth a thread.
class Chunks {
 public:
  Chunks(std::uint32_t begin, std::uint32_t end);

  std::size_t size() const { return size_; }  // at least 1
  std::uint32_t begin(std::size_t chunk) const;
  std::uint32_t end(std::size_t chunk) const { return begin(chunk + 1); }

 private:
  std::uint32_t begin_;
  std::uint32_t count_;
  std::size_t size_;
};

}  // namespace triglub

#endif
