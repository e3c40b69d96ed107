// Rows of equal neighbours are gathered into runs; a hash table leads to the first run of each key, and each run to the
// next one of its key. Finding and hashing runs is shared by threads, filling the table is not.
#include "engine/table/join_index.h"

#include <bit>

#include "base/threads.h"
#include "engine/table/table.h"

namespace triglub {

namespace {

// The finalizer of a 64-bit multiplicative hash; spreads codes and small integers over all bits.
std::uint64_t mix(std::uint64_t x) {
  x ^= x >> 32;
  x *= 0x9E3779B97F4A7C15u;
  x ^= x >> 29;
  return x;
}

std::uint32_t hash_of(const JoinWord* words, std::size_t count) {
  std::uint64_t hash = 0;
  for (std::size_t i = 0; i < count; ++i) hash = mix(hash + words[i] + i);
  return static_cast<std::uint32_t>(hash >> 16);
}

void load_words(const Table& table, const std::vector<JoinColumn>& columns, std::uint32_t row, JoinWord* words) {
  for (std::size_t i = 0; i < columns.size(); ++i) words[i] = join_word(table, columns[i], row);
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

std::size_t JoinIndex::slot_of(const Table& table, const std::vector<JoinColumn>& columns, const JoinWord* words,
                               std::uint32_t hash) const {
  const std::size_t mask = heads_.size() - 1;
  std::size_t slot = hash & mask;
  while (heads_[slot].run != kNoRow) {
    if (heads_[slot].hash == hash && same_key(table, columns, runs_[heads_[slot].run].begin, words)) break;
    slot = (slot + 1) & mask;
  }
  return slot;
}

std::vector<JoinIndex::Run> JoinIndex::runs_between(const Table& table, const std::vector<JoinColumn>& columns,
                                                    std::uint32_t begin, std::uint32_t end) {
  std::vector<Run> runs;
  std::vector<JoinWord> words(columns.size());
  for (std::uint32_t row = begin; row < end; ++row) {
    if (row > begin && same_key(table, columns, row, words.data())) continue;
    if (row > begin) runs.back().end = row;
    load_words(table, columns, row, words.data());
    runs.push_back({row, end, kNoRow});
  }
  return runs;
}

void JoinIndex::find_runs(const Table& table, const std::vector<JoinColumn>& columns) {
  const Chunks chunks(0, table.row_count());
  std::vector<std::vector<Run>> found(chunks.size());
  run_side_by_side(chunks.size(),
                   [&](std::size_t i) { found[i] = runs_between(table, columns, chunks.begin(i), chunks.end(i)); });
  runs_ = std::move(found.front());
  std::vector<JoinWord> words(columns.size());
  for (std::size_t i = 1; i < found.size(); ++i) {
    load_words(table, columns, chunks.begin(i) - 1, words.data());
    const bool goes_on = same_key(table, columns, chunks.begin(i), words.data());
    if (goes_on) runs_.back().end = found[i].front().end;
    runs_.insert(runs_.end(), found[i].begin() + (goes_on ? 1 : 0), found[i].end());
  }
}

// From the last run back, so that each chain runs in table order with its head put in front.
void JoinIndex::hash_runs(const Table& table, const std::vector<JoinColumn>& columns) {
  constexpr std::uint32_t kAhead = 16;  // slots lie anywhere in memory: each is prefetched that many runs ahead
  std::vector<std::uint32_t> hashes(runs_.size());
  const Chunks chunks(0, static_cast<std::uint32_t>(runs_.size()));
  run_side_by_side(chunks.size(), [&](std::size_t i) {
    std::vector<JoinWord> words(columns.size());
    const std::uint32_t end = chunks.end(i);
    for (std::uint32_t run = chunks.begin(i); run < end; ++run) {
      load_words(table, columns, runs_[run].begin, words.data());
      hashes[run] = hash_of(words.data(), words.size());
    }
  });
  heads_.assign(std::bit_ceil(runs_.size() * 2 + 1), Head());
  std::vector<JoinWord> words(columns.size());
  for (auto run = static_cast<std::uint32_t>(runs_.size()); run-- > 0;) {
    if (run >= kAhead) __builtin_prefetch(&heads_[hashes[run - kAhead] & (heads_.size() - 1)], 1);
    load_words(table, columns, runs_[run].begin, words.data());
    Head& head = heads_[slot_of(table, columns, words.data(), hashes[run])];
    if (head.run != kNoRow) are_keys_together_ = false;
    runs_[run].next = head.run;
    head = {hashes[run], run};
  }
}

JoinIndex::JoinIndex(const Table& table, const std::vector<JoinColumn>& columns) {
  find_runs(table, columns);
  hash_runs(table, columns);
}

JoinIndex::Rows JoinIndex::find(const Table& table, const std::vector<JoinColumn>& columns, const JoinWord* words,
                                std::uint32_t* next_run) const {
  std::uint32_t run = *next_run;
  const bool is_hinted = are_keys_together_ && run < runs_.size() && same_key(table, columns, runs_[run].begin, words);
  if (!is_hinted) run = heads_[slot_of(table, columns, words, hash_of(words, columns.size()))].run;
  if (run != kNoRow) *next_run = run + 1;
  return {*this, run};
}

JoinIndex::Rows::Rows(const JoinIndex& index, std::uint32_t run)
    : index_(&index), run_(run), row_(run == kNoRow ? kNoRow : index.runs_[run].begin) {}

void JoinIndex::Rows::move_on() {
  if (++row_ < index_->runs_[run_].end) return;
  *this = Rows(*index_, index_->runs_[run_].next);
}

}  // namespace triglub
