#include "resp_helper/text_block.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>

#include "support/random_seed.h"

namespace {

using triglub::append_piece;
using triglub::TextBlock;

std::string text_of(double number) {
  std::string text;
  append_piece(text, number);
  return text;
}

std::string as_a_stream_writes(double number) {
  std::ostringstream stream;
  stream << number;
  return stream.str();
}

TEST(TextBlock, IndentsEachLine) {
  TextBlock block("  ");
  block.line("<A n=\"", 1, "\">", std::string("text"), "</A>");
  block.line();
  block.line(0.5, ' ' + std::string("x"), std::size_t{7}, -3L);
  EXPECT_EQ(block.take(), "  <A n=\"1\">text</A>\n  \n  0.5 x7-3\n");
}

TEST(TextBlock, WritesNumbersWithSixSignificantDigits) {
  const std::pair<double, const char*> cases[] = {
      {40, "40"},
      {0.000125, "0.000125"},
      {1.5e-07, "1.5e-07"},
      {1234567, "1.23457e+06"},
      {123456, "123456"},
      {999999.5, "1e+06"},
      {999999.4, "999999"},
      {0.123456789, "0.123457"},
      {1e-10, "1e-10"},
      {0.0001, "0.0001"},
      {0.00001, "1e-05"},
      {-1, "-1"},
      {0, "0"},
      {-0.0, "-0"},
      {1e300, "1e+300"},
      {5e-324, "4.94066e-324"},
      {100000, "100000"},
      {std::numeric_limits<double>::max(), "1.79769e+308"},
      {-std::numeric_limits<double>::max(), "-1.79769e+308"},
  };
  for (const auto& [number, text] : cases) EXPECT_EQ(text_of(number), text);
}

TEST(TextBlock, WritesNumbersAsAStreamDoes) {
  std::mt19937_64 random(triglub_test::random_seed());
  std::uniform_real_distribution<double> decades(-12, 12);
  for (int i = 0; i < 100000; ++i) {
    const auto any_bits = std::bit_cast<double>(random());
    ASSERT_EQ(text_of(any_bits), as_a_stream_writes(any_bits));
    const double usual = std::pow(10, decades(random));
    ASSERT_EQ(text_of(usual), as_a_stream_writes(usual));
    const double halfway = std::round(usual) + 0.5;
    ASSERT_EQ(text_of(halfway), as_a_stream_writes(halfway));
  }
}

TEST(TextBlock, WritesADecimalPointInEveryLocale) {
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Comma));
  EXPECT_EQ(as_a_stream_writes(0.5), "0,5");
  EXPECT_EQ(text_of(0.5), "0.5");
  std::locale::global(before);
}

}  // namespace
