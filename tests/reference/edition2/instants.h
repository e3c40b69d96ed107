// Instants in whole milliseconds since 1970, days since 1970, spans of time that may be open.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_INSTANTS_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_INSTANTS_H

#include <limits>
#include <optional>
#include <string>

namespace triglub_reference::edition2 {

// A double holds whole milliseconds of ten thousand years exactly, and knows infinity.
using Instant = double;
inline constexpr Instant kForever = std::numeric_limits<double>::infinity();
inline constexpr Instant kDay = 86400000.0;

struct Span {
  Instant begin = -kForever;
  Instant end = kForever;  // the first instant behind it

  bool is_empty() const { return end <= begin; }
  bool holds(Instant t) const { return begin <= t && t < end; }
};

Instant rounded(double seconds);
// As the begin and the end of a validity; nothing stands for a null.
Instant begin_of(std::optional<double> seconds);
Instant end_of(std::optional<double> seconds);
// An end so far in the future that it means none is none.
Instant opened(Instant end);

// The day of a yyyyddd, if it is a date of the years 1 to 9999.
std::optional<long> day_of_yearday(long yearday);

// YYYY-MM-DDTHH:MM:SSZ, with milliseconds where there are any; empty outside the years 1 to 9999.
std::string instant_text(Instant instant);

}  // namespace triglub_reference::edition2

#endif
