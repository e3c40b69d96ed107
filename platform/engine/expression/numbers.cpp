// Numbers of expressions: what a text must look like to be one, and the texts that are made of them.
#include "engine/expression/numbers.h"

#include <charconv>

#include "base/characters.h"
#include "base/number.h"
#include "platform/text.h"

namespace triglub::expression {

namespace {

std::size_t digits_at(std::string_view text, std::size_t at) {
  std::size_t n = 0;
  while (at + n < text.size() && is_digit(text[at + n])) ++n;
  return n;
}

// The length of the exponent at `at`, 0 when there is none.
std::size_t exponent_at(std::string_view text, std::size_t at) {
  if (at >= text.size() || (text[at] != 'e' && text[at] != 'E')) return 0;
  const bool has_sign = at + 1 < text.size() && (text[at + 1] == '+' || text[at + 1] == '-');
  const std::size_t digits = digits_at(text, at + 1 + has_sign);
  return digits == 0 ? 0 : 1 + has_sign + digits;
}

}  // namespace

std::size_t number_length(std::string_view text, bool* is_whole) {
  std::size_t digits = digits_at(text, 0);
  std::size_t length = digits;
  if (length < text.size() && text[length] == '.') {
    const std::size_t decimals = digits_at(text, length + 1);
    digits += decimals;
    length += 1 + decimals;
  }
  if (digits == 0) return 0;
  length += exponent_at(text, length);
  *is_whole = length == digits;
  return length;
}

std::optional<Number> read_number(std::string_view text) {
  text = trimmed(text);
  const bool has_sign = !text.empty() && (text.front() == '-' || text.front() == '+');
  bool is_whole = false;
  const std::size_t length = number_length(text.substr(has_sign), &is_whole);
  if (length == 0 || length + has_sign != text.size()) return std::nullopt;

  Number number{};
  if (is_whole && parse_integer(text, &number.integer)) {
    number.is_whole = true;
    number.real = static_cast<double>(number.integer);
    return number;
  }
  if (!parse_real(text, &number.real)) return std::nullopt;
  return number;
}

bool to_integer(double number, std::int64_t* result) {
  constexpr double kBeyond = 9223372036854775808.0;  // 2^63
  if (!(number >= -kBeyond && number < kBeyond)) return false;
  *result = static_cast<std::int64_t>(number);
  return true;
}

bool to_integer(std::string_view text, std::int64_t* result) {
  const std::optional<Number> number = read_number(text);
  if (!number) return false;
  if (!number->is_whole) return to_integer(number->real, result);
  *result = number->integer;
  return true;
}

bool to_real(std::string_view text, double* result) {
  const std::optional<Number> number = read_number(text);
  if (!number) return false;
  *result = number->real;
  return true;
}

std::string_view text_of(std::int64_t number, NumberBuffer* buffer) {
  const auto written = std::to_chars(buffer->data(), buffer->data() + buffer->size(), number);
  return {buffer->data(), static_cast<std::size_t>(written.ptr - buffer->data())};
}

std::string_view text_of(double number, NumberBuffer* buffer) {
  // Zero has one text, whatever its sign.
  if (number == 0) number = 0;
  const auto written = std::to_chars(buffer->data(), buffer->data() + buffer->size(), number);
  return {buffer->data(), static_cast<std::size_t>(written.ptr - buffer->data())};
}

}  // namespace triglub::expression
