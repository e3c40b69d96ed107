// The borders of the index, and what they let each operation see. Each is what it would be on single flags; where that
// walks from one position to another, here the runs between the two are cut and put together again.
#include "smartindex.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

using Run = triglub::RunSet::Run;

// The positions that a walk upward from `begin` visits which stops behind `last`, or else at the end of `size` flags: a
// stop that lies before the start is never met.
Run walked(unsigned long begin, unsigned long last, unsigned long size) {
  if (begin >= size) return {size, size};
  return {begin, last < begin || last >= size ? size : last + 1};
}

}  // namespace

SmartIndex::SmartIndex(unsigned long n, bool value) : size_(n), first_(value ? 0 : n), last_(value ? n - 1 : n) {
  if (value) runs_.append({0, n});
}

SmartIndex::SmartIndex(std::vector<bool> flags) : size_(flags.size()), first_(0), last_(0) {
  for (unsigned long i = 0; i < size_; ++i) {
    if (flags[i]) runs_.append({i, i + 1});
  }
  reset_borders();
}

SmartIndex SmartIndex::of_range(unsigned long n, unsigned long begin, unsigned long end) {
  SmartIndex index(n, false);
  index.runs_.append({begin, std::min(end, n)});
  index.reset_borders();
  return index;
}

SmartIndex::SmartIndex(const SmartIndex& other) = default;
SmartIndex& SmartIndex::operator=(const SmartIndex& other) = default;
SmartIndex::~SmartIndex() = default;

SmartIndex::SmartIndex(SmartIndex&& other) noexcept
    : size_(std::exchange(other.size_, 0)), runs_(std::move(other.runs_)), first_(other.first_), last_(other.last_) {}

SmartIndex& SmartIndex::operator=(SmartIndex&& other) noexcept {
  if (this == &other) return *this;
  size_ = std::exchange(other.size_, 0);
  runs_ = std::move(other.runs_);
  first_ = other.first_;
  last_ = other.last_;
  return *this;
}

unsigned long SmartIndex::first() const { return first_; }
unsigned long SmartIndex::last() const { return last_; }
unsigned long SmartIndex::size() const { return size_; }

unsigned long SmartIndex::count() const {
  unsigned long count = 0;
  runs_.each([&count](const Run& run) { count += run.end - run.begin; });
  return count;
}

bool SmartIndex::includes(Dbptr db) const {
  if (db.record < 0) return false;
  return runs_.has(static_cast<unsigned long>(db.record));
}

void SmartIndex::set(unsigned long i, bool value) {
  if (i > size()) throw std::range_error("SmartIndex::set value out of range");
  // The position one past the end has no flag, but callers have always been let through with it, and the borders move
  // as for any other.
  if (i < size()) runs_.set(i, value);
  if (value) {
    first_ = std::min(first_, i);
    if (i > last_ || last_ == size()) last_ = i;
    return;
  }
  // next and prev never give the far border, so one of two selected positions cannot take over from the other here:
  // the border says "none" until reset_borders.
  if (first_ == i) first_ = next(i);
  if (last_ == i) last_ = prev(i);
}

unsigned long SmartIndex::next(unsigned long i) const {
  if (i >= last_) return size();
  if (i < first_) return first_;
  const unsigned long next = std::max(runs_.run_behind(i + 1).begin, i + 1);
  return next < last_ ? next : size();
}

unsigned long SmartIndex::prev(unsigned long i) const {
  if (i <= first_) return size();
  if (i > last_) return last_;
  const Run run = runs_.run_before(i);
  if (run.is_empty()) return size();
  const unsigned long prev = std::min(run.end, i) - 1;
  return prev > first_ ? prev : size();
}

void SmartIndex::limit_to(const SmartIndex& other) {
  if (size() != other.size()) throw std::range_error("AandB: vectors are not the same size!");
  // Below the other's lower border nothing is looked at, so what this index selects there stays selected.
  runs_.limit_to(other.runs_, walked(std::max(first_, other.first_), last_, size_));
  reset_borders();
}

void SmartIndex::remove(const SmartIndex& other) {
  runs_.remove(other.runs_, walked(std::max(first_, other.first_), std::min(last_, other.last_), size_));
  reset_borders();
}

void SmartIndex::reset_first() { first_ = runs_.size() == 0 ? size() : runs_.front().begin; }

void SmartIndex::reset_borders() {
  reset_first();
  last_ = runs_.size() == 0 ? size() : runs_.back().end - 1;
}

bool SmartIndex::is_one_run() const {
  return runs_.size() == 1 && first_ == runs_.front().begin && last_ + 1 == runs_.front().end;
}

std::string SmartIndex::as_string() const {
  std::string flags(size(), '0');
  runs_.each([&flags](const Run& run) {
    std::fill(flags.begin() + static_cast<long>(run.begin), flags.begin() + static_cast<long>(run.end), '1');
  });
  return "([" + flags + "]," + std::to_string(first_) + "," + std::to_string(last_) + ")";
}

std::vector<std::pair<unsigned long, unsigned long>> SmartIndex::runs() const {
  std::vector<std::pair<unsigned long, unsigned long>> runs;
  runs.reserve(runs_.size());
  runs_.each([&runs](const Run& run) { runs.emplace_back(run.begin, run.end); });
  return runs;
}

void test_SmartIndex() {}
