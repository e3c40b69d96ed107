// The index as runs of selected positions. Each operation is what it would be on single flags; where it walks flags
// from one position to another, here the runs between the two are cut and put together again.
#include "smartindex.h"

#include <algorithm>
#include <stdexcept>

namespace {

// The positions from begin to before end.
struct Span {
  unsigned long begin;
  unsigned long end;

  bool is_empty() const { return begin >= end; }
};

// The positions that a walk upward from `begin` visits which stops behind `last`, or else at the end of `size` flags: a
// stop that lies before the start is never met.
Span walked(unsigned long begin, unsigned long last, unsigned long size) {
  if (begin >= size) return {size, size};
  return {begin, last < begin || last >= size ? size : last + 1};
}

template <typename Run>
Span common(const Run& run, const Span& span) {
  return {std::max(run.begin, span.begin), std::min(run.end, span.end)};
}

// Appends positions behind all those that are there.
template <typename Runs>
void append(const Span& span, Runs* runs) {
  if (span.is_empty()) return;
  if (!runs->empty() && runs->back().end == span.begin) {
    runs->back().end = span.end;
  } else {
    runs->push_back({span.begin, span.end});
  }
}

// What the two have in common within the span, appended.
template <typename Runs>
void append_common(const Runs& a, const Runs& b, const Span& span, Runs* out) {
  auto other = b.begin();
  for (const auto& run : a) {
    const Span part = common(run, span);
    if (part.is_empty()) continue;
    while (other != b.end() && other->end <= part.begin) ++other;
    for (auto at = other; at != b.end() && at->begin < part.end; ++at) append(common(*at, part), out);
  }
}

// What only the first has within the span, appended.
template <typename Runs>
void append_difference(const Runs& a, const Runs& b, const Span& span, Runs* out) {
  auto other = b.begin();
  for (const auto& run : a) {
    Span part = common(run, span);
    if (part.is_empty()) continue;
    while (other != b.end() && other->end <= part.begin) ++other;
    for (auto at = other; at != b.end() && at->begin < part.end; ++at) {
      append(Span{part.begin, at->begin}, out);
      part.begin = at->end;
    }
    append(part, out);
  }
}

template <typename Runs>
void append_within(const Runs& runs, const Span& span, Runs* out) {
  for (const auto& run : runs) append(common(run, span), out);
}

}  // namespace

SmartIndex::SmartIndex(unsigned long n, bool value) : size_(n), first_(value ? 0 : n), last_(value ? n - 1 : n) {
  if (value && n > 0) runs_.push_back({0, n});
}

SmartIndex::SmartIndex(std::vector<bool> flags) : size_(flags.size()), first_(0), last_(0) {
  for (unsigned long i = 0; i < size_; ++i) {
    if (flags[i]) append(Span{i, i + 1}, &runs_);
  }
  reset_borders();
}

SmartIndex SmartIndex::of_range(unsigned long n, unsigned long begin, unsigned long end) {
  SmartIndex index(n, false);
  append(Span{begin, std::min(end, n)}, &index.runs_);
  index.reset_borders();
  return index;
}

SmartIndex::SmartIndex(const SmartIndex& other) = default;
SmartIndex& SmartIndex::operator=(const SmartIndex& other) = default;
SmartIndex::~SmartIndex() = default;

SmartIndex::SmartIndex(SmartIndex&& other) noexcept
    : size_(std::exchange(other.size_, 0)), runs_(std::move(other.runs_)), first_(other.first_), last_(other.last_) {
  other.runs_.clear();
}

SmartIndex& SmartIndex::operator=(SmartIndex&& other) noexcept {
  if (this == &other) return *this;
  size_ = std::exchange(other.size_, 0);
  runs_ = std::move(other.runs_);
  other.runs_.clear();
  first_ = other.first_;
  last_ = other.last_;
  return *this;
}

unsigned long SmartIndex::first() const { return first_; }
unsigned long SmartIndex::last() const { return last_; }
unsigned long SmartIndex::size() const { return size_; }

unsigned long SmartIndex::count() const {
  unsigned long count = 0;
  for (const Run& run : runs_) count += run.end - run.begin;
  return count;
}

// The first run that ends behind position i.
SmartIndex::Runs::const_iterator SmartIndex::run_after(unsigned long i) const {
  return std::partition_point(runs_.begin(), runs_.end(), [i](const Run& run) { return run.end <= i; });
}

bool SmartIndex::is_selected(unsigned long i) const {
  const auto run = run_after(i);
  return run != runs_.end() && run->begin <= i;
}

bool SmartIndex::includes(Dbptr db) const {
  if (db.record < 0) return false;
  return is_selected(static_cast<unsigned long>(db.record));
}

void SmartIndex::set(unsigned long i, bool value) {
  if (i > size()) throw std::range_error("SmartIndex::set value out of range");
  // Callers have always been let through with the position one past the end; there is no record behind it, so neither
  // flags nor borders change.
  if (i == size()) return;
  Runs changed;
  append_within(runs_, {0, i}, &changed);
  if (value) append(Span{i, i + 1}, &changed);
  append_within(runs_, {i + 1, size_}, &changed);
  runs_ = std::move(changed);
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
  const auto run = run_after(i + 1);
  const unsigned long next = run == runs_.end() ? size() : std::max(run->begin, i + 1);
  return next < last_ ? next : size();
}

unsigned long SmartIndex::prev(unsigned long i) const {
  if (i <= first_) return size();
  if (i > last_) return last_;
  // The last run that begins before position i.
  const auto behind = std::partition_point(runs_.begin(), runs_.end(), [i](const Run& run) { return run.begin < i; });
  if (behind == runs_.begin()) return size();
  const unsigned long prev = std::min((behind - 1)->end, i) - 1;
  return prev > first_ ? prev : size();
}

void SmartIndex::limit_to(const SmartIndex& other) {
  if (size() != other.size()) throw std::range_error("AandB: vectors are not the same size!");
  // Below the other's lower border nothing is looked at, so what this index selects there stays selected.
  const Span span = walked(std::max(first_, other.first_), last_, size_);
  Runs kept;
  append_within(runs_, {0, span.begin}, &kept);
  append_common(runs_, other.runs_, span, &kept);
  append_within(runs_, {span.end, size_}, &kept);
  runs_ = std::move(kept);
  reset_borders();
}

void SmartIndex::remove(const SmartIndex& other) {
  const Span span = walked(std::max(first_, other.first_), std::min(last_, other.last_), size_);
  Runs kept;
  append_within(runs_, {0, span.begin}, &kept);
  append_difference(runs_, other.runs_, span, &kept);
  append_within(runs_, {span.end, size_}, &kept);
  runs_ = std::move(kept);
  reset_borders();
}

void SmartIndex::reset_first() { first_ = runs_.empty() ? size() : runs_.front().begin; }

void SmartIndex::reset_borders() {
  reset_first();
  last_ = runs_.empty() ? size() : runs_.back().end - 1;
}

std::string SmartIndex::as_string() const {
  std::string flags(size(), '0');
  for (const Run& run : runs_)
    std::fill(flags.begin() + static_cast<long>(run.begin), flags.begin() + static_cast<long>(run.end), '1');
  return "([" + flags + "]," + std::to_string(first_) + "," + std::to_string(last_) + ")";
}

std::vector<std::pair<unsigned long, unsigned long>> SmartIndex::runs() const {
  std::vector<std::pair<unsigned long, unsigned long>> runs;
  runs.reserve(runs_.size());
  for (const Run& run : runs_) runs.emplace_back(run.begin, run.end);
  return runs;
}

void test_SmartIndex() {}
