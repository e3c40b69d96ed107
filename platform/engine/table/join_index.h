// A hash index of a table's rows by the values of some of its columns.
#ifndef TRIGLUB_ENGINE_TABLE_JOIN_INDEX_H
#define TRIGLUB_ENGINE_TABLE_JOIN_INDEX_H

#include <compare>
#include <cstdint>
#include <vector>

#include "engine/table/row_number.h"

namespace triglub {

class Table;

// A column as a join compares it: integers as reals where the other side holds reals.
struct JoinColumn {
  std::size_t field = 0;
  bool as_real = false;

  friend auto operator<=>(const JoinColumn&, const JoinColumn&) = default;
};

// A value as 64 bits that are equal exactly when the values are: a text's code in the table's dictionary, an integer,
// or the bits of a double (one zero).
using JoinWord = std::uint64_t;

JoinWord join_word(const Table& table, const JoinColumn& column, std::uint32_t row);
JoinWord real_word(double value);

// Rows of one key mostly lie together, so the index is over their runs. Safe for concurrent use once it is made.
class JoinIndex {
 public:
  JoinIndex(const Table& table, const std::vector<JoinColumn>& columns);

  // The rows of one key, in table order.
  class Rows {
   public:
    Rows() = default;
    std::uint32_t row() const { return row_; }  // kNoRow at the end
    void move_on();

   private:
    friend class JoinIndex;
    Rows(const JoinIndex& index, std::uint32_t run);

    const JoinIndex* index_ = nullptr;
    std::uint32_t run_ = kNoRow;
    std::uint32_t row_ = kNoRow;
  };
  // `words` holds one word a column. `*next_run` is a hint at the run, any number, and is set to the hint for the
  // next call: keys asked for in table order are found without the hash.
  // REQUIRES: table and columns are those that the index was built of.
  Rows find(const Table& table, const std::vector<JoinColumn>& columns, const JoinWord* words,
            std::uint32_t* next_run) const;

 private:
  struct Run {
    std::uint32_t begin;
    std::uint32_t end;
    std::uint32_t next;  // the next run of the same key, kNoRow for none
  };

  // The first run of a key, with the key's hash, so that runs of other keys need no look.
  struct Head {
    std::uint32_t hash = 0;
    std::uint32_t run = kNoRow;  // kNoRow: a free slot
  };

  static std::vector<Run> runs_between(const Table& table, const std::vector<JoinColumn>& columns, std::uint32_t begin,
                                       std::uint32_t end);
  void find_runs(const Table& table, const std::vector<JoinColumn>& columns);
  void hash_runs(const Table& table, const std::vector<JoinColumn>& columns);
  std::size_t slot_of(const Table& table, const std::vector<JoinColumn>& columns, const JoinWord* words,
                      std::uint32_t hash) const;

  std::vector<Run> runs_;
  std::vector<Head> heads_;        // open addressing
  bool are_keys_together_ = true;  // no key has two runs
};

}  // namespace triglub

#endif
