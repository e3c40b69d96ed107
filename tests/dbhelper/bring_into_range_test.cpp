#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <ostream>
#include <random>

#include "dbhelper.h"
#include "support/random_seed.h"

namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr double kHighest = std::numeric_limits<double>::max();
constexpr double kTiniest = std::numeric_limits<double>::denorm_min();

struct Case {
  double value, low, high, step;
};

std::ostream& operator<<(std::ostream& out, const Case& c) {
  return out << std::hexfloat << c.value << " into " << c.low << " .. " << c.high << " by " << c.step;
}

double brought(const Case& c) { return bring_into_range(c.value, c.low, c.high, c.step); }

// The rule as it is stated, step by step; nothing where that takes more than a million steps.
std::optional<double> stepped(const Case& c) {
  double value = c.value;
  int steps = 0;
  for (; value > c.high; value -= c.step) {
    if (++steps > 1000000) return std::nullopt;
  }
  for (; value < c.low; value += c.step) {
    if (++steps > 1000000) return std::nullopt;
  }
  return value;
}

// To the last bit, the sign of 0 included.
void expect_as_stepped(const Case& c) {
  const std::optional<double> result = stepped(c);
  ASSERT_TRUE(result) << c;
  ASSERT_EQ(std::bit_cast<std::uint64_t>(brought(c)), std::bit_cast<std::uint64_t>(*result))
      << c << " gives " << brought(c) << ", not " << *result;
}

TEST(BringIntoRange, KeepsTheBounds) {
  EXPECT_EQ(bring_into_range(90, -90, 90, 180), 90);
  EXPECT_EQ(bring_into_range(-90, -90, 90, 180), -90);
  EXPECT_EQ(bring_into_range(100, -90, 90, 180), -80);
  EXPECT_EQ(bring_into_range(-95, -90, 90, 180), 85);
  EXPECT_EQ(bring_into_range(5, 0, 3, 10), 5);  // one step down, one step up
}

TEST(BringIntoRange, GivesZeroWithoutASign) {
  EXPECT_FALSE(std::signbit(bring_into_range(-360, 0, 360, 360)));
  EXPECT_FALSE(std::signbit(bring_into_range(-36000000, 0, 360, 360)));
  EXPECT_FALSE(std::signbit(bring_into_range(720, -10, 10, 360)));
  EXPECT_TRUE(std::signbit(bring_into_range(-0.0, 0, 360, 360)));  // no step, no sum
}

TEST(BringIntoRange, EndsWhereSteppingEndsAroundTheBordersOfAngles) {
  const Case ranges[] = {{0, -90, 90, 180}, {0, -180, 180, 360}, {0, 0, 360, 360}, {0, 0, 3, 10}, {0, -5, 100, 25}};
  for (Case c : ranges) {
    for (const double turns : {-100000.0, -1001.0, -1000.0, -3.0, -1.0, 0.0, 1.0, 2.0, 999.0, 1000.0, 100000.0}) {
      for (const double border : {c.low, c.high, 0.0}) {
        const double value = border + turns * c.step;
        for (const double v : {value, std::nextafter(value, kInfinite), std::nextafter(value, -kInfinite)}) {
          c.value = v;
          expect_as_stepped(c);
        }
      }
    }
  }
}

class BringIntoRangeAtRandom : public ::testing::Test {
 protected:
  unsigned long below(unsigned long n) { return static_cast<unsigned long>(random_() % n); }
  double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }
  // Each order of magnitude up to `most` is as likely as another.
  double up_to(double most) { return std::exp(between(0.0, std::log(most))); }
  double sign() { return below(2) == 0 ? 1.0 : -1.0; }
  // A positive number of any magnitude, with all digits.
  double of_magnitude(int lowest, int highest) {
    const int exponent = lowest + static_cast<int>(below(static_cast<unsigned long>(highest - lowest + 1)));
    return std::ldexp(between(1.0, 2.0), exponent);
  }

  // A range that begins so many steps away from the value, on either side of it.
  Case away(double value, double step, double steps) {
    const double width = step * between(0.0, 3.0);
    if (below(2) == 0) return {value, value - steps * step - width, value - steps * step, step};
    return {value, value + steps * step, value + steps * step + width, step};
  }

 private:
  std::mt19937_64 random_{triglub_test::random_seed()};
};

TEST_F(BringIntoRangeAtRandom, EndsWhereSteppingEndsForAngles) {
  for (int i = 0; i < 3000; ++i) {
    const double value = sign() * up_to(1e7);
    for (const Case& range : {Case{0, -90, 90, 180}, Case{0, -180, 180, 360}, Case{0, 0, 360, 360}}) {
      expect_as_stepped({value, range.low, range.high, range.step});
    }
  }
}

// Steps of a few last places, of which nearly all subtractions round, within one power of two and over several.
TEST_F(BringIntoRangeAtRandom, EndsWhereSteppingEndsForStepsOfAFewLastPlaces) {
  for (int i = 0; i < 5000; ++i) {
    const double value = sign() * of_magnitude(-1074, 1020);
    const double place = std::nextafter(std::abs(value), kInfinite) - std::abs(value);
    expect_as_stepped(away(value, place * between(1.01, 100.0), up_to(1e5)));
  }
}

// Steps of halves: the results of which lie in the middle between two numbers.
TEST_F(BringIntoRangeAtRandom, EndsWhereSteppingEndsForTies) {
  for (int i = 0; i < 5000; ++i) {
    const double value = sign() * of_magnitude(-900, 900);
    const double place = std::nextafter(std::abs(value), kInfinite) - std::abs(value);
    const double quarters = static_cast<double>(5 + below(30));
    expect_as_stepped(away(value, place * quarters / 4.0, up_to(1e5)));
  }
}

TEST_F(BringIntoRangeAtRandom, EndsWhereSteppingEndsAcrossPowersOfTwo) {
  for (int i = 0; i < 5000; ++i) {
    const double power = std::ldexp(1.0, static_cast<int>(below(1800)) - 900);
    const double place = std::nextafter(power, kInfinite) - power;
    const double value = sign() * (power + place * (static_cast<double>(below(4000)) - 2000.0));
    const double quarters = static_cast<double>(5 + below(30)) + (below(2) == 0 ? 0.0 : between(0.0, 1.0));
    expect_as_stepped(away(value, place * quarters / 4.0, up_to(1e4)));
  }
}

TEST_F(BringIntoRangeAtRandom, EndsWhereSteppingEndsAcrossZero) {
  for (int i = 0; i < 3000; ++i) {
    const double step = of_magnitude(-1074, 1000);
    const double value = sign() * step * up_to(1e5);
    expect_as_stepped(away(value, step, up_to(2e5)));
  }
}

TEST_F(BringIntoRangeAtRandom, EndsWhereSteppingEndsForAsManyAsAMillion) {
  for (int i = 0; i < 200; ++i) {
    const double step = of_magnitude(-1000, 1000);
    const double value = sign() * step * between(1e5, 9.9e5);
    expect_as_stepped({value, -step * between(0.5, 2.0), step * between(0.5, 2.0), step});
  }
}

// Nothing but a handful of bits, so that values, borders and steps often meet; the borders also the wrong way round.
TEST_F(BringIntoRangeAtRandom, EndsWhereSteppingEndsForNumbersOfFewBits) {
  const auto few_bits = [this] { return std::ldexp(static_cast<double>(below(16)), static_cast<int>(below(12))); };
  for (int i = 0; i < 20000; ++i) {
    expect_as_stepped({sign() * few_bits(), sign() * few_bits(), sign() * few_bits(), few_bits() + 1.0});
  }
}

// What is too far for steps one by one: a way in two parts is the same way, and its end can be walked.
TEST_F(BringIntoRangeAtRandom, GoesOneWayHoweverLong) {
  for (int i = 0; i < 5000; ++i) {
    const double step = of_magnitude(-900, 900);
    const double value = step * up_to(0x1p52);
    const double far = value * between(-0.1, 0.9);
    const double near = far + step * up_to(1e4);
    const double on_the_way = bring_into_range(value, -kInfinite, near, step);
    ASSERT_LE(on_the_way, near);
    expect_as_stepped({on_the_way, -kInfinite, far, step});
    const double end = bring_into_range(value, -kInfinite, far, step);
    ASSERT_EQ(end, bring_into_range(on_the_way, -kInfinite, far, step)) << Case{value, near, far, step};
    ASSERT_EQ(-end, bring_into_range(-value, -far, kInfinite, step)) << Case{value, near, far, step};
  }
}

TEST(BringIntoRange, EndsAtOnceHoweverManyStepsItTakes) {
  for (int exponent = 0; exponent < 60; ++exponent) {
    for (const double value : {std::ldexp(1.0, exponent), std::ldexp(1.7, exponent), -std::ldexp(1.3, exponent)}) {
      const double longitude = bring_into_range(value, -180, 180, 360);
      EXPECT_GE(longitude, -180) << value;
      EXPECT_LE(longitude, 180) << value;
    }
  }
  const double smallest = bring_into_range(0x1p-1022, 0, 2 * kTiniest, kTiniest);
  EXPECT_EQ(smallest, 2 * kTiniest);
  const double highest = bring_into_range(kHighest, -kHighest, -0x1p1023, 0x1.8p971);
  EXPECT_LE(highest, -0x1p1023);
  EXPECT_GT(highest, -0x1.0000000000002p1023);
}

// Numbers around 10^17 are multiples of 16, and 360 is 22.5 times that: each step is 22 x 16, to an even multiple.
TEST(BringIntoRange, RoundsAsTheStepsDo) {
  EXPECT_EQ(bring_into_range(1e17, 0, 1e17 - 16e6, 360), 1e17 - 45455 * 352);
  EXPECT_EQ(bring_into_range(-1e17, -1e17 + 16e6, 0, 360), -1e17 + 45455 * 352);
}

TEST(BringIntoRange, GivesBackWhatNoStepsLeadThere) {
  const struct {
    Case c;
    double result;
  } cases[] = {
      {{1e300, -180, 180, 360}, 1e300},
      {{-1e300, -180, 180, 360}, -1e300},
      {{kHighest, 0, 360, 360}, kHighest},
      {{kInfinite, 0, 360, 360}, kInfinite},
      {{-kInfinite, 0, 360, 360}, -kInfinite},
      {{500, 0, 360, 0}, 500},
      {{-0.0, 1, 2, 0}, -0.0},
      {{500, 0, 360, -360}, 500},
      {{-500, 0, 360, -360}, -500},
      {{500, 0, 360, -kInfinite}, 500},
      {{0, 1e300, kInfinite, 1}, 0x1p53},                         // stands still on the way
      {{0x1.0000000000002p60, 0, 1, 128}, 0x1.0000000000002p60},  // half a last place from an even number
      {{0x1.0000000000003p60, 0, 1, 128}, 0x1.0000000000002p60},  // and from an odd one: to the even one
  };
  for (const auto& [c, result] : cases) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(brought(c)), std::bit_cast<std::uint64_t>(result)) << c;
  }
  EXPECT_TRUE(std::isnan(bring_into_range(std::nan(""), 0, 360, 360)));
}

// No number is beside the range of what is none.
TEST(BringIntoRange, TakesWhatIsNoNumberAsTheStepsDo) {
  const double none = std::nan("");
  EXPECT_EQ(bring_into_range(500, none, none, 360), 500);
  EXPECT_EQ(bring_into_range(90, 0, 360, none), 90);
  EXPECT_TRUE(std::isnan(bring_into_range(500, 0, 360, none)));
  EXPECT_TRUE(std::isnan(bring_into_range(500, 0, 360, kInfinite)));
  EXPECT_EQ(bring_into_range(-500, 0, 360, kInfinite), kInfinite);
}

}  // namespace
