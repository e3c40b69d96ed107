// Only the lists in which a row begins or ends are looked at again.
#include "epochs/stage_lists.h"

#include <algorithm>

namespace triglub {

void StageLists::start(const HeldRows& stages) {
  stages_ = &stages;
  next_ = 0;
  next_end_ = 0;
  present_.clear();
  by_end_.clear();
  std::vector<std::int64_t> numbers;
  numbers.reserve(stages.size());
  for (const HeldRow& stage : stages) {
    by_end_.push_back(&stage);
    numbers.push_back(stage.key);
  }
  std::sort(by_end_.begin(), by_end_.end(),
            [](const HeldRow* a, const HeldRow* b) { return a->span.end < b->span.end; });
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  count_ = numbers.size();
  if (lists_.size() < count_) lists_.resize(count_);
  for (std::size_t i = 0; i < count_; ++i) {
    lists_[i].number = numbers[i];
    lists_[i].standing.clear();
    lists_[i].top = nullptr;
  }
}

std::uint32_t StageLists::list_of(std::int64_t number) const {
  const auto end = lists_.begin() + static_cast<std::ptrdiff_t>(count_);
  const auto found = std::lower_bound(lists_.begin(), end, number,
                                      [](const List& list, std::int64_t wanted) { return list.number < wanted; });
  return static_cast<std::uint32_t>(found - lists_.begin());
}

void StageLists::note_present(std::uint32_t list, bool is_present) {
  const auto place = std::lower_bound(present_.begin(), present_.end(), list);
  if (is_present) {
    present_.insert(place, list);
  } else {
    present_.erase(place);
  }
}

bool StageLists::settle(std::uint32_t list, Instant instant) {
  List& of = lists_[list];
  const HeldRow* top = of.standing.at(instant);
  if (top == of.top) return false;
  if ((top == nullptr) != (of.top == nullptr)) note_present(list, top != nullptr);
  of.top = top;
  return true;
}

bool StageLists::move_to(Instant instant) {
  bool have_changed = false;
  for (; next_ < stages_->size() && (*stages_)[next_].span.begin <= instant; ++next_) {
    const std::uint32_t list = list_of((*stages_)[next_].key);
    lists_[list].standing.begin((*stages_)[next_]);
    have_changed |= settle(list, instant);
  }
  for (; next_end_ < by_end_.size() && by_end_[next_end_]->span.end <= instant; ++next_end_) {
    have_changed |= settle(list_of(by_end_[next_end_]->key), instant);
  }
  return have_changed;
}

void StageLists::append_rows(std::vector<std::uint32_t>* rows) const {
  for (const std::uint32_t list : present_) rows->push_back(lists_[list].top->row);
}

}  // namespace triglub
