#include "tool/subset.h"

#include <gtest/gtest.h>

namespace {

using triglub::tool::add_condition;
using triglub::tool::Conditions;
using triglub::tool::exact_pattern;

TEST(Condition, HasSlashesAroundItsPattern) {
  const struct {
    const char* argument;
    const char* field;
    const char* pattern;
  } cases[] = {
      {"sta=AAK", "sta", "/AAK/"},
      {"sta=/AAK/", "sta", "/AAK/"},
      {" sta = AAK|ANMO ", "sta", "/AAK|ANMO/"},
      {"sta=", "sta", "//"},
      {"sta=//", "sta", "//"},
      {"sta=/", "sta", "/\\//"},
      {"dir=a/b", "dir", "/a\\/b/"},
      {"dir=/a/b/", "dir", "/a\\/b/"},
      {"dir=a\\/b", "dir", "/a\\/b/"},
      {"dir=a\\\\/b", "dir", "/a\\\\\\/b/"},
      {"sta=A=B", "sta", "/A=B/"},
  };
  for (const auto& c : cases) {
    Conditions conditions;
    EXPECT_TRUE(add_condition(c.argument, &conditions)) << c.argument;
    EXPECT_EQ(conditions, (Conditions{{c.field, c.pattern}})) << c.argument;
  }
}

TEST(Condition, NeedsAFieldAndAnEqualsSign) {
  Conditions conditions;
  for (const char* argument : {"", "sta", "=AAK", "  =AAK"})
    EXPECT_FALSE(add_condition(argument, &conditions)) << argument;
  EXPECT_TRUE(conditions.empty());
}

TEST(Condition, GivenTwiceTakesTheLater) {
  Conditions conditions;
  add_condition("sta=A", &conditions);
  add_condition("sta=B", &conditions);
  EXPECT_EQ(conditions, (Conditions{{"sta", "/B/"}}));
}

TEST(ExactPattern, QuotesWhatMeansSomething) {
  EXPECT_EQ(exact_pattern("XA_9 b"), "/XA_9 b/");
  EXPECT_EQ(exact_pattern("A.B/C\\D"), "/A\\.B\\/C\\\\D/");
  EXPECT_EQ(exact_pattern("é"), "/é/");
  EXPECT_EQ(exact_pattern(""), "//");
}

}  // namespace
