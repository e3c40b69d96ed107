#include "tool/subset.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "dbhelper.h"

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
      {"sta=AAK", "sta", "/AAK/"},     {"sta=/AAK/", "sta", "/AAK/"},   {" sta = AAK|ANMO ", "sta", "/AAK|ANMO/"},
      {"loc=", "loc", "/-?-?/"},       {"loc= ", "loc", "/-?-?/"},      {"loc=-", "loc", "/-?-?/"},
      {"loc=--", "loc", "/-?-?/"},     {"loc=/-/", "loc", "/-/"},       {"loc=---", "loc", "/---/"},
      {"sta=//", "sta", "//"},         {"sta=/", "sta", "/\\//"},       {"dir=a/b", "dir", "/a\\/b/"},
      {"dir=/a/b/", "dir", "/a\\/b/"}, {"dir=a\\/b", "dir", "/a\\/b/"}, {"dir=a\\\\/b", "dir", "/a\\\\\\/b/"},
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

TEST(Condition, IsOneMoreWhenItsFieldIsGivenAgain) {
  Conditions conditions;
  add_condition("sta=B", &conditions);
  add_condition("chan=X", &conditions);
  add_condition("sta=A", &conditions);
  EXPECT_EQ(conditions, (Conditions{{"chan", "/X/"}, {"sta", "/B/"}, {"sta", "/A/"}}));
}

TEST(Subset, HandsAllConditionsOver) {
  triglub::tool::Subset subset(Conditions{{"chan", "/X/"}, {"sta", "/A/"}, {"sta", "/B/"}, {"sta", "/C/"}});
  Tbl* expressions = arr2expr(subset.array());
  std::vector<std::string> found;
  for (long i = 0; i < maxtbl(expressions); ++i) found.emplace_back(static_cast<const char*>(gettbl(expressions, i)));
  freetbl(expressions, std::free);
  EXPECT_THAT(found, testing::UnorderedElementsAre("chan=~/X/", "sta=~/A/", "sta=~/B/", "sta=~/C/"));
}

TEST(ExactPattern, QuotesWhatMeansSomething) {
  EXPECT_EQ(exact_pattern("XA_9 b"), "/XA_9 b/");
  EXPECT_EQ(exact_pattern("A.B/C\\D"), "/A\\.B\\/C\\\\D/");
  EXPECT_EQ(exact_pattern("é"), "/é/");
  EXPECT_EQ(exact_pattern(""), "//");
}

}  // namespace
