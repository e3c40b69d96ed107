#include "tool/memory_budget.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using triglub::tool::memory_size;

TEST(MemorySize, IsANumberWithAUnit) {
  const std::vector<std::pair<std::string, std::uint64_t>> sizes = {{"1", 1},
                                                                    {"1K", 1024},
                                                                    {"3M", 3U << 20},
                                                                    {"4G", std::uint64_t{4} << 30},
                                                                    {"2T", std::uint64_t{2} << 40},
                                                                    {"18446744073709551615", ~std::uint64_t{0}},
                                                                    {"16777215T", std::uint64_t{16777215} << 40}};
  for (const auto& [text, bytes] : sizes) EXPECT_EQ(memory_size(text), bytes) << text;
}

TEST(MemorySize, IsNothingElse) {
  for (const std::string text :
       {"", "0", "0G", "G", "-1", "+1", " 1", "1 ", "1g", "1GB", "1.5G", "1KK", "18446744073709551616", "16777216T"}) {
    EXPECT_EQ(memory_size(text), std::nullopt) << text;
  }
}

TEST(MemoryThereIs, IsThatOfTheMachineAtMost) {
  EXPECT_GT(triglub::tool::memory_there_is(), std::uint64_t{1} << 20);
  EXPECT_LT(triglub::tool::memory_there_is(), std::numeric_limits<std::uint64_t>::max());
}

}  // namespace
