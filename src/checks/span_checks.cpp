// Overlaps are looked for when all epochs of a code are known: sorted by begin, each is compared with the one before it
// that ends last, so that the cost does not grow with the square of their number.
#include "checks/span_checks.h"

#include <algorithm>
#include <limits>

namespace triglub::checks {

namespace {

// Nobody plans a station for that long: ends from this year on stand for open ones.
constexpr int kFarYear = 2100;

std::optional<Instant> check_date(const Element& element, std::string_view name, const Place& place) {
  const std::string* text = attribute(element, name);
  if (text == nullptr) return std::nullopt;
  const auto instant = parse_instant(trimmed(*text));
  const std::string found = std::string(name) + " is " + quoted(*text);
  if (!instant) {
    place.tell(Rule::date_format, element.line, found + ", expected a date and time of the calendar");
  } else if (!instant->has_zone) {
    place.tell(Rule::date_zone, element.line, found + " without a time zone, expected UTC");
  }
  return instant;
}

void check_end(const Instant& end, const Element& element, const Place& place) {
  if (end.year < kFarYear) return;
  place.tell(Rule::date_far, element.line,
             "endDate is " + quoted(attribute_text(element, "endDate")) + ", expected an end that is known");
}

std::int64_t begin_of(const Span& span) { return span.begin.value_or(std::numeric_limits<std::int64_t>::min()); }
std::int64_t end_of(const Span& span) { return span.end.value_or(std::numeric_limits<std::int64_t>::max()); }

}  // namespace

Span check_dates(const Element& element, const Place& place) {
  const auto begin = check_date(element, "startDate", place);
  const auto end = check_date(element, "endDate", place);
  if (end) check_end(*end, element, place);
  Span span;
  if (begin) span.begin = begin->microseconds;
  if (end) span.end = end->microseconds;
  if (begin && end && *span.end <= *span.begin) {
    place.tell(Rule::date_order, element.line,
               "endDate is " + quoted(attribute_text(element, "endDate")) + ", expected after " +
                   quoted(attribute_text(element, "startDate")));
  }
  return span;
}

void check_begin(const Element& element, const Place& place) {
  if (attribute(element, "startDate") != nullptr) return;
  place.tell(Rule::begin_missing, element.line, "there is no startDate, expected one");
}

void check_within(const Span& inner, const Span& outer, const std::string& outer_name, int line, const Place& place) {
  if (begins_before(inner, outer)) {
    place.tell(Rule::epoch_outside, line, "begins before its " + outer_name + ", expected within it");
  }
  if (ends_after(inner, outer)) {
    place.tell(Rule::epoch_outside, line, "ends after its " + outer_name + ", expected within it");
  }
}

void EpochBook::add(const std::string& code, const Span& span, int line, const Place& place) {
  epochs_[code].push_back({span, line, place});
}

void EpochBook::close() {
  for (auto& [code, epochs] : epochs_) tell_overlaps(epochs);
  epochs_.clear();
}

void EpochBook::tell_overlaps(std::vector<Epoch>& epochs) {
  std::stable_sort(epochs.begin(), epochs.end(),
                   [](const Epoch& a, const Epoch& b) { return begin_of(a.span) < begin_of(b.span); });
  const Epoch* longest = nullptr;
  for (const Epoch& epoch : epochs) {
    if (longest != nullptr && overlap(longest->span, epoch.span)) {
      epoch.place.tell(
          Rule::epoch_overlap, epoch.line,
          "overlaps the one of the same code on line " + std::to_string(longest->line) + ", expected one at a time");
    }
    if (longest == nullptr || end_of(epoch.span) > end_of(longest->span)) longest = &epoch;
  }
}

}  // namespace triglub::checks
