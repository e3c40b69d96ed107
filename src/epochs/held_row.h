// Rows with the time for which they hold, and which of several stands.
#ifndef TRIGLUB_SRC_EPOCHS_HELD_ROW_H
#define TRIGLUB_SRC_EPOCHS_HELD_ROW_H

#include <cstdint>
#include <span>
#include <tuple>
#include <vector>

#include "epochs/instant.h"
#include "platform/database.h"

namespace triglub {

inline constexpr std::uint32_t kAbsent = NO_BASE_ROW;

struct HeldRow {
  Span span;
  double load_date = 0;  // null: less than any
  std::uint32_t row = 0;
  std::int64_t key = 0;  // what tells rows of one list apart: a stage's number, a sensor's chanid

  // Of two rows that hold at one instant the later in this order stands: the one that began later, then the one that
  // was written later, then the one further down in the table.
  friend bool operator<(const HeldRow& a, const HeldRow& b) {
    return std::tie(a.span.begin, a.load_date, a.row) < std::tie(b.span.begin, b.load_date, b.row);
  }
};

using HeldRows = std::vector<HeldRow>;

// The rows of one key while time goes on. They come in the order of HeldRow, so that the one that stands is always on
// top, and one that was covered stands again when those above it have ended.
class Standing {
 public:
  void clear() { rows_.clear(); }
  void begin(const HeldRow& row) { rows_.push_back(&row); }
  // The row that stands at an instant, null for none. REQUIRES: no earlier instant is asked for afterwards.
  const HeldRow* at(Instant instant) {
    while (!rows_.empty() && rows_.back()->span.end <= instant) rows_.pop_back();
    return rows_.empty() ? nullptr : rows_.back();
  }

 private:
  std::vector<const HeldRow*> rows_;
};

// The row of a list that stands, as time goes on.
class Walk {
 public:
  // From the beginning of time. The rows, in order, must outlive the walk.
  void start(const HeldRows& rows) {
    rows_ = &rows;
    next_ = 0;
    standing_.clear();
  }
  // As Standing::at.
  const HeldRow* at(Instant instant) {
    for (; next_ < rows_->size() && (*rows_)[next_].span.begin <= instant; ++next_) standing_.begin((*rows_)[next_]);
    return standing_.at(instant);
  }

 private:
  const HeldRows* rows_ = nullptr;
  std::size_t next_ = 0;
  Standing standing_;
};

// A piece of time for which one row stands.
struct Stretch {
  Span span;
  std::uint32_t row = kAbsent;
};

// The stretches of the rows of one key, in order; neighbours of one row are one. REQUIRES: the rows are in order, and
// each holds at some instant.
void find_stretches(const HeldRows& rows, std::vector<Stretch>* stretches);

// tell(longest, row) for each row that begins before another has ended: with the one before it that ends last.
// REQUIRES: the rows are in order.
template <typename Tell>
void find_contradictions(std::span<const HeldRow> rows, const Tell& tell) {
  const HeldRow* longest = nullptr;
  for (const HeldRow& row : rows) {
    if (longest != nullptr && row.span.begin < longest->span.end) tell(*longest, row);
    if (longest == nullptr || row.span.end > longest->span.end) longest = &row;
  }
}

}  // namespace triglub

#endif
