// Numbers as flat files hold them.
#ifndef TRIGLUB_BASE_NUMBER_H
#define TRIGLUB_BASE_NUMBER_H

#include <cstdint>
#include <string_view>

namespace triglub {

// A whole text (no blanks around it) as a decimal integer, optionally signed. False for anything else, overflow too.
bool parse_integer(std::string_view text, std::int64_t* value);

// A whole text (no blanks around it) as a finite decimal number, optionally signed and with an exponent; the nearest
// double. False for anything else: nan, inf, hexadecimal forms and overflow too.
bool parse_real(std::string_view text, double* value);

}  // namespace triglub

#endif
