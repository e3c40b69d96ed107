// The digits of numbers that are worked out, found by trying.
//
// A stored real may be off by half of the last place that its file writes. That goes through arithmetic to first order,
// and of several stored reals the one that is known best counts.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_DIGITS_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_DIGITS_H

#include <string>

#include "reference/edition2/expression.h"

namespace triglub_reference::edition2 {

// Half of the last place of a field's number, or of its own digits where they are more; 0 of integers and times.
double half_place(const Field& field, double number);

// By how much the value at a record may be off; 0 when it is exact. REQUIRES: the value is there.
double doubt_at(const Node& node, const Record& record, const RecordList& of_element);

// Of two doubts that come together; 0 is none.
double smaller(double a, double b);

// The number with the fewest digits that is no further away than the doubt; 0 when that is no further.
double fewest_digits(double number, double doubt);

}  // namespace triglub_reference::edition2

#endif
