// Sensors stand in several lists, so that each question is one look at the top of one or two of them.
#include "epochs/sensor_choice.h"

#include <algorithm>

namespace triglub {

namespace {

const HeldRow* later_of(const HeldRow* a, const HeldRow* b) {
  if (a == nullptr || b == nullptr) return a == nullptr ? b : a;
  return *a < *b ? b : a;
}

// The one of two that ends later; null where both are.
const HeldRow* longer_of(const HeldRow* a, const HeldRow* b) {
  if (a == nullptr || b == nullptr) return a == nullptr ? b : a;
  return a->span.end < b->span.end ? b : a;
}

}  // namespace

void SensorSpans::add(const Span& span) {
  begins_.push_back(span.begin);
  latest_ends_.push_back(latest_ends_.empty() ? span.end : std::max(latest_ends_.back(), span.end));
}

bool SensorSpans::any_within(const Span& span) const {
  const auto behind = std::lower_bound(begins_.begin(), begins_.end(), span.end);
  return behind != begins_.begin() && latest_ends_[static_cast<std::size_t>(behind - begins_.begin()) - 1] > span.begin;
}

void SensorChoice::start(const HeldRows& sensors, std::int64_t null) {
  sensors_ = &sensors;
  null_ = null;
  next_ = 0;
  all_.clear();
  if (are_filed_) {
    are_filed_ = false;
    anybodys_.clear();
    by_chanid_.clear();
  }
  if (!are_spans_known_) return;
  are_spans_known_ = false;
  spans_of_all_ = {};
  spans_of_anybodys_ = {};
  spans_by_chanid_.clear();
}

void SensorChoice::file(const HeldRow& sensor) {
  (sensor.key == null_ ? anybodys_ : by_chanid_[sensor.key]).begin(sensor);
}

const HeldRow* SensorChoice::own_at(Instant instant, std::int64_t chanid) {
  if (!are_filed_) {
    are_filed_ = true;
    for (std::size_t i = 0; i < next_; ++i) file((*sensors_)[i]);
  }
  const auto own = by_chanid_.find(chanid);
  return later_of(anybodys_.at(instant), own == by_chanid_.end() ? nullptr : own->second.at(instant));
}

const HeldRow* SensorChoice::at(Instant instant, std::optional<std::int64_t> chanid) {
  for (; next_ < sensors_->size() && (*sensors_)[next_].span.begin <= instant; ++next_) {
    all_.begin((*sensors_)[next_]);
    if (are_filed_) file((*sensors_)[next_]);
  }
  const HeldRow* top = all_.at(instant);
  if (top == nullptr || !chanid || top->key == *chanid || top->key == null_) return top;
  return own_at(instant, *chanid);
}

void SensorChoice::know_spans() {
  if (are_spans_known_) return;
  are_spans_known_ = true;
  for (const HeldRow& sensor : *sensors_) {
    spans_of_all_.add(sensor.span);
    (sensor.key == null_ ? spans_of_anybodys_ : spans_by_chanid_[sensor.key]).add(sensor.span);
  }
}

bool SensorChoice::any_within(const Span& span, std::optional<std::int64_t> chanid) {
  know_spans();
  if (!chanid) return spans_of_all_.any_within(span);
  const auto own = spans_by_chanid_.find(*chanid);
  return spans_of_anybodys_.any_within(span) || (own != spans_by_chanid_.end() && own->second.any_within(span));
}

void find_sensor_contradictions(const HeldRows& sensors, std::int64_t null,
                                const std::function<void(const HeldRow& earlier, const HeldRow& later)>& tell) {
  bool is_any = false;
  find_contradictions(sensors, [&is_any](const HeldRow&, const HeldRow&) { is_any = true; });
  if (!is_any) return;
  // Those so far that end last.
  const HeldRow* longest = nullptr;
  std::unordered_map<std::int64_t, const HeldRow*> longest_by_chanid;
  for (const HeldRow& sensor : sensors) {
    const HeldRow*& longest_of_own = longest_by_chanid[sensor.key];
    const HeldRow* other =
        sensor.key == null ? longest : longer_of(longest_of_own, longest_by_chanid.try_emplace(null).first->second);
    if (other != nullptr && sensor.span.begin < other->span.end) tell(*other, sensor);
    longest_of_own = longer_of(longest_of_own, &sensor);
    longest = longer_of(longest, &sensor);
  }
}

}  // namespace triglub
