// The page lists every rule as it is.
#include <gmock/gmock.h>

#include <fstream>

#include "document_checks.h"

namespace triglub {
namespace {

std::vector<std::string> rows_of_page() {
  std::ifstream page(TRIGLUB_SOURCE_DIR "/doc/checks.md");
  std::vector<std::string> rows;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("| `")) rows.push_back(line);
  }
  return rows;
}

TEST(Page, ListsEveryRuleInOrder) {
  const auto rows = rows_of_page();
  ASSERT_EQ(rows.size(), document_rules().size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const DocumentRule& rule = document_rules()[i];
    const std::string rank = rule.rank == CheckRank::error ? "error" : "warning";
    EXPECT_THAT(rows[i], testing::StartsWith("| `" + std::string(rule.code) + "` | " + rank + " | "));
    EXPECT_THAT(rows[i], testing::EndsWith(" | " + std::string(rule.advice) + " |"));
  }
}

}  // namespace
}  // namespace triglub
