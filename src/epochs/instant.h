// Instants as epochs are cut by them: whole milliseconds. The tables hold times as doubles and days as numbers; rounded
// once, before anything is compared, two times that are written alike are the same instant.
#ifndef TRIGLUB_SRC_EPOCHS_INSTANT_H
#define TRIGLUB_SRC_EPOCHS_INSTANT_H

#include <cstdint>
#include <limits>
#include <optional>

namespace triglub {

// Milliseconds since 1970.
using Instant = std::int64_t;

// Before and behind everything: open.
inline constexpr Instant kPast = std::numeric_limits<Instant>::min();
inline constexpr Instant kFuture = std::numeric_limits<Instant>::max();

inline constexpr Instant kDay = 86400000;

// The calendar that documents are dated by: from the begin of the year 1 to before the begin of the year 10000.
inline constexpr Instant kYear1 = -62135596800000;
inline constexpr Instant kYear10000 = 253402300800000;

// From `begin` to before `end`.
struct Span {
  Instant begin = kPast;
  Instant end = kFuture;

  bool holds_ever() const { return begin < end; }
  bool holds_at(Instant instant) const { return begin <= instant && instant < end; }
  bool meets(const Span& other) const { return begin < other.end && other.begin < end; }
  // Grows to hold another.
  void include(const Span& other);

  friend bool operator==(const Span&, const Span&) = default;
};

// The begin and end of a row that holds for a span of epoch seconds. A begin before year 1 is open, one after year 9999
// never comes; an end from 2286-11-20 on, where tables put one that is not known yet, is open.
Instant begin_at(double seconds, double null);
Instant end_at(double seconds, double null);

// 00:00 of a day (yyyyddd); nothing for what is no date.
std::optional<Instant> start_of_day(std::int64_t yyyyddd);

// Behind the last instant of a day that begins there: 24:00, open as end_at.
Instant end_of_day(Instant start);

// Epoch seconds; `null` for an open end.
double seconds_of(Instant instant, double null);

}  // namespace triglub

#endif
