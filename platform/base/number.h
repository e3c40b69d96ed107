// Decimal numbers of texts: of tables, of response files, of expressions and of times alike.
#ifndef TRIGLUB_BASE_NUMBER_H
#define TRIGLUB_BASE_NUMBER_H

#include <cstdint>
#include <string_view>

namespace triglub {

// A whole text (no blanks around it) as a decimal integer, optionally signed. False for anything else, overflow too.
bool parse_integer(std::string_view text, std::int64_t* value);

enum class NumberReading : std::uint8_t { number, too_large, none };

// A whole text (no blanks around it) as a decimal number, optionally signed and with an exponent; the nearest double,
// which is a zero of its sign for a number too small for any other. No number, and *value untouched, for anything else:
// nan, inf and hexadecimal forms too, and what is too large for a double.
NumberReading read_real(std::string_view text, double* value);

// True when read_real gives a number.
bool parse_real(std::string_view text, double* value);

}  // namespace triglub

#endif
