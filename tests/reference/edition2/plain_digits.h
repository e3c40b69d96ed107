// Numbers that were worked out of stored ones, with no more digits than these say.
//
// A stored number is known to half of the last place of its format, or of its own text where that is finer: its doubt.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_PLAIN_DIGITS_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_PLAIN_DIGITS_H

#include <string>

namespace triglub_reference::edition2 {

// The doubt of a number of a format with so many decimals ("%11.7f": 7).
double doubt_of_decimals(double number, int decimals);
// The doubt of a number of a format with so many significant digits ("%16.8g": 8).
double doubt_of_digits(double number, int digits);

// What is in doubt in two ways is so by the smaller of them; 0 is no doubt.
double smaller_doubt(double a, double b);

// The text of the fewest significant digits that is within the doubt; without doubt (0), the shortest that reads back.
std::string digits_within(double number, double doubt);

}  // namespace triglub_reference::edition2

#endif
