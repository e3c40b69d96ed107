#include "support/random_seed.h"

#include <gtest/gtest.h>

#include <iostream>
#include <optional>
#include <random>
#include <string>

namespace triglub_test {

namespace {

constexpr const char* kProperty = "random_seed";
constexpr int kLargestNumber = 99999;

int chosen_number() {
  const int asked_for = GTEST_FLAG_GET(random_seed);
  if (asked_for != 0) return asked_for;
  std::random_device device;
  return std::uniform_int_distribution(1, kLargestNumber)(device);
}

// GoogleTest empties the result when it repeats a test, so each repetition has a number of its own.
std::optional<int> recorded_number(const testing::TestResult& result) {
  for (int i = 0; i < result.test_property_count(); ++i) {
    const testing::TestProperty& property = result.GetTestProperty(i);
    if (property.key() == std::string_view(kProperty)) return std::stoi(property.value());
  }
  return std::nullopt;
}

// Flushed at once: a test that crashes has told its seed.
int told_number(const std::string& test) {
  const int number = chosen_number();
  testing::Test::RecordProperty(kProperty, number);
  std::cout << "seed " << number << "; replay with --gtest_random_seed=" << number << " --gtest_filter=" << test
            << std::endl;
  return number;
}

// The last step of splitmix64: every bit of the result hangs on every bit of the value.
std::uint64_t mixed(std::uint64_t value) {
  value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9;
  value = (value ^ (value >> 27)) * 0x94D049BB133111EB;
  return value ^ (value >> 31);
}

}  // namespace

std::uint64_t random_seed() {
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  const std::string name = std::string(test.test_suite_name()) + "." + test.name();
  const std::optional<int> recorded = recorded_number(*test.result());
  return seed_of(name, recorded ? *recorded : told_number(name));
}

std::uint64_t seed_of(std::string_view test, int number) {
  auto seed = static_cast<std::uint64_t>(number);
  for (const char c : test) seed = mixed(seed + static_cast<unsigned char>(c) + 1);
  return seed;
}

}  // namespace triglub_test
