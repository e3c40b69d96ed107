// Decimal texts to numbers: plain decimals by one division, the others by the standard library.
#include "base/number.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "base/c_locale.h"
#include "base/characters.h"

namespace triglub {

namespace {

// std::from_chars knows no leading '+'.
std::string_view without_plus(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && (is_digit(text[1]) || text[1] == '.')) text.remove_prefix(1);
  return text;
}

constexpr std::array<double, 19> powers_of_ten() {
  std::array<double, 19> powers{};
  double power = 1.0;
  for (double& p : powers) {
    p = power;
    power *= 10.0;
  }
  return powers;
}

// Plain decimals of up to 18 digits whose digits fit the 53 bits of a double: an exact integer divided by an exact
// power of ten is correctly rounded by IEEE division (W. Clinger, "How to read floating point numbers accurately",
// 1990).
bool parse_plain_decimal(std::string_view text, double* value) {
  static constexpr auto kPowers = powers_of_ten();
  constexpr std::uint64_t kExact = std::uint64_t{1} << 53;
  if (text.size() > 19) return false;
  std::size_t i = text[0] == '-' ? 1 : 0;
  std::uint64_t digits = 0;
  std::size_t count = 0;
  for (; i < text.size() && is_digit(text[i]); ++i, ++count)
    digits = digits * 10 + static_cast<unsigned>(text[i] - '0');
  std::size_t decimals = 0;
  if (i < text.size() && text[i] == '.') {
    for (++i; i < text.size() && is_digit(text[i]); ++i, ++decimals) {
      digits = digits * 10 + static_cast<unsigned>(text[i] - '0');
    }
  }
  count += decimals;
  if (i != text.size() || count == 0 || count > 18 || digits > kExact) return false;
  const double magnitude = static_cast<double>(digits) / kPowers[decimals];
  *value = text[0] == '-' ? -magnitude : magnitude;
  return true;
}

}  // namespace

bool parse_integer(std::string_view text, std::int64_t* value) {
  text = without_plus(text);
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return false;
  *value = number;
  return true;
}

NumberReading read_real(std::string_view text, double* value) {
  text = without_plus(text);
  if (text.empty()) return NumberReading::none;
  if (parse_plain_decimal(text, value)) return NumberReading::number;
  double number = 0.0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (stop != end || error == std::errc::invalid_argument) return NumberReading::none;
  if (error == std::errc::result_out_of_range) {
    // from_chars does not tell too large from too small; a number too small to tell from zero is still a number.
    number = c_strtod(std::string(text).c_str(), nullptr);
    if (std::isinf(number)) return NumberReading::too_large;
  }
  if (!std::isfinite(number)) return NumberReading::none;  // "inf" and "nan" in any spelling
  *value = number;
  return NumberReading::number;
}

bool parse_real(std::string_view text, double* value) { return read_real(text, value) == NumberReading::number; }

}  // namespace triglub
