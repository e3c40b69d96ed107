#include "epochs/stage_lists.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace triglub {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

HeldRow stage(std::uint32_t row, Span span, std::int64_t number) { return {span, 0, row, number}; }

std::vector<std::uint32_t> rows_of(const StageLists& lists) {
  std::vector<std::uint32_t> rows;
  lists.append_rows(&rows);
  return rows;
}

TEST(StageLists, EachNumberHasItsStandingRow) {
  HeldRows stages = {stage(1, {0, 9}, 2), stage(2, {0, 9}, 1), stage(3, {3, 5}, 2), stage(4, {4, 6}, -1)};
  std::sort(stages.begin(), stages.end());
  StageLists lists;
  lists.start(stages);
  EXPECT_FALSE(lists.move_to(-1));
  EXPECT_THAT(rows_of(lists), IsEmpty());
  EXPECT_TRUE(lists.move_to(0));
  EXPECT_THAT(rows_of(lists), ElementsAre(2, 1));
  EXPECT_FALSE(lists.move_to(1));
  EXPECT_TRUE(lists.move_to(3));
  EXPECT_THAT(rows_of(lists), ElementsAre(2, 3));
  EXPECT_TRUE(lists.move_to(4));
  EXPECT_THAT(rows_of(lists), ElementsAre(4, 2, 3));
  EXPECT_TRUE(lists.move_to(5));
  EXPECT_THAT(rows_of(lists), ElementsAre(4, 2, 1)) << "the covered row stands again";
  EXPECT_TRUE(lists.move_to(9));
  EXPECT_THAT(rows_of(lists), IsEmpty());
}

TEST(StageLists, ARowThatEndsBelowAnotherChangesNothing) {
  const HeldRows stages = {stage(1, {0, 5}, 1), stage(2, {1, 9}, 1)};
  StageLists lists;
  lists.start(stages);
  EXPECT_TRUE(lists.move_to(1));
  EXPECT_FALSE(lists.move_to(5));
  EXPECT_THAT(rows_of(lists), ElementsAre(2));
}

TEST(StageLists, ForgetsTheStagesOfTheChannelBefore) {
  StageLists lists;
  const HeldRows many = {stage(1, {0, 9}, 1), stage(2, {0, 9}, 2), stage(3, {0, 9}, 3)};
  lists.start(many);
  lists.move_to(0);
  const HeldRows one = {stage(7, {0, 9}, 2)};
  lists.start(one);
  EXPECT_THAT(rows_of(lists), IsEmpty());
  EXPECT_TRUE(lists.move_to(0));
  EXPECT_THAT(rows_of(lists), ElementsAre(7));
}

}  // namespace
}  // namespace triglub
