// Work on one database that several threads share.
#ifndef TRIGLUB_DATABASE_THREADS_H
#define TRIGLUB_DATABASE_THREADS_H

#include <cstddef>
#include <functional>

namespace triglub {

// How many threads may work side by side, the caller's included: what set_threads was told, 1 before.
std::size_t thread_count();

// Calls work(0) to work(count - 1), which must not throw and must not touch the same things, side by side as far as
// threads are to be had. Returns when all have returned.
void run_side_by_side(std::size_t count, const std::function<void(std::size_t)>& work);

}  // namespace triglub

#endif
