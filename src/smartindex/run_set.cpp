// Whole sets as lists of runs, single positions in a tree of them.
#include "run_set.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace triglub {

namespace {

using Run = RunSet::Run;
using List = std::vector<Run>;

constexpr unsigned long kHighest = std::numeric_limits<unsigned long>::max();

// To change a list in so many places costs about as much as to plant the tree.
constexpr unsigned kFewChanges = 64;

// The first run that begins at the position or behind it.
List::const_iterator first_from(unsigned long position, const List& list) {
  return std::partition_point(list.begin(), list.end(), [position](const Run& run) { return run.begin < position; });
}

// A run of the tree, which files where it ends under where it begins.
Run run_at(std::map<unsigned long, unsigned long>::const_iterator entry) { return {entry->first, entry->second}; }

Run common(const Run& a, const Run& b) { return {std::max(a.begin, b.begin), std::min(a.end, b.end)}; }

// Appends positions behind all those that are there.
void append_run(const Run& run, List* list) {
  if (run.is_empty()) return;
  if (!list->empty() && list->back().end == run.begin) {
    list->back().end = run.end;
  } else {
    list->push_back(run);
  }
}

void append_within(const List& list, const Run& span, List* out) {
  for (const Run& run : list) append_run(common(run, span), out);
}

// What the two have in common within the span, appended.
void append_common(const List& a, const List& b, const Run& span, List* out) {
  auto other = b.begin();
  for (const Run& run : a) {
    const Run part = common(run, span);
    if (part.is_empty()) continue;
    while (other != b.end() && other->end <= part.begin) ++other;
    for (auto at = other; at != b.end() && at->begin < part.end; ++at) append_run(common(*at, part), out);
  }
}

// What only the first has within the span, appended.
void append_difference(const List& a, const List& b, const Run& span, List* out) {
  auto other = b.begin();
  for (const Run& run : a) {
    Run part = common(run, span);
    if (part.is_empty()) continue;
    while (other != b.end() && other->end <= part.begin) ++other;
    for (auto at = other; at != b.end() && at->begin < part.end; ++at) {
      append_run({part.begin, at->begin}, out);
      part.begin = at->end;
    }
    append_run(part, out);
  }
}

using Within = void(const List& a, const List& b, const Run& span, List* out);

// The first list with its part within the span replaced by what the two give there.
List replaced_within(const Run& span, Within* within, const List& a, const List& b) {
  List list;
  append_within(a, {0, span.begin}, &list);
  within(a, b, span, &list);
  append_within(a, {span.end, kHighest}, &list);
  return list;
}

}  // namespace

RunSet::RunSet(const RunSet& other) : list_(other.list_) {
  list_.reserve(other.size());
  for (const auto& [begin, end] : other.tree_) list_.push_back({begin, end});
}

RunSet& RunSet::operator=(const RunSet& other) {
  if (this != &other) *this = RunSet(other);
  return *this;
}

RunSet::RunSet(RunSet&& other) noexcept
    : list_(std::exchange(other.list_, List())), tree_(std::exchange(other.tree_, Tree())), changes_(other.changes_) {}

RunSet& RunSet::operator=(RunSet&& other) noexcept {
  if (this == &other) return *this;
  list_ = std::exchange(other.list_, List());
  tree_ = std::exchange(other.tree_, Tree());
  changes_ = other.changes_;
  return *this;
}

void RunSet::become(List list) {
  list_ = std::move(list);
  changes_ = 0;
}

void RunSet::become_list() {
  if (!tree_.empty()) *this = RunSet(*this);
}

void RunSet::plant_tree() {
  Tree tree;
  for (const Run& run : list_) tree.emplace_hint(tree.end(), run.begin, run.end);
  tree_.swap(tree);
  list_ = List();
}

void RunSet::append(const Run& run) {
  become_list();
  append_run(run, &list_);
}

void RunSet::set(unsigned long position, bool value) {
  if (has(position) == value) return;
  const Run before = run_before(position);
  const Run behind = run_behind(position);
  if (value) {  // one run comes of all that it touches
    const Run joined = {before.end == position ? before.begin : position,
                        behind.begin == position + 1 ? behind.end : position + 1};
    replace(joined, {joined});
  } else {
    replace(behind, {{behind.begin, position}, {position + 1, behind.end}});
  }
}

void RunSet::replace(const Run& span, Pieces pieces) {
  const bool is_list = tree_.empty();
  if (is_list && ++changes_ <= kFewChanges) return replace_in_list(span, pieces);
  if (is_list) plant_tree();
  replace_in_tree(span, pieces);
}

void RunSet::replace_in_list(const Run& span, Pieces pieces) {
  auto at = list_.erase(first_from(span.begin, list_), first_from(span.end, list_));
  for (const Run& piece : pieces) {
    if (!piece.is_empty()) at = std::next(list_.insert(at, piece));
  }
}

void RunSet::replace_in_tree(const Run& span, Pieces pieces) {
  tree_.erase(tree_.lower_bound(span.begin), tree_.lower_bound(span.end));
  for (const Run& piece : pieces) {
    if (!piece.is_empty()) tree_.emplace(piece.begin, piece.end);
  }
}

void RunSet::limit_to(const RunSet& other, const Run& span) {
  if (!other.tree_.empty()) return limit_to(RunSet(other), span);
  become_list();
  become(replaced_within(span, append_common, list_, other.list_));
}

void RunSet::remove(const RunSet& other, const Run& span) {
  if (!other.tree_.empty()) return remove(RunSet(other), span);
  become_list();
  become(replaced_within(span, append_difference, list_, other.list_));
}

bool RunSet::has(unsigned long position) const {
  const Run run = run_behind(position);
  return run.begin <= position && position < run.end;
}

RunSet::Run RunSet::run_behind(unsigned long position) const {
  const auto in_list =
      std::partition_point(list_.begin(), list_.end(), [position](const Run& run) { return run.end <= position; });
  if (in_list != list_.end()) return *in_list;
  const auto behind = tree_.upper_bound(position);
  if (behind != tree_.begin() && std::prev(behind)->second > position) return run_at(std::prev(behind));
  return behind == tree_.end() ? Run{kHighest, kHighest} : run_at(behind);
}

RunSet::Run RunSet::run_before(unsigned long position) const {
  const auto in_list = first_from(position, list_);
  if (in_list != list_.begin()) return *std::prev(in_list);
  const auto behind = tree_.lower_bound(position);
  return behind == tree_.begin() ? Run{0, 0} : run_at(std::prev(behind));
}

RunSet::Run RunSet::front() const { return tree_.empty() ? list_.front() : run_at(tree_.begin()); }

RunSet::Run RunSet::back() const { return tree_.empty() ? list_.back() : run_at(std::prev(tree_.end())); }

}  // namespace triglub
