// Both ends are brought to seconds or days on a line, infinite where they are null.
#include "engine/operations/range.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/timeconv.h"

namespace triglub {

namespace {

constexpr double kSecondsADay = 86400.0;

constexpr double kOpen = std::numeric_limits<double>::infinity();
constexpr Range kNothing{kOpen, -kOpen};

// Days count on without gaps from one year to the next, which the digits of a year-day do not.
double stored_value(const RangeEnd& end) {
  constexpr double kFar = 1e15;  // beyond every date
  if (end.type != FieldType::date) return end.value;
  return static_cast<double>(day_number(static_cast<std::int64_t>(std::clamp(end.value, -kFar, kFar))));
}

}  // namespace

Range make_range(const RangeEnd& begin, const RangeEnd& end, RangeUnit unit) {
  const Range range{begin.is_null ? -kOpen : stored_value(begin), end.is_null ? kOpen : stored_value(end)};
  // Judged before the unit changes: within one day, a range that runs backward would come out as a point.
  if (range.end < range.begin) return kNothing;
  if (unit == RangeUnit::as_stored || begin.type == FieldType::date) return range;
  return {std::floor(range.begin / kSecondsADay), std::floor(range.end / kSecondsADay)};
}

}  // namespace triglub
