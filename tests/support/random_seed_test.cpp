#include "support/random_seed.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using triglub_test::random_seed;
using triglub_test::seed_of;

// Asks for the seed of the running test and returns what that printed.
std::string told(std::uint64_t* seed) {
  testing::internal::CaptureStdout();
  *seed = random_seed();
  return testing::internal::GetCapturedStdout();
}

class RandomSeed : public testing::Test {
 protected:
  static void ask_for(int number) { GTEST_FLAG_SET(random_seed, number); }
  ~RandomSeed() override { ask_for(asked_for_); }

 private:
  int asked_for_ = GTEST_FLAG_GET(random_seed);
};

TEST_F(RandomSeed, IsThatOfTheNumberAskedFor) {
  ask_for(4711);
  std::uint64_t seed = 0;
  EXPECT_EQ(told(&seed),
            "seed 4711; replay with --gtest_random_seed=4711 --gtest_filter=RandomSeed.IsThatOfTheNumberAskedFor\n");
  EXPECT_EQ(seed, seed_of("RandomSeed.IsThatOfTheNumberAskedFor", 4711));
}

TEST_F(RandomSeed, IsOfANumberThatIsToldWhereNoneIsAskedFor) {
  ask_for(0);
  std::uint64_t seed = 0;
  const std::string line = told(&seed);
  ASSERT_EQ(line.rfind("seed ", 0), 0u);
  const int number = std::stoi(line.substr(5));
  EXPECT_GE(number, 1);
  EXPECT_LE(number, 99999);
  EXPECT_EQ(seed, seed_of("RandomSeed.IsOfANumberThatIsToldWhereNoneIsAskedFor", number));
}

TEST_F(RandomSeed, IsOneForTheWholeTestAndToldOnce) {
  ask_for(0);
  const std::uint64_t first = random_seed();
  std::uint64_t second = 0;
  EXPECT_EQ(told(&second), "");
  EXPECT_EQ(second, first);
}

// Generators of 32 bits take the lower half.
TEST(SeedOf, IsAnotherForEachNumberAndTest) {
  std::set<std::uint64_t> seeds;
  std::set<std::uint32_t> lower_halves;
  for (int number = 0; number < 100000; ++number) {
    const std::uint64_t seed = seed_of("Suite.Test", number);
    seeds.insert(seed);
    lower_halves.insert(static_cast<std::uint32_t>(seed));
  }
  EXPECT_EQ(seeds.size(), 100000u);
  EXPECT_GT(lower_halves.size(), 99990u);
  EXPECT_NE(seed_of("Suite.Test", 1), seed_of("Suite.Other", 1));
  EXPECT_NE(seed_of("Suite.Test", 1), seed_of("Suite.Tset", 1));
}

}  // namespace
