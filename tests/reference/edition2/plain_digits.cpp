#include "reference/edition2/plain_digits.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "reference/edition2/records.h"

namespace triglub_reference::edition2 {

namespace {

std::string scientific(double number) {
  char text[40];
  return {text, std::to_chars(text, text + sizeof text, number, std::chars_format::scientific).ptr};
}

// The power of ten of the first digit.
int exponent_of(double number) {
  const std::string text = scientific(number);
  return std::atoi(text.substr(text.find('e') + 1).c_str());
}

// The power of ten of the last digit of the shortest text.
int own_place(double number) {
  const std::string text = scientific(std::abs(number));
  const std::string digits = text.substr(0, text.find('e'));
  const auto decimals = digits.size() > 2 ? static_cast<int>(digits.size()) - 2 : 0;
  return exponent_of(number) - decimals;
}

double half_of_place(int place) { return std::strtod(("5e" + std::to_string(place - 1)).c_str(), nullptr); }

}  // namespace

double doubt_of_decimals(double number, int decimals) {
  return half_of_place(number == 0 ? -decimals : std::min(-decimals, own_place(number)));
}

double doubt_of_digits(double number, int digits) {
  return number == 0 ? 0 : half_of_place(std::min(exponent_of(number) - digits + 1, own_place(number)));
}

double smaller_doubt(double a, double b) { return a == 0 || b == 0 ? std::max(a, b) : std::min(a, b); }

std::string digits_within(double number, double doubt) {
  if (doubt == 0) return shortest(number);
  if (std::abs(number) <= doubt) return "0";
  constexpr int most_digits = 17;
  for (int digits = 1; digits < most_digits; ++digits) {
    char text[40];
    std::snprintf(text, sizeof text, "%.*e", digits - 1, number);
    const double rounded = std::strtod(text, nullptr);
    if (std::abs(rounded - number) <= doubt) return shortest(rounded);
  }
  return shortest(number);
}

}  // namespace triglub_reference::edition2
