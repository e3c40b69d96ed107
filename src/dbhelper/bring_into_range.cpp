// Steps into a range, as many as it takes, in the time of a few hundred.
//
// The result is that of "while value > high, subtract step", and then "while value < low, add step", to the last bit.
// Subtractions of large numbers round, so a remainder, which is exact, ends elsewhere; and there may be 2^53 of them.
//
// Most need not be made, though. The numbers between two neighbouring powers of two are the multiples of one unit, and
// results that stay between the two are rounded to multiples of it. Let the step be q + r units, q whole and r below 1.
// From m units, a step leads to m - q where r is less than 1/2, and to m - q - 1 where it is more, whatever m is. Where
// r is just 1/2, it leads to the even one of the two: so from the second step on, m is even, and it is always the same
// one of the two. So of three numbers in a row between two powers of two, the last two are as far apart as all that
// follow, and a multiple of that difference, which is exact, leads over all of them but a few.
#include <algorithm>
#include <cmath>
#include <limits>

#include "dbhelper.h"

namespace {

// The lower end of those numbers, around the value, that are multiples of one unit.
double bottom_of_binade(double value) {
  if (value == 0.0) return value;
  if (value > 0.0) return std::ldexp(1.0, std::ilogb(value));
  return std::max(-std::ldexp(1.0, std::ilogb(value) + 1), std::numeric_limits<double>::lowest());
}

// Steps of `difference` down from the value, all but the last two or three that stay above the limit. The quotient is
// below 2^52, so rounding has raised it by less than one: the result lies a difference or more above the limit, and not
// even the exact result of the last step lies below.
double near_limit(double value, double limit, double difference) {
  const double steps = std::floor((value - limit) / difference) - 2.0;
  return steps > 0.0 ? value - steps * difference : value;
}

// Where "while value > high, subtract step" ends, or is seen to stand still.
double step_down(double value, double high, double step) {
  while (value > high) {
    const double once = value - step;
    if (once == value) break;
    const double twice = once - step;
    const double limit = std::max(high, bottom_of_binade(value));
    value = twice > limit && twice < once ? near_limit(twice, limit, once - twice) : once;
  }
  return value;
}

}  // namespace

double bring_into_range(double value, double low, double high, double step) {
  if (step <= 0.0) return value;  // no number of steps leads anywhere
  value = step_down(value, high, step);
  // Rounding treats both signs alike. Taken from 0, the result is 0 rather than -0, as a sum is.
  return value < low ? 0.0 - step_down(-value, -low, step) : value;
}
