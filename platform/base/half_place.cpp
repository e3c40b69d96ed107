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
  if (decimals < 0 || decimals >= kExactPowers) return false;
  const double scaled = std::nearbyint(number * power_of_ten(decimals));
  return std::fabs(scaled) < 1e15 && scaled / power_of_ten(decimals) == number;
}

// With how many decimals the number has so many significant digits; -1 where that is not clear.
int decimals_for(double number, int digits) {
  if (digits >= kExactPowers) return -1;
  int decimals = 0;
  while (decimals < kExactPowers && std::fabs(number) * power_of_ten(decimals) < power_of_ten(digits - 1)) ++decimals;
  const double whole = std::nearbyint(std::fabs(number) * power_of_ten(decimals));
  return whole >= power_of_ten(digits - 1) && whole < power_of_ten(digits) ? decimals : -1;
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

// A power of ten as a step between numbers: they are whole numbers of steps.
struct Step {
  int exponent = 0;  // within kExactPowers

  double count_in(double number) const {
    return exponent < 0 ? number * power_of_ten(-exponent) : number / power_of_ten(exponent);
  }
  // The nearest double of an exact product or quotient, for whole counts of up to 53 bits.
  double times(double count) const {
    return exponent < 0 ? count / power_of_ten(-exponent) : count * power_of_ten(exponent);
  }
};

// The greatest step that is no more than twice the doubt, with some room for noise. Nothing beyond the exact powers.
std::optional<Step> step_within(double doubt) {
  const double most = 2 * doubt * (1 + 1e-9);
  int exponent = 0;
  while (exponent > -kExactPowers && most * power_of_ten(-exponent) < 1) --exponent;
  while (exponent < kExactPowers && most >= 1 && power_of_ten(exponent + 1) <= most) ++exponent;
  const bool is_beyond = exponent == kExactPowers || exponent == -kExactPowers;
  return is_beyond ? std::nullopt : std::optional(Step{exponent});
}

// The nearest whole number of steps. Nothing where noise might decide, or where steps are more than a significant
// digit.
std::optional<double> rounded_to(Step step, double number) {
  constexpr double kMost = 1e12;
  constexpr double kNearlyHalf = 0.5 - 1e-3;
  const double count = step.count_in(number);
  const double nearest = std::nearbyint(count);
  const bool is_clear = std::fabs(count) >= 1 && std::fabs(count) < kMost && std::fabs(count - nearest) < kNearlyHalf;
  return is_clear ? std::optional(step.times(nearest)) : std::nullopt;
}

// The fast form, by arithmetic that is exact where it matters; nothing where it would not be. Steps of twice the doubt
// or less are surely fine enough; whether ten times such a step is, has to be tried, and a hundred times is only where
// that gives the same number.
std::optional<double> fewest_digits_by_steps(double number, double doubt) {
  const std::optional<Step> step = step_within(doubt);
  if (!step) return std::nullopt;
  const auto is_within = [&](double rounded) { return std::fabs(rounded - number) <= doubt; };
  const std::optional<double> fine = rounded_to(*step, number);
  if (!fine || !is_within(*fine)) return std::nullopt;
  const std::optional<double> coarse = rounded_to(Step{step->exponent + 1}, number);
  if (!coarse) return std::nullopt;
  return is_within(*coarse) ? coarse : fine;
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
  const int decimals = counted_ == Counted::decimals ? count_ : decimals_for(number, count_);
  if (has_decimals(number, decimals)) return 5 / power_of_ten(decimals + 1);
  if (counted_ == Counted::digits && number == 0) return 0;
  const Scientific own = scientific(number);
  const int place = counted_ == Counted::decimals ? -count_ : own.exponent - count_ + 1;
  return half_of(std::min(place, own.last_place()));
}

double fewest_digits(double number, double doubt) {
  if (!(doubt > 0) || !std::isfinite(number)) return number;
  if (std::fabs(number) <= doubt) return 0;
  const std::optional<double> fast = fewest_digits_by_steps(number, doubt);
  return fast ? *fast : fewest_digits_by_text(number, doubt);
}

}  // namespace triglub
