// Numbers as a document has them: with six significant digits.
#ifndef TRIGLUB_BASE_SIX_DIGITS_H
#define TRIGLUB_BASE_SIX_DIGITS_H

#include <array>
#include <charconv>
#include <cstddef>
#include <string>

namespace triglub {

// Appends the number as an ostream with default settings writes it, with a decimal point in every locale: std::to_chars
// gives what printf's %g gives in the C locale, and several times as fast. Inline, as much of a document is such
// numbers.
inline void append_six_digits(double number, std::string* text) {
  constexpr int kSignificantDigits = 6;
  std::array<char, 32> digits;
  char* const end = digits.data() + digits.size();
  const char* const last =
      std::to_chars(digits.data(), end, number, std::chars_format::general, kSignificantDigits).ptr;
  text->append(digits.data(), static_cast<std::size_t>(last - digits.data()));
}

}  // namespace triglub

#endif
