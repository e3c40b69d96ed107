// A hash index of a table's rows by the values of some of its columns.
#ifndef TRIGLUB_DATABASE_JOIN_INDEX_H
#define TRIGLUB_DATABASE_JOIN_INDEX_H

#include <compare>
#include <cstdint>
#include <vector>

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

inline constexpr std::uint32_t NO_ROW = 0xFFFFFFFFu;

// Rows of one key mostly lie together, so the index is over their runs.
class JoinIndex {
 public:
  void build(const Table& table, const std::vector<JoinColumn>& columns);

  // The rows of one key, in table order.
  class Rows {
   public:
    Rows() = default;
    std::uint32_t row() const { return row_; }  // NO_ROW at the end
    void move_on();

   private:
    friend class JoinIndex;
    Rows(const JoinIndex& index, std::uint32_t run);

    const JoinIndex* index_ = nullptr;
    std::uint32_t run_ = NO_ROW;
    std::uint32_t row_ = NO_ROW;
  };
  // `words` holds one word a column. REQUIRES: table and columns are those that the index was built of.
  Rows find(const Table& table, const std::vector<JoinColumn>& columns, const JoinWord* words) const;

 private:
  struct Run {
    std::uint32_t begin;
    std::uint32_t end;
    std::uint32_t next;  // the next run of the same key, NO_ROW for none
  };

  std::size_t slot_of(const Table& table, const std::vector<JoinColumn>& columns, const JoinWord* words) const;

  std::vector<Run> runs_;
  std::vector<std::uint32_t> heads_;  // open addressing: first run of each distinct key, NO_ROW for a free slot
};

}  // namespace triglub

#endif
