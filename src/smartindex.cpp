#include "smartindex.h"

#include <algorithm>
#include <stdexcept>

SmartIndex::SmartIndex(unsigned long n, bool value)
    : flags_(n, value), first_(value ? 0 : n), last_(value ? n - 1 : n) {}

SmartIndex::SmartIndex(std::vector<bool> flags) : flags_(std::move(flags)), first_(0), last_(0) { reset_borders(); }

SmartIndex::SmartIndex(const SmartIndex& other) = default;
SmartIndex& SmartIndex::operator=(const SmartIndex& other) = default;
SmartIndex::~SmartIndex() = default;

SmartIndex::SmartIndex(SmartIndex&& other) noexcept
    : flags_(std::move(other.flags_)), first_(other.first_), last_(other.last_) {}

SmartIndex& SmartIndex::operator=(SmartIndex&& other) noexcept {
  if (this == &other) return *this;
  flags_ = std::move(other.flags_);
  first_ = other.first_;
  last_ = other.last_;
  return *this;
}

unsigned long SmartIndex::first() const { return first_; }
unsigned long SmartIndex::last() const { return last_; }
unsigned long SmartIndex::size() const { return flags_.size(); }

unsigned long SmartIndex::count() const {
  return static_cast<unsigned long>(std::count(flags_.begin(), flags_.end(), true));
}

bool SmartIndex::includes(Dbptr db) const {
  if (db.record < 0) return false;
  const auto record = static_cast<unsigned long>(db.record);
  return record < size() && flags_[record];
}

void SmartIndex::set(unsigned long i, bool value) {
  if (i > size()) throw std::range_error("SmartIndex::set value out of range");
  // Callers have always been let through with the position one past the end; there is no record behind it, so neither
  // flags nor borders change.
  if (i == size()) return;
  flags_[i] = value;
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

// The borders are known to the caller already, so a step from inside visits only what lies between them.
unsigned long SmartIndex::next(unsigned long i) const {
  if (i >= last_) return size();
  if (i < first_) return first_;
  // An empty index made with `true` has its upper border beyond the flags.
  const unsigned long end = std::min(last_, size());
  for (unsigned long p = i + 1; p < end; ++p) {
    if (flags_[p]) return p;
  }
  return size();
}

unsigned long SmartIndex::prev(unsigned long i) const {
  if (i <= first_) return size();
  if (i > last_) return last_;
  for (unsigned long p = std::min(i, size()); p-- > first_ + 1;) {
    if (flags_[p]) return p;
  }
  return size();
}

void SmartIndex::limit_to(const SmartIndex& other) {
  if (size() != other.size()) throw std::range_error("AandB: vectors are not the same size!");
  // Below the other's lower border nothing is looked at, so what this index selects there stays selected.
  for (unsigned long p = std::max(first_, other.first_); p < size(); ++p) {
    if (flags_[p]) flags_[p] = other.flags_[p];
    if (p == last_) break;
  }
  reset_borders();
}

void SmartIndex::remove(const SmartIndex& other) {
  const unsigned long end = std::min(last_, other.last_);
  const unsigned long size_of_both = std::min(size(), other.size());
  for (unsigned long p = std::max(first_, other.first_); p < size_of_both; ++p) {
    if (other.flags_[p]) flags_[p] = false;
    if (p == end) break;
  }
  reset_borders();
}

void SmartIndex::reset_first() {
  first_ = static_cast<unsigned long>(std::find(flags_.begin(), flags_.end(), true) - flags_.begin());
}

void SmartIndex::reset_borders() {
  reset_first();
  last_ = size();
  if (first_ == size()) return;
  // There is a selected position to stop at.
  do --last_;
  while (!flags_[last_]);
}

std::string SmartIndex::as_string() const {
  std::string text = "([";
  for (const bool flag : flags_) text += flag ? '1' : '0';
  return text + "]," + std::to_string(first_) + "," + std::to_string(last_) + ")";
}

void test_SmartIndex() {}
