// Numbers as a document has them: with six significant digits.
#ifndef TRIGLUB_BASE_SIX_DIGITS_H
#define TRIGLUB_BASE_SIX_DIGITS_H

#include <string>

namespace triglub {

// Appends the number as an ostream with default settings writes it, with a decimal point in every locale.
void append_six_digits(double number, std::string* text);

}  // namespace triglub

#endif
