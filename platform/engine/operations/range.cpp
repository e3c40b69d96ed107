#include "engine/operations/range.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/timeconv.h"

namespace triglub {

namespace {

constexpr double SECONDS_A_DAY = 86400.0;

constexpr double OPEN = std::numeric_limits<double>::infinity();
constexpr Range NOTHING{OPEN, -OPEN};

// Days count on without gaps from one year to the next, which the digits of a year-day do not.
double stored_value(const RangeEnd& end) {
  constexpr double FAR = 1e15;  // beyond every date
  if (end.type != FieldType::date) return end.value;
  return static_cast<double>(day_number(static_cast<std::int64_t>(std::clamp(end.value, -FAR, FAR))));
}

}  // namespace

Range make_range(const RangeEnd& begin, const RangeEnd& end, RangeUnit unit) {
  const Range range{begin.is_null ? -OPEN : stored_value(begin), end.is_null ? OPEN : stored_value(end)};
  // Judged before the unit changes: within one day, a range that runs backward would come out as a point.
  if (range.end < range.begin) return NOTHING;
  if (unit == RangeUnit::as_stored || begin.type == FieldType::date) return range;
  return {std::floor(range.begin / SECONDS_A_DAY), std::floor(range.end / SECONDS_A_DAY)};
}

}  // namespace triglub
