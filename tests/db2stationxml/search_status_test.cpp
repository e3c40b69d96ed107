// What pseudo_subset makes of every answer that a search can give: this program has its own dbfind, which answers as
// each test wants it, also as the engine's never does.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "db2stationxml.h"

namespace {

struct Search {
  std::int64_t record;
  std::string condition;
  int direction;
  friend bool operator==(const Search&, const Search&) = default;
};

struct Library {
  std::int64_t forward = 0;
  std::int64_t backward = 0;
  std::vector<Search> searches;
  std::vector<Expression**> hooks;
  bool hook_was_empty = false;
} library;

}  // namespace

std::int64_t dbfind(Dbptr db, const char* condition, int direction, Expression** hook) {
  if (library.searches.empty()) library.hook_was_empty = *hook == nullptr;
  library.searches.push_back({db.record, condition, direction});
  library.hooks.push_back(hook);
  return direction == 0 ? library.forward : library.backward;
}

void dbfind_release(Expression** hook) { *hook = nullptr; }

namespace {

std::string subset(const std::vector<bool>& flags, std::int64_t forward, std::int64_t backward) {
  library = {forward, backward, {}, {}, false};
  return pseudo_subset({1, 2, 3, 4}, "condition", SmartIndex(flags)).as_string();
}

TEST(SearchStatus, IsARangeOnlyWhenBothSearchesMatch) {
  constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
  const struct {
    std::int64_t forward, backward;
    const char* index;
  } cases[] = {
      {1, 2, "([0110],1,2)"},    {0, 3, "([1111],0,3)"},   {2, 2, "([0010],2,2)"},       {2, 1, "([0000],4,4)"},
      {3, 0, "([0000],4,4)"},    {-2, -2, "([0000],4,4)"}, {-2, 3, "([0000],4,4)"},      {0, -2, "([0000],4,4)"},
      {0, -1, "([0000],4,4)"},   {-3, -1, "([0000],4,4)"}, {kMin, kMin, "([0000],4,4)"}, {-102, 1, "([0000],4,4)"},
      {0, -102, "([0000],4,4)"}, {1, 9, "([0111],1,3)"},   {7, 9, "([0000],4,4)"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(subset({true, true, true, true}, c.forward, c.backward), c.index) << c.forward << " " << c.backward;
  }
}

TEST(SearchStatus, EndsTheProcessWhenTheForwardSearchDoesNotCompile) {
  EXPECT_EXIT(subset({true}, -1, -1), testing::ExitedWithCode(1),
              "fatal: expression didn't compile: \\[condition\\]\n");
  EXPECT_EXIT(subset({true}, -1, 0), testing::ExitedWithCode(1), "fatal: expression didn't compile: \\[condition\\]\n");
}

TEST(SearchStatus, ComesFromSearchesOutsideTheBordersWithOneHook) {
  subset({false, true, false, true, false}, 1, 3);
  EXPECT_EQ(library.searches, (std::vector<Search>{{0, "condition", 0}, {4, "condition", 1}}));
  EXPECT_TRUE(library.hook_was_empty);
  EXPECT_EQ(library.hooks.at(0), library.hooks.at(1));
  subset({true, true}, 0, 1);
  EXPECT_EQ(library.searches, (std::vector<Search>{{-1, "condition", 0}, {2, "condition", 1}}));
}

}  // namespace
