// Random tests that can be replayed.
//
//     std::mt19937 random(triglub_test::random_seed());
//
// prints "seed 4711; replay with --gtest_random_seed=4711 --gtest_filter=Sort.AgreesWithAStableSort". Called with that,
// the test program meets the same cases again; under CTest GTEST_RANDOM_SEED=4711 in the environment does the same.
#ifndef TRIGLUB_TESTS_SUPPORT_RANDOM_SEED_H
#define TRIGLUB_TESTS_SUPPORT_RANDOM_SEED_H

#include <cstdint>
#include <string_view>

namespace triglub_test {

// The seed of the running test: that of the number in --gtest_random_seed, or of a fresh one when there is none (0).
// The same for each call within one run of a test; the first call prints the number, and records it as the test's
// property "random_seed".
std::uint64_t random_seed();

// The seed that a number stands for in a test, "SUITE.NAME". GoogleTest takes numbers below 100000 only; the name makes
// other cases of the same number in each test.
std::uint64_t seed_of(std::string_view test, int number);

}  // namespace triglub_test

#endif
