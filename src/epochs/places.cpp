// The stretches of time of a station are few; the walk goes on to the next when one has ended.
#include "epochs/places.h"

namespace triglub {

void Places::start(const HeldRows& sites) {
  find_stretches(sites, &stretches_);
  next_ = 0;
}

// Outside of the stretches: the row before, when the span comes from there and ends before the next; the row after,
// when it begins out here and goes on there.
std::uint32_t Places::kept_by(const Span& span) const {
  const Stretch* before = this->before();
  const Stretch* after = this->after();
  const bool comes_from_before = before != nullptr && span.begin < before->span.end;
  const bool reaches_after = after != nullptr && span.end > after->span.begin;
  if (comes_from_before && !reaches_after && span.end != kFuture) return before->row;
  if (reaches_after && !comes_from_before && span.begin != kPast) return after->row;
  return kAbsent;
}

Places::Place Places::at(Instant instant, const HeldRow& sitechan, const HeldRow* sensor) {
  while (next_ < stretches_.size() && stretches_[next_].span.end <= instant) ++next_;
  if (next_ < stretches_.size() && stretches_[next_].span.begin <= instant) return {stretches_[next_].row, false};
  Place place{kept_by(sitechan.span), true};
  if (place.site == kAbsent && sensor != nullptr) place.site = kept_by(sensor->span);
  return place;
}

bool Places::ends_with_station(const Span& span) const {
  const Stretch* before = this->before();
  const Stretch* after = this->after();
  const bool ends = after == nullptr && before != nullptr && span.end == kFuture && span.begin < before->span.end;
  const bool begins = before == nullptr && after != nullptr && span.begin == kPast && span.end > after->span.begin;
  return ends || begins;
}

}  // namespace triglub
