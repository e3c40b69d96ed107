// Decimal numbers: every text a number or refused, and the nearest double of it.
#include "base/number.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "support/random_seed.h"

namespace triglub {
namespace {

constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();

TEST(ParseInteger, ReadsDecimalIntegers) {
  struct Case {
    const char* text;
    std::int64_t value;
  };
  for (const auto& [text, value] : std::vector<Case>{{"0", 0},
                                                     {"-0", 0},
                                                     {"+0", 0},
                                                     {"7", 7},
                                                     {"+7", 7},
                                                     {"-7", -7},
                                                     {"007", 7},
                                                     {"99999999", 99999999},
                                                     {"9223372036854775807", kMax},
                                                     {"-9223372036854775808", kMin},
                                                     {"000000000000000000000000000012", 12}}) {
    std::int64_t number = 123;
    EXPECT_TRUE(parse_integer(text, &number)) << text;
    EXPECT_EQ(number, value) << text;
  }
}

TEST(ParseInteger, RefusesEverythingElse) {
  for (const char* text : {"",
                           "-",
                           "+",
                           "--1",
                           "+-1",
                           "-+1",
                           "++1",
                           "1.0",
                           "1.",
                           ".1",
                           "1e3",
                           "0x10",
                           "1a",
                           "a1",
                           "1 2",
                           " 1",
                           "1 ",
                           "1,0",
                           "nan",
                           "inf",
                           "9223372036854775808",
                           "-9223372036854775809",
                           "99999999999999999999999",
                           "1\t",
                           "\xE2\x88\x92"
                           "1"}) {
    std::int64_t number = 123;
    EXPECT_FALSE(parse_integer(text, &number)) << text;
    EXPECT_EQ(number, 123) << text;
  }
}

TEST(ParseReal, ReadsDecimalNumbers) {
  struct Case {
    const char* text;
    double value;
  };
  for (const auto& [text, value] : std::vector<Case>{
           {"0", 0.0},
           {"42.6375", 42.6375},
           {"-999.0000", -999.0},
           {"+1.5", 1.5},
           {"+.5", 0.5},
           {".5", 0.5},
           {"-.5", -0.5},
           {"5.", 5.0},
           {"-5.", -5.0},
           {"1e3", 1000.0},
           {"1E+03", 1000.0},
           {"1.25e-2", 0.0125},
           {"9999999999.99900", 9999999999.999},
           {"-9999999999.99900", -9999999999.999},
           {"9007199254740992", 9007199254740992.0},
           {"9007199254740993", 9007199254740992.0},  // halfway: to even
           {"9007199254740995", 9007199254740996.0},
           {"9007199254740993.1", 9007199254740994.0},
           {"0.1234567890123456789", 0.1234567890123456789},
           {"123456789012345678", 123456789012345678.0},
           {"1234567890123456789", 1234567890123456789.0},
           {"0.000000000000000001", 1e-18},
           {"1.7976931348623157e308", std::numeric_limits<double>::max()},
           {"2.2250738585072014e-308", std::numeric_limits<double>::min()},
           {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min()},
           {"1e-400", 0.0},
           {"1.5e-400", 0.0},
           {"-1e-99999", 0.0},
       }) {
    double number = 123;
    EXPECT_TRUE(parse_real(text, &number)) << text;
    EXPECT_EQ(number, value) << text;
  }
}

TEST(ParseReal, KeepsTheSignOfZero) {
  double number = 1;
  ASSERT_TRUE(parse_real("-0.0000", &number));
  EXPECT_TRUE(std::signbit(number));
  ASSERT_TRUE(parse_real("0.0000", &number));
  EXPECT_FALSE(std::signbit(number));
}

TEST(ParseReal, RefusesWhatIsNoFiniteDecimalNumber) {
  for (const char* text :
       {"",      "-",      "+",       ".",       "-.",    "+.",  "+-1",      "-+1",    "--1",  "++1",
        "1e",    "1e+",    "e5",      ".e5",     "1.2.3", "1,5", "1 2",      " 1",     "1 ",   "nan",
        "NaN",   "-nan",   "inf",     "-inf",    "+inf",  "Inf", "infinity", "nan(1)", "0x10", "0x1p3",
        "1e309", "-1e309", "1e99999", "1.5D+03", "1f",    "12a", "a12",      "*****",  "1__2", "1'000"}) {
    double number = 123;
    EXPECT_FALSE(parse_real(text, &number)) << text;
    EXPECT_EQ(number, 123) << text;
  }
}

// A text of digits with a point somewhere and, one time in four, an exponent.
std::string random_number(std::mt19937_64& random) {
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  std::string text = below(3) == 0 ? "-" : "";
  const int digits = 1 + below(below(4) == 0 ? 40 : 19);
  const int point = below(digits + 1);
  for (int i = 0; i < digits; ++i) {
    if (i == point) text += '.';
    text += static_cast<char>('0' + (below(4) == 0 ? 9 * below(2) : below(10)));
  }
  if (below(4) == 0) text += (below(2) == 0 ? "e" : "E-") + std::to_string(below(330));
  return text;
}

TEST(ParseReal, AgreesWithStrtodOnRandomNumbers) {
  std::mt19937_64 random(triglub_test::random_seed());
  for (int i = 0; i < 200000; ++i) {
    const std::string text = random_number(random);
    const double expected = std::strtod(text.c_str(), nullptr);
    double number = 123;
    ASSERT_EQ(parse_real(text, &number), std::isfinite(expected)) << text;
    if (std::isfinite(expected)) {
      ASSERT_EQ(std::bit_cast<std::uint64_t>(number), std::bit_cast<std::uint64_t>(expected)) << text;
    }
  }
}

TEST(ParseReal, AgreesWithStrtodOnWhatPrintfWrites) {
  std::mt19937_64 random(triglub_test::random_seed());
  for (int i = 0; i < 100000; ++i) {
    const auto value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    char text[64];
    std::snprintf(text, sizeof text, i % 2 == 0 ? "%.17g" : "%.8g", value);
    double number = 123;
    ASSERT_TRUE(parse_real(text, &number)) << text;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(number), std::bit_cast<std::uint64_t>(std::strtod(text, nullptr))) << text;
  }
}

TEST(ParseReal, RefusesRandomTextsThatStrtodDoesNotTakeWhole) {
  std::mt19937_64 random(triglub_test::random_seed());
  const std::string letters = "0123456789.+-eE x";
  for (int i = 0; i < 200000; ++i) {
    std::string text;
    for (auto length = random() % 8; length > 0; --length) text += letters[random() % letters.size()];
    char* end = nullptr;
    const double expected = std::strtod(text.c_str(), &end);
    const bool is_plain = text.find_first_of(" x") == std::string::npos;
    const bool is_number = is_plain && !text.empty() && *end == '\0' && std::isfinite(expected);
    double number = 123;
    ASSERT_EQ(parse_real(text, &number), is_number) << "'" << text << "'";
  }
}

}  // namespace
}  // namespace triglub
