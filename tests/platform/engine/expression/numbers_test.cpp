// Texts that are numbers, and nearly.
#include "engine/expression/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include "support/random_seed.h"

namespace triglub::expression {
namespace {

TEST(Numbers, ReadsWholeNumbersThatFit) {
  struct {
    std::string_view text;
    std::int64_t number;
  } const cases[] = {{"0", 0},
                     {"-0", 0},
                     {"+7", 7},
                     {"  12\t", 12},
                     {"-007", -7},
                     {"9223372036854775807", INT64_MAX},
                     {"-9223372036854775808", INT64_MIN}};
  for (const auto& [text, expected] : cases) {
    const auto number = read_number(text);
    ASSERT_TRUE(number) << text;
    EXPECT_TRUE(number->is_whole) << text;
    EXPECT_EQ(number->integer, expected) << text;
    EXPECT_EQ(number->real, static_cast<double>(expected)) << text;
  }
}

TEST(Numbers, ReadsRealsAndWhatIsTooGreatForAnInteger) {
  struct {
    std::string_view text;
    double number;
  } const cases[] = {{"1.5", 1.5},
                     {"-.5", -0.5},
                     {"5.", 5},
                     {"1e3", 1000},
                     {"+1E-2", .01},
                     {" 2.5e+1 ", 25},
                     {"4.9e-324", 4.9e-324},
                     {"9223372036854775808", 9223372036854775808.0},
                     {"-9223372036854775809", -9223372036854775808.0}};
  for (const auto& [text, expected] : cases) {
    const auto number = read_number(text);
    ASSERT_TRUE(number) << text;
    EXPECT_FALSE(number->is_whole) << text;
    EXPECT_EQ(number->real, expected) << text;
  }
}

TEST(Numbers, RefusesTextsThatAreNearlyNumbers) {
  for (const std::string_view text : {"",
                                      " ",
                                      "-",
                                      "+",
                                      ".",
                                      "-.",
                                      "e5",
                                      "1e",
                                      "1e+",
                                      "1 2",
                                      "1,5",
                                      "0x10",
                                      "inf",
                                      "-inf",
                                      "nan",
                                      "infinity",
                                      "+-1",
                                      "-+1",
                                      "--1",
                                      "++1",
                                      "1e999",
                                      "-1e999",
                                      "1.2.3",
                                      "12a",
                                      "1d5",
                                      "\xC2\xA0"
                                      "1"}) {
    EXPECT_FALSE(read_number(text)) << text;
  }
}

TEST(Numbers, TextsOfRealsReadBackToTheSame) {
  std::mt19937_64 random(triglub_test::random_seed());
  NumberBuffer buffer;
  for (int i = 0; i < 100000; ++i) {
    const std::uint64_t bits = random();
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    if (!std::isfinite(number)) continue;
    const std::string text(text_of(number, &buffer));
    ASSERT_EQ(std::strtod(text.c_str(), nullptr), number) << text;
    const auto read = read_number(text);
    ASSERT_TRUE(read) << text;
    ASSERT_EQ(read->real, number) << text;
  }
}

}  // namespace
}  // namespace triglub::expression
