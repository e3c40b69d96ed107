#include "epochs/held_row.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <utility>

#include "support/random_seed.h"

namespace triglub {
namespace {

using testing::ElementsAre;

constexpr double kNoDate = -std::numeric_limits<double>::infinity();

HeldRows in_order(HeldRows rows) {
  std::sort(rows.begin(), rows.end());
  return rows;
}

// Each as "ROW:BEGIN-END".
std::vector<std::string> stretches_of(const HeldRows& rows) {
  std::vector<Stretch> stretches;
  find_stretches(in_order(rows), &stretches);
  std::vector<std::string> texts;
  for (const auto& [span, row] : stretches) {
    texts.push_back(std::to_string(row) + ":" + std::to_string(span.begin) + "-" + std::to_string(span.end));
  }
  return texts;
}

TEST(HeldRow, TheLaterBeginStandsThenTheLaterLoadDateThenTheLaterRow) {
  EXPECT_LT((HeldRow{{0, 9}, 5, 7}), (HeldRow{{1, 2}, 4, 6}));
  EXPECT_LT((HeldRow{{0, 9}, 4, 7}), (HeldRow{{0, 2}, 5, 6}));
  EXPECT_LT((HeldRow{{0, 9}, kNoDate, 7}), (HeldRow{{0, 2}, -1e12, 6}));
  EXPECT_LT((HeldRow{{0, 9}, 5, 6}), (HeldRow{{0, 2}, 5, 7}));
}

struct StretchCase {
  const char* what;
  HeldRows rows;
  std::vector<std::string> stretches;
};

const StretchCase kStretches[] = {
    {"one row", {{{0, 9}, 0, 1}}, {"1:0-9"}},
    {"two that meet", {{{0, 5}, 0, 1}, {{5, 9}, 0, 2}}, {"1:0-5", "2:5-9"}},
    {"a gap", {{{0, 4}, 0, 1}, {{5, 9}, 0, 2}}, {"1:0-4", "2:5-9"}},
    {"the covered row stands again", {{{0, 9}, 0, 1}, {{3, 5}, 0, 2}}, {"1:0-3", "2:3-5", "1:5-9"}},
    {"two rows of one begin: the later load date", {{{0, 5}, 2, 1}, {{0, 9}, 1, 2}}, {"1:0-5", "2:5-9"}},
    {"two rows alike: the later row", {{{0, 9}, 0, 1}, {{0, 9}, 0, 2}}, {"2:0-9"}},
    {"a covered row that ends meanwhile", {{{0, 4}, 0, 1}, {{3, 5}, 0, 2}}, {"1:0-3", "2:3-5"}},
    {"no stretch is cut by a border below", {{{0, 9}, 0, 2}, {{0, 4}, 0, 1}}, {"2:0-9"}},
    {"three deep", {{{0, 9}, 0, 1}, {{1, 8}, 0, 2}, {{2, 7}, 0, 3}}, {"1:0-1", "2:1-2", "3:2-7", "2:7-8", "1:8-9"}},
};

TEST(Stretches, AreWhereTheSameRowStands) {
  for (const StretchCase& c : kStretches) EXPECT_EQ(stretches_of(c.rows), c.stretches) << c.what;
}

TEST(Walk, GivesTheRowOfTheStretchAtEachInstant) {
  std::mt19937 random(static_cast<std::mt19937::result_type>(triglub_test::random_seed()));
  for (int round = 0; round < 500; ++round) {
    HeldRows rows;
    for (std::uint32_t row = 0; row < 1 + random() % 8; ++row) {
      const auto begin = static_cast<Instant>(random() % 20);
      rows.push_back({{begin, begin + 1 + static_cast<Instant>(random() % 9)}, static_cast<double>(random() % 2), row});
    }
    rows = in_order(rows);
    Walk walk;
    walk.start(rows);
    for (Instant t = -1; t < 31; ++t) {
      const HeldRow* expected = nullptr;
      for (const HeldRow& row : rows) {
        if (row.span.holds_at(t)) expected = &row;  // the last in order
      }
      ASSERT_EQ(walk.at(t), expected) << "round " << round << ", instant " << t;
    }
  }
}

TEST(Contradictions, AreToldOnceForEachRowThatBeginsBeforeAnotherEnds) {
  const HeldRows rows = {{{0, 9}, 0, 1}, {{1, 2}, 0, 2}, {{3, 4}, 0, 3}, {{9, 10}, 0, 4}, {{9, 10}, 0, 5}};
  std::vector<std::pair<std::uint32_t, std::uint32_t>> told;
  find_contradictions(rows,
                      [&](const HeldRow& longest, const HeldRow& row) { told.emplace_back(longest.row, row.row); });
  EXPECT_THAT(told, ElementsAre(std::pair(1, 2), std::pair(1, 3), std::pair(4, 5)));
}

}  // namespace
}  // namespace triglub
