// The digits that a number has: half a last place, and the fewest digits within it.
#include "base/half_place.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "support/random_seed.h"

namespace triglub {
namespace {

TEST(LastPlaceOfAFormat, IsHalvedOrThatOfTheNumberWhereItIsFiner) {
  struct Case {
    const char* format;
    double number;
    double half;
  };
  for (const auto& [format, number, half] : std::vector<Case>{{"%9.4f", 1.645, 0.00005},
                                                              {"%9.4f", -1.645, 0.00005},
                                                              {"%9.4f", 100000, 0.00005},
                                                              {"%9.4f", 0, 0.00005},
                                                              {"%9.4f", 1.64512, 0.000005},
                                                              {"%9.4f", 1e-7, 5e-8},
                                                              {"%9.4f", 1.0 / 3, 5e-17},
                                                              {"%9.4f", 1e300, 0.00005},
                                                              {"%6.1f", 90, 0.05},
                                                              {"%-6.0f", 90, 0.5},
                                                              {"%.f", 90, 0.5},
                                                              {"%f", 90, 5e-7},
                                                              {"%lf", 90, 5e-7},
                                                              {"%11.7f", 12345.6789012, 5e-8},
                                                              {"%10.6f", 0.997511, 5e-7},
                                                              {"%16.8g", 12.345678, 5e-7},
                                                              {"%16.8g", 12345678, 0.5},
                                                              {"%16.8g", 123456789, 0.5},
                                                              {"%16.8g", 1234567890, 5},
                                                              {"%16.8g", 1234567891, 0.5},
                                                              {"%16.8g", 1e-5, 5e-13},
                                                              {"%16.8g", 99999999.9, 0.05},
                                                              {"%16.8g", -0.1, 5e-9},
                                                              {"%.0g", 7, 0.5},
                                                              {"%e", 7, 5e-7},
                                                              {"%+12.3E", 7000, 0.5},
                                                              {"%.330f", 7, 0}}) {
    EXPECT_DOUBLE_EQ(LastPlace::of_format(format).half_at(number), half) << format << " " << number;
  }
}

TEST(LastPlaceOfAFormat, IsNotKnownOfAZeroOfSignificantDigits) {
  EXPECT_TRUE(LastPlace::of_format("%16.8g").is_known());
  EXPECT_EQ(LastPlace::of_format("%16.8g").half_at(0), 0);
}

TEST(LastPlaceOfAFormat, IsNotKnownOfAnyOtherFormat) {
  for (const char* format : {"", "-", "%", "%8ld", "%s", "%-15s", "9.4f", "%9.4", "%9.4f s", "a %f", "%.f4", "%*.4f",
                             "%9.4ff", "%a", "%%"}) {
    EXPECT_FALSE(LastPlace::of_format(format).is_known()) << format;
    EXPECT_EQ(LastPlace::of_format(format).half_at(1.5), 0) << format;
  }
  EXPECT_EQ(LastPlace().half_at(1.5), 0);
}

TEST(LastPlaceOfAFormat, TakesAnyPrecision) {
  EXPECT_EQ(LastPlace::of_format("%.99999999999f").half_at(1.5), 0);
  EXPECT_DOUBLE_EQ(LastPlace::of_format("%.99999999999g").half_at(1e200), 5e-200);
}

TEST(FewestDigits, AreThoseWithinTheDoubt) {
  constexpr double kMax = std::numeric_limits<double>::max();
  constexpr double kLeast = std::numeric_limits<double>::denorm_min();
  struct Case {
    double number;
    double doubt;
    double digits;
  };
  for (const auto& [number, doubt, digits] : std::vector<Case>{{1 / 14.285714, 5e-7 / (14.285714 * 14.285714), 0.07},
                                                               {62.3 - 90, 0.05, -27.7},
                                                               {1.645 - 0.0021, 0.00005, 1.6429},
                                                               {1642.9999999999998, 0.05, 1643},
                                                               {1643, 0.05, 1643},
                                                               {1600, 0.05, 1600},
                                                               {9.99, 0.02, 10},
                                                               {0.12349, 0.00003, 0.1235},
                                                               {-0.12349, 0.00003, -0.1235},
                                                               {2.5, 0.5, 2},  // a half goes to the even digit
                                                               {3.5, 0.5, 4},
                                                               {3.7, 0.5, 4},
                                                               {123456, 5000, 120000},
                                                               {1.5e-7, 1e-9, 1.5e-7},
                                                               {kMax, 1e306, kMax},
                                                               {kLeast, 0, kLeast},
                                                               {0.1 + 0.2, 0, 0.1 + 0.2},
                                                               {0.1 + 0.2, 1e-17, 0.1 + 0.2},
                                                               {0.1 + 0.2, 1e-16, 0.3},
                                                               {0, 0.05, 0}}) {
    EXPECT_EQ(fewest_digits(number, doubt), digits) << number << " within " << doubt;
  }
}

TEST(FewestDigits, AreNoneForANumberThatIsNoMoreThanItsDoubt) {
  for (const double noise : {0.3 - 0.1 - 0.2, 0.00004, -0.00004, 0.00005}) {
    const double rounded = fewest_digits(noise, 0.00005);
    EXPECT_EQ(rounded, 0) << noise;
    EXPECT_FALSE(std::signbit(rounded)) << noise;
  }
}

TEST(FewestDigits, LeaveWhatHasNoDoubtOrIsNoNumber) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(fewest_digits(kInfinite, 0.5), kInfinite);
  EXPECT_TRUE(std::isnan(fewest_digits(kNone, 0.5)));
  EXPECT_EQ(fewest_digits(1.0 / 3, kNone), 1.0 / 3);
  EXPECT_EQ(fewest_digits(1.0 / 3, -1), 1.0 / 3);
}

// The plain form: every number of digits is tried, from one on.
double by_every_precision(double number, double doubt) {
  if (doubt == 0) return number;
  if (std::fabs(number) <= doubt) return 0;
  for (int digits = 1; digits <= 17; ++digits) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*e", digits - 1, number);
    const double rounded = std::strtod(text.data(), nullptr);
    if (std::fabs(rounded - number) <= doubt) return rounded;
  }
  return number;
}

double number_of(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

// Half of the last place, by texts alone: of so many decimals or, where more are needed, as many as that.
double half_by_decimals(int decimals, double number) {
  for (;; ++decimals) {
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "%.*f", decimals, number);
    if (number_of(text.data()) == number) return number_of("5e-" + std::to_string(decimals + 1));
  }
}

// The same of significant digits.
double half_by_digits(int digits, double number) {
  for (;; ++digits) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*e", digits - 1, number);
    const int exponent = std::atoi(std::string(text.data()).substr(std::string(text.data()).find('e') + 1).c_str());
    if (number_of(text.data()) == number) return number_of("5e" + std::to_string(exponent - digits));
  }
}

TEST(FewestDigits, AreThoseThatEveryPrecisionTriedWouldFind) {
  std::mt19937_64 random(triglub_test::random_seed());
  std::uniform_real_distribution<double> mantissa(-10, 10);
  std::uniform_int_distribution<int> exponent(-12, 12);
  std::uniform_int_distribution<int> short_number(-20000, 20000);
  for (int i = 0; i < 100000; ++i) {
    const bool is_short = i % 2 == 0;
    const double number =
        is_short ? short_number(random) * 0.0001 : mantissa(random) * std::pow(10.0, exponent(random));
    const double doubt = std::fabs(number) * std::pow(10.0, exponent(random)) * std::fabs(mantissa(random)) / 1e6;
    ASSERT_EQ(fewest_digits(number, doubt), by_every_precision(number, doubt)) << number << " within " << doubt;
  }
}

TEST(LastPlaceOfAFormat, IsThatOfTheTextsThatReadBack) {
  std::mt19937_64 random(triglub_test::random_seed());
  std::uniform_int_distribution<int> digits(-2000000, 2000000);
  std::uniform_int_distribution<int> places(0, 12);
  for (int i = 0; i < 20000; ++i) {
    const int precision = 1 + places(random);
    const double number = number_of(std::to_string(digits(random)) + "e" + std::to_string(3 - places(random)));
    const std::string format = "%16." + std::to_string(precision);
    ASSERT_EQ(LastPlace::of_format(format + "f").half_at(number), half_by_decimals(precision, number)) << number;
    if (number == 0) continue;
    ASSERT_EQ(LastPlace::of_format(format + "g").half_at(number), half_by_digits(precision, number)) << number;
  }
}

}  // namespace
}  // namespace triglub
