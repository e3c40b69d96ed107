#include "platform/limits.h"

#include <gtest/gtest.h>

#include "support/scoped_limit.h"

namespace triglub {
namespace {

TEST(Limits, AreInTheOrderOfTheirEnumeration) {
  std::size_t i = 0;
  for (const LimitFacts& facts : all_limits()) EXPECT_EQ(static_cast<std::size_t>(facts.limit), i++) << facts.name;
}

TEST(Limits, AreTheUsualOnesUntilTheyAreSet) {
  for (const LimitFacts& facts : all_limits()) {
    EXPECT_EQ(limit(facts.limit), facts.usual) << facts.name;
    EXPECT_LE(facts.usual, facts.most) << facts.name;
  }
}

TEST(Limits, AreFoundByTheirNames) {
  for (const LimitFacts& facts : all_limits()) EXPECT_EQ(limit_named(facts.name), facts.limit);
  EXPECT_EQ(limit_named("join_rows"), std::nullopt);
  EXPECT_EQ(limit_named(""), std::nullopt);
}

TEST(Limits, TakeFromOneToTheMost) {
  for (const LimitFacts& facts : all_limits()) {
    const ScopedLimit restored(facts.limit, facts.usual);
    EXPECT_TRUE(set_limit(facts.limit, 1));
    EXPECT_EQ(limit(facts.limit), 1U);
    EXPECT_TRUE(set_limit(facts.limit, facts.most));
    EXPECT_FALSE(set_limit(facts.limit, facts.most + 1));
    EXPECT_FALSE(set_limit(facts.limit, 0));
    EXPECT_EQ(limit(facts.limit), facts.most);
  }
}

TEST(Limits, AreNamedWhereTheyAreMet) {
  const ScopedLimit few(Limit::response_groups, 3);
  EXPECT_EQ(beyond(Limit::response_groups), "more than 3 groups of a response file (the limit response-groups)");
}

}  // namespace
}  // namespace triglub
