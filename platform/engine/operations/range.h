// Ranges of validity, and when two of them overlap.
#ifndef TRIGLUB_ENGINE_OPERATIONS_RANGE_H
#define TRIGLUB_ENGINE_OPERATIONS_RANGE_H

#include "engine/schema/schema.h"

namespace triglub {

// Half-open, in days or in seconds; open to one side where the value is infinite.
struct Range {
  double begin;
  double end;
};

// True when the two overlap. Ranges are half-open, so one that ends when the other begins does not touch it. A range of
// length zero is a point and belongs to the range that begins at it or holds it. A range whose end lies before its
// begin overlaps nothing.
inline bool overlap(const Range& a, const Range& b) {
  const auto holds = [](const Range& range, double point) { return range.begin <= point && point < range.end; };
  if (a.end < a.begin || b.end < b.begin) return false;
  const bool a_is_point = a.begin == a.end;
  const bool b_is_point = b.begin == b.end;
  if (a_is_point && b_is_point) return a.begin == b.begin;
  if (a_is_point) return holds(b, a.begin);
  if (b_is_point) return holds(a, b.begin);
  return a.begin < b.end && b.begin < a.end;
}

// The unit in which two ranges are compared.
enum class RangeUnit { as_stored, days };

// A begin or an end as a row holds it.
struct RangeEnd {
  FieldType type;
  double value;
  bool is_null;  // the range is open on this side
};

// The range from one to the other in the unit.
Range make_range(const RangeEnd& begin, const RangeEnd& end, RangeUnit unit);

}  // namespace triglub

#endif
