// Rounding goes by way of decimal texts, which are exact. Fast forms stand in for it where integers over powers of ten
// give the same.
#include "base/half_place.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <system_error>

#include "base/characters.h"

namespace triglub {

namespace {

constexpr int kMostDigits = 17;   // that tell any double from its neighbours
constexpr int kMostPlaces = 400;  // beyond what a double can hold

// A number as digits and an exponent of ten: of 61.25 they are 4 digits, the first of them for tens, that is 1.
struct Scientific {
  std::array<char, 32> text;
  std::size_t size = 0;
  int digits = 0;    // without zeros at the end
  int exponent = 0;  // of the first digit

  int last_place() const { return exponent - digits + 1; }
};

// Of the text of so many characters that stands in it.
void find_parts(std::size_t size, Scientific* made) {
  made->size = size;
  const char* const begin = made->text.data() + (made->text[0] == '-' ? 1 : 0);
  const char* const end = made->text.data() + size;
  const char* const mark = std::find(begin, end, 'e');
  std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, made->exponent);
  const char* last = mark;
  while (last > begin + 1 && (last[-1] == '0' || last[-1] == '.')) --last;
  made->digits = static_cast<int>(last - begin) - (last > begin + 1 ? 1 : 0);  // less the point
}

// `precision`: how many digits behind the point of the text, or nothing for as many as it needs.
template <typename... Precision>
Scientific scientific(double number, Precision... precision) {
  Scientific made;
  char* const begin = made.text.data();
  const auto written =
      std::to_chars(begin, begin + made.text.size(), number, std::chars_format::scientific, precision...);
  find_parts(static_cast<std::size_t>(written.ptr - begin), &made);
  return made;
}

// Infinite beyond the range of doubles.
double number_of(const Scientific& parts) {
  double number = 0;
  const auto read = std::from_chars(parts.text.data(), parts.text.data() + parts.size, number);
  return read.ec == std::errc() ? number : HUGE_VAL;
}

// 5 in the place below: of place -4, which is 0.0001, that is 0.00005.
double half_of(int place) {
  const std::string text = "5e" + std::to_string(place - 1);
  double half = 0;
  std::from_chars(text.data(), text.data() + text.size(), half);
  return half;  // 0 when it is too small for a double
}

constexpr int kExactPowers = 22;  // 10 to the power of it is a double

constexpr std::array<double, kExactPowers + 1> powers_of_ten() {
  std::array<double, kExactPowers + 1> powers{};
  double power = 1;
  for (double& p : powers) {
    p = power;
    power *= 10;
  }
  return powers;
}

constexpr auto kPowers = powers_of_ten();

double power_of_ten(int exponent) { return kPowers[static_cast<std::size_t>(exponent)]; }

// Whether the number is one of so many decimals or fewer; may miss some. A decimal of 15 digits is the only one of its
// double, and an exact integer over an exact power of ten gives the nearest double of the decimal.
bool has_decimals(double number, int decimals) {
  if (decimals >= kExactPowers) return false;
  const double scaled = std::nearbyint(number * power_of_ten(decimals));
  return std::fabs(scaled) < 1e15 && scaled / power_of_ten(decimals) == number;
}

// The greatest place of which half is no more than the doubt.
int place_within(double doubt) {
  const Scientific parts = scientific(doubt);
  return parts.text[0] >= '5' ? parts.exponent + 1 : parts.exponent;
}

void skip_digits(std::string_view* text) {
  while (!text->empty() && is_digit(text->front())) text->remove_prefix(1);
}

// The number in front of the text, which is taken away; `without` when there is none.
int taken_number(std::string_view* text, int without) {
  const std::string_view from = *text;
  skip_digits(text);
  int number = without;
  const auto read = std::from_chars(from.data(), text->data(), number);
  return std::min(read.ec == std::errc::result_out_of_range ? kMostPlaces : number, kMostPlaces);
}

void skip_any_of(std::string_view characters, std::string_view* text) {
  text->remove_prefix(std::min(text->find_first_not_of(characters), text->size()));
}

// Begins with digits that are surely enough, and takes away one after the other: where some digits are not enough,
// fewer are not either.
double fewest_digits_by_text(double number, double doubt) {
  const auto is_within = [&](double rounded) { return std::fabs(rounded - number) <= doubt; };
  const int enough = scientific(number).exponent - place_within(doubt) + 2;
  double best = number;
  for (int digits = std::clamp(enough, 1, kMostDigits); digits > 0; --digits) {
    const Scientific fewer = scientific(number, digits - 1);
    const double rounded = number_of(fewer);
    if (!is_within(rounded)) break;
    best = rounded;
    digits = fewer.digits;
  }
  return best;
}

// The fast form, for numbers of few decimals, as most are: of so many decimals that they are surely enough the number
// is an integer. Nothing where fewer may be enough, or where it is not clear beyond the noise of arithmetic.
std::optional<double> fewest_digits_by_decimals(double number, double doubt) {
  constexpr int kMostDecimals = 15;
  constexpr double kMost = 1e12;
  constexpr double kNearlyOne = 1 - 1e-9;
  constexpr double kNearlyHalf = 0.5 - 1e-3;
  int decimals = 0;
  while (decimals < kMostDecimals && 2 * doubt * power_of_ten(decimals) < kNearlyOne) ++decimals;
  const double power = power_of_ten(decimals);
  const double scaled = number * power;
  if (2 * doubt * power < kNearlyOne || !(std::fabs(scaled) >= 1 && std::fabs(scaled) < kMost)) return std::nullopt;
  const double nearest = std::nearbyint(scaled);
  const auto is_outside = [&](double whole) { return std::fabs(whole / power - number) > doubt; };
  if (std::fabs(scaled - nearest) > kNearlyHalf || is_outside(nearest)) return std::nullopt;
  const auto last = static_cast<double>(static_cast<std::int64_t>(nearest) % 10);
  const double towards_zero = nearest - last;
  const double away = towards_zero + std::copysign(10, nearest);
  // The step between decimals is more than a fifth of the doubt: a last digit that is 0 stands for those before it.
  const bool is_least = decimals > 0 && (last == 0 || (is_outside(towards_zero) && is_outside(away)));
  return is_least ? std::optional(nearest / power) : std::nullopt;
}

}  // namespace

LastPlace LastPlace::of_format(std::string_view format) {
  constexpr int kUsual = 6;
  if (!format.starts_with('%')) return {};
  format.remove_prefix(1);
  skip_any_of("-+ #0", &format);
  skip_digits(&format);
  int precision = kUsual;
  if (format.starts_with('.')) {
    format.remove_prefix(1);
    precision = taken_number(&format, 0);
  }
  skip_any_of("lL", &format);
  if (format == "f" || format == "F") return {Counted::decimals, precision};
  if (format == "e" || format == "E") return {Counted::digits, precision + 1};
  if (format == "g" || format == "G") return {Counted::digits, std::max(precision, 1)};
  return {};
}

double LastPlace::half_at(double number) const {
  if (!is_known() || !std::isfinite(number)) return 0;
  if (counted_ == Counted::decimals && has_decimals(number, count_)) return 5 / power_of_ten(count_ + 1);
  if (counted_ == Counted::digits && number == 0) return 0;
  const Scientific own = scientific(number);
  const int place = counted_ == Counted::decimals ? -count_ : own.exponent - count_ + 1;
  return half_of(std::min(place, own.last_place()));
}

double fewest_digits(double number, double doubt) {
  if (!(doubt > 0) || !std::isfinite(number)) return number;
  if (std::fabs(number) <= doubt) return 0;
  const std::optional<double> fast = fewest_digits_by_decimals(number, doubt);
  return fast ? *fast : fewest_digits_by_text(number, doubt);
}

}  // namespace triglub
