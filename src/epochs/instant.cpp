// The limits are those of the calendar that documents are dated by.
#include "epochs/instant.h"

#include <algorithm>
#include <cmath>

#include "platform/timeconv.h"

namespace triglub {

namespace {

constexpr Instant kOpenFrom = 9999936000000;  // 2286-11-20T00:00:00
constexpr double kMost = 1e13;                // seconds far outside the calendar, and not yet too large to multiply

Instant rounded(double seconds) {
  return static_cast<Instant>(std::floor(std::clamp(seconds, -kMost, kMost) * 1000 + 0.5));
}

}  // namespace

void Span::include(const Span& other) {
  begin = std::min(begin, other.begin);
  end = std::max(end, other.end);
}

Instant begin_at(double seconds, double null) {
  if (seconds == null) return kPast;
  const Instant instant = rounded(seconds);
  if (instant < kYear1) return kPast;
  return instant >= kYear10000 ? kFuture : instant;
}

Instant end_at(double seconds, double null) {
  if (seconds == null) return kFuture;
  const Instant instant = rounded(seconds);
  if (instant < kYear1) return kPast;
  return instant >= kOpenFrom ? kFuture : instant;
}

std::optional<Instant> start_of_day(std::int64_t yyyyddd) {
  constexpr std::int64_t kLast = 9999366;
  if (yyyyddd < 0 || yyyyddd > kLast) return std::nullopt;
  const double seconds = epoch(static_cast<int>(yyyyddd));
  if (seconds * 1000 < static_cast<double>(kYear1) || seconds != std::floor(seconds)) return std::nullopt;
  return static_cast<Instant>(seconds) * 1000;
}

Instant end_of_day(Instant start) { return start + kDay >= kOpenFrom ? kFuture : start + kDay; }

double seconds_of(Instant instant, double null) {
  return instant == kPast || instant == kFuture ? null : static_cast<double>(instant) / 1000;
}

}  // namespace triglub
