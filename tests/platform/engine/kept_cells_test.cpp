// Cells that are kept beside their values.
#include "engine/table/kept_cells.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/random_seed.h"

namespace triglub_test {
namespace {

using triglub::KeptCells;

std::vector<std::string> all_of(const KeptCells& cells, std::size_t count) {
  std::vector<std::string> all;
  for (std::uint32_t row = 0; row < count; ++row) all.emplace_back(cells[row]);
  return all;
}

TEST(KeptCells, AreThoseOfTheirRowsAtTheirWidth) {
  KeptCells cells(4);
  cells.add("1.50");
  cells.add("7");
  cells.repeat(0);
  cells.fill(5);
  cells.add("");
  cells.add("12345");
  EXPECT_THAT(all_of(cells, 7), ::testing::ElementsAre("1.50", "7   ", "1.50", "1.50", "1.50", "    ", "1234"));
  EXPECT_EQ(cells.number(0), cells.number(4));
  EXPECT_NE(cells.number(0), cells.number(1));
}

// In any order of additions, in parts of any sizes, they are what a list of texts is.
TEST(KeptCells, ArePutTogetherAsListsAre) {
  std::mt19937_64 random(random_seed());
  for (int round = 0; round < 30; ++round) {
    KeptCells all(8);
    std::vector<std::string> expected;
    for (auto parts = random() % 4; parts > 0; --parts) {
      KeptCells part(8);
      std::vector<std::string> texts;
      const std::size_t rows = random() % 3000;
      while (texts.size() < rows) {
        if (texts.empty() || random() % 3 > 0) {
          texts.push_back(std::to_string(10000000 + random() % 10000000));
          part.add(texts.back());
        } else if (random() % 2 == 0) {
          const std::size_t row = random() % texts.size();
          texts.push_back(texts[row]);
          part.repeat(static_cast<std::uint32_t>(row));
        } else {
          texts.push_back(texts.back());
          part.fill(texts.size());
        }
      }
      all.append(std::move(part));
      expected.insert(expected.end(), texts.begin(), texts.end());
    }
    ASSERT_EQ(all_of(all, expected.size()), expected);
    std::vector<std::uint32_t> odd;
    std::vector<std::string> odd_texts;
    for (std::uint32_t row = 1; row < expected.size(); row += 2) {
      odd.push_back(row);
      odd_texts.push_back(expected[row]);
      ASSERT_LT(all.number(row), all.number_count());
    }
    ASSERT_EQ(all_of(all.of_rows(odd), odd.size()), odd_texts);
  }
}

}  // namespace
}  // namespace triglub_test
