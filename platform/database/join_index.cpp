#include "database/join_index.h"

#include <bit>

#include "database/table.h"

namespace triglub {

namespace {

// The finalizer of a 64-bit multiplicative hash; spreads codes and small integers over all bits.
std::uint64_t mix(std::uint64_t x) {
  x ^= x >> 32;
  x *= 0x9E3779B97F4A7C15u;
  x ^= x >> 29;
  return x;
}

std::uint64_t hash_of(const JoinWord* words, std::size_t count) {
  std::uint64_t hash = 0;
  for (std::size_t i = 0; i < count; ++i) hash = mix(hash + words[i] + i);
  return hash;
}

bool same_key(const Table& table, const std::vector<JoinColumn>& columns, std::uint32_t row, const JoinWord* words) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (join_word(table, columns[i], row) != words[i]) return false;
  }
  return true;
}

}  // namespace

JoinWord real_word(double value) { return std::bit_cast<std::uint64_t>(value == 0.0 ? 0.0 : value); }

JoinWord join_word(const Table& table, const JoinColumn& column, std::uint32_t row) {
  const Column& values = table.column(column.field);
  switch (table.schema().fields[column.field].storage()) {
    case Storage::text:
      return values.codes[row];
    case Storage::integer:
      if (column.as_real) return real_word(static_cast<double>(values.integers[row]));
      return static_cast<JoinWord>(values.integers[row]);
    case Storage::real:
      return real_word(values.reals[row]);
  }
  return 0;
}

void JoinIndex::build(const Table& table, const std::vector<JoinColumn>& columns) {
  const std::uint32_t rows = table.row_count();
  heads_.assign(std::bit_ceil(std::size_t{rows} * 2 + 1), NO_ROW);
  next_.assign(rows, NO_ROW);
  std::vector<JoinWord> words(columns.size());
  // From the last row back, so that each chain runs in table order with its head put in front.
  for (std::uint32_t row = rows; row-- > 0;) {
    for (std::size_t i = 0; i < columns.size(); ++i) words[i] = join_word(table, columns[i], row);
    std::size_t slot = hash_of(words.data(), words.size()) & (heads_.size() - 1);
    while (heads_[slot] != NO_ROW && !same_key(table, columns, heads_[slot], words.data())) {
      slot = (slot + 1) & (heads_.size() - 1);
    }
    next_[row] = heads_[slot];
    heads_[slot] = row;
  }
}

std::uint32_t JoinIndex::first(const Table& table, const std::vector<JoinColumn>& columns,
                               const JoinWord* words) const {
  std::size_t slot = hash_of(words, columns.size()) & (heads_.size() - 1);
  while (heads_[slot] != NO_ROW && !same_key(table, columns, heads_[slot], words)) {
    slot = (slot + 1) & (heads_.size() - 1);
  }
  return heads_[slot];
}

}  // namespace triglub
