// doc/limits.md and the list of limits say the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "platform/limits.h"

namespace triglub {
namespace {

// The beginnings of the page's rows that begin with a name in backquotes: "| `table-rows` | ".
std::vector<std::string> rows_of_names() {
  std::ifstream page(TRIGLUB_SOURCE_DIR "/doc/limits.md");
  std::vector<std::string> rows;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("| `")) rows.push_back(line);
  }
  return rows;
}

TEST(LimitsPage, HasALineForEachLimitInTheirOrder) {
  const std::vector<std::string> rows = rows_of_names();
  ASSERT_EQ(rows.size(), all_limits().size());
  std::size_t i = 0;
  for (const LimitFacts& facts : all_limits()) {
    const std::string begin = std::string("| `") + facts.name + "` | " + facts.of;
    const std::string amounts = " | " + std::to_string(facts.usual) + " | " + std::to_string(facts.most) + " | ";
    EXPECT_THAT(rows[i], ::testing::StartsWith(begin));
    EXPECT_THAT(rows[i], ::testing::HasSubstr(amounts));
    ++i;
  }
}

}  // namespace
}  // namespace triglub
