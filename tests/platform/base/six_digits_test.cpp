// Six significant digits: what a stream writes that nobody has configured.
#include "base/six_digits.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>

#include "support/random_seed.h"

namespace triglub {
namespace {

std::string six_digits(double number) {
  std::string text;
  append_six_digits(number, &text);
  return text;
}

TEST(SixDigits, StandBehindWhatIsThere) {
  std::string text = "gain ";
  append_six_digits(1500, &text);
  append_six_digits(-0.5, &text);
  EXPECT_EQ(text, "gain 1500-0.5");
}

TEST(SixDigits, RoundAndTurnToExponentsAsStreamsDo) {
  const struct {
    double number;
    const char* text;
  } cases[] = {
      {0, "0"},
      {-0.0, "-0"},
      {1, "1"},
      {123456, "123456"},
      {123456.5, "123456"},
      {123457.5, "123458"},
      {999999.4, "999999"},
      {999999.5, "1e+06"},
      {1234567, "1.23457e+06"},
      {0.0001, "0.0001"},
      {0.00001, "1e-05"},
      {1.0 / 3, "0.333333"},
      {-1.7976931348623157e308, "-1.79769e+308"},
      {4.9e-324, "4.94066e-324"},
      {std::numeric_limits<double>::infinity(), "inf"},
      {-std::numeric_limits<double>::infinity(), "-inf"},
      {std::numeric_limits<double>::quiet_NaN(), "nan"},
  };
  for (const auto& [number, text] : cases) EXPECT_EQ(six_digits(number), text);
}

TEST(SixDigits, AgreeWithAStreamOnRandomNumbers) {
  std::mt19937_64 random(triglub_test::random_seed());
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  for (int i = 0; i < 20000; ++i) {
    const auto number = i % 2 == 0 ? std::bit_cast<double>(random()) : std::ldexp(static_cast<double>(random()), -70);
    if (!std::isfinite(number)) continue;
    stream.str("");
    stream << number;
    ASSERT_EQ(six_digits(number), stream.str());
  }
}

}  // namespace
}  // namespace triglub
