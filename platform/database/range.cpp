#include "database/range.h"

#include <cmath>
#include <limits>

#include "platform/timeconv.h"

namespace triglub {

namespace {

constexpr double SECONDS_A_DAY = 86400.0;

bool holds(const Range& range, double point) { return range.begin <= point && point < range.end; }

// Days count on without gaps from one year to the next, which the digits of a year-day do not.
double in_unit(const FieldSchema& field, double value, RangeUnit unit) {
  if (field.type == FieldType::date) return static_cast<double>(day_number(static_cast<std::int64_t>(value)));
  return unit == RangeUnit::days ? std::floor(value / SECONDS_A_DAY) : value;
}

}  // namespace

bool overlap(const Range& a, const Range& b) {
  if (a.end < a.begin || b.end < b.begin) return false;
  const bool a_is_point = a.begin == a.end;
  const bool b_is_point = b.begin == b.end;
  if (a_is_point && b_is_point) return a.begin == b.begin;
  if (a_is_point) return holds(b, a.begin);
  if (b_is_point) return holds(a, b.begin);
  return a.begin < b.end && b.begin < a.end;
}

double range_begin(const FieldSchema& field, double value, bool is_null, RangeUnit unit) {
  return is_null ? -std::numeric_limits<double>::infinity() : in_unit(field, value, unit);
}

double range_end(const FieldSchema& field, double value, bool is_null, RangeUnit unit) {
  return is_null ? std::numeric_limits<double>::infinity() : in_unit(field, value, unit);
}

}  // namespace triglub
