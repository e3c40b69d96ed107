// How many rows may be met for all records together.
#ifndef TRIGLUB_SRC_EPOCHS_ROW_BUDGET_H
#define TRIGLUB_SRC_EPOCHS_ROW_BUDGET_H

#include <atomic>
#include <cstdint>
#include <string>

#include "platform/limits.h"

namespace triglub {

// A few thousand rows of one key in each of two tables make as many millions of pairs. One piece of work takes what it
// is about to make from the limit join_rows, before it takes the memory. Threads may share a budget.
class RowBudget {
 public:
  // `place` gives the place of the row at which it was too much: it is asked once, if at all. Throws FatalFailure then.
  template <typename Place>
  void take(std::uint64_t rows, const Place& place) {
    const std::uint64_t before = taken_.fetch_add(rows, std::memory_order_relaxed);
    if (before + rows > most_) refuse(place());
  }

 private:
  [[noreturn]] static void refuse(const std::string& place);

  const std::uint64_t most_ = limit(Limit::join_rows);
  std::atomic<std::uint64_t> taken_ = 0;
};

}  // namespace triglub

#endif
