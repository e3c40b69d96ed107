// Numbers and the texts that stand for them.
#ifndef TRIGLUB_ENGINE_EXPRESSION_NUMBERS_H
#define TRIGLUB_ENGINE_EXPRESSION_NUMBERS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace triglub::expression {

// A number as a text holds it: whole when it is digits only and fits 64 bits.
struct Number {
  bool is_whole;
  std::int64_t integer;  // when whole
  double real;           // always
};

// The length of the unsigned number at the start of `text`: digits, with a point among or around them and an exponent
// behind them or not; 0 when there is none. *is_whole tells that it is digits only.
std::size_t number_length(std::string_view text, bool* is_whole);

// The number that the text is, with a sign and blanks at its ends or not. Nothing for any other text, and for a number
// too large for a double.
std::optional<Number> read_number(std::string_view text);

// The number cut towards zero, and the number that a text is. False, the result untouched, when there is no such
// number.
bool to_integer(double number, std::int64_t* result);
bool to_integer(std::string_view text, std::int64_t* result);
bool to_real(std::string_view text, double* result);

// Room for the text of any number.
using NumberBuffer = std::array<char, 32>;

// The decimal text of an integer, and the shortest text that reads back to the same real; valid as long as the buffer.
std::string_view text_of(std::int64_t number, NumberBuffer* buffer);
std::string_view text_of(double number, NumberBuffer* buffer);

}  // namespace triglub::expression

#endif
