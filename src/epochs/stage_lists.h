// The stages of a channel by number: each number has one row that stands.
#ifndef TRIGLUB_SRC_EPOCHS_STAGE_LISTS_H
#define TRIGLUB_SRC_EPOCHS_STAGE_LISTS_H

#include <cstdint>
#include <vector>

#include "epochs/held_row.h"

namespace triglub {

class StageLists {
 public:
  // The stages of a channel, in order; HeldRow::key is the number. They must outlive it.
  void start(const HeldRows& stages);
  // Moves on; true when other rows stand than before. REQUIRES: instants come in order.
  bool move_to(Instant instant);
  // How many rows stand.
  std::size_t present_count() const { return present_.size(); }
  // Appends the rows that stand, by number.
  void append_rows(std::vector<std::uint32_t>* rows) const;

 private:
  struct List {
    std::int64_t number = 0;
    Standing standing;
    const HeldRow* top = nullptr;
  };

  std::uint32_t list_of(std::int64_t number) const;
  bool settle(std::uint32_t list, Instant instant);
  void note_present(std::uint32_t list, bool is_present);

  const HeldRows* stages_ = nullptr;
  std::size_t next_ = 0;
  std::size_t next_end_ = 0;
  std::vector<const HeldRow*> by_end_;
  std::vector<List> lists_;  // by number; the first count_ are of this channel
  std::size_t count_ = 0;
  std::vector<std::uint32_t> present_;  // the lists whose top is not null, ascending
};

}  // namespace triglub

#endif
