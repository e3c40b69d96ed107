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

class JoinIndex {
 public:
  void build(const Table& table, const std::vector<JoinColumn>& columns);

  // Rows come in table order: first(words), then next(row) until NO_ROW. `words` holds one word a column.
  std::uint32_t first(const Table& table, const std::vector<JoinColumn>& columns, const JoinWord* words) const;
  std::uint32_t next(std::uint32_t row) const { return next_[row]; }

 private:
  std::vector<std::uint32_t> heads_;  // open addressing: first row of each distinct key, NO_ROW for a free slot
  std::vector<std::uint32_t> next_;   // the next row with the same key
};

}  // namespace triglub

#endif
