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

std::size_t JoinIndex::slot_of(const Table& table, const std::vector<JoinColumn>& columns,
                               const JoinWord* words) const {
  std::size_t slot = hash_of(words, columns.size()) & (heads_.size() - 1);
  while (heads_[slot] != NO_ROW && !same_key(table, columns, runs_[heads_[slot]].begin, words)) {
    slot = (slot + 1) & (heads_.size() - 1);
  }
  return slot;
}

void JoinIndex::build(const Table& table, const std::vector<JoinColumn>& columns) {
  const std::uint32_t rows = table.row_count();
  std::vector<JoinWord> words(columns.size());
  for (std::uint32_t row = 0; row < rows; ++row) {
    if (row > 0 && same_key(table, columns, row, words.data())) continue;
    if (row > 0) runs_.back().end = row;
    for (std::size_t i = 0; i < columns.size(); ++i) words[i] = join_word(table, columns[i], row);
    runs_.push_back({row, rows, NO_ROW});
  }
  heads_.assign(std::bit_ceil(runs_.size() * 2 + 1), NO_ROW);
  // From the last run back, so that each chain runs in table order with its head put in front.
  for (auto run = static_cast<std::uint32_t>(runs_.size()); run-- > 0;) {
    for (std::size_t i = 0; i < columns.size(); ++i) words[i] = join_word(table, columns[i], runs_[run].begin);
    std::uint32_t& head = heads_[slot_of(table, columns, words.data())];
    runs_[run].next = head;
    head = run;
  }
}

JoinIndex::Rows JoinIndex::find(const Table& table, const std::vector<JoinColumn>& columns,
                                const JoinWord* words) const {
  return {*this, heads_[slot_of(table, columns, words)]};
}

JoinIndex::Rows::Rows(const JoinIndex& index, std::uint32_t run)
    : index_(&index), run_(run), row_(run == NO_ROW ? NO_ROW : index.runs_[run].begin) {}

void JoinIndex::Rows::move_on() {
  if (++row_ < index_->runs_[run_].end) return;
  *this = Rows(*index_, index_->runs_[run_].next);
}

}  // namespace triglub
