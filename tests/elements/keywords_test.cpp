// The table of keywords, the enumeration and the exported map are one.
#include "elements/keywords.h"

#include <gtest/gtest.h>

#include "dbhelper.h"

namespace {

using triglub::find_keyword;
using triglub::is_type_keyword;
using triglub::kKeywords;
using triglub::kNoCode;
using triglub::LineShape;

TEST(Keywords, AreFoundByTheirWholeName) {
  for (const triglub::Keyword& keyword : kKeywords) {
    EXPECT_EQ(find_keyword(keyword.name), &keyword);
    EXPECT_TRUE(is_type_keyword(keyword.name)) << keyword.name;
  }
  for (const char* none : {"", "GROU", "GROUPS", "group", " GROUP", "other_pf", "Text", "deg_lat "}) {
    EXPECT_EQ(find_keyword(none), nullptr) << none;
    EXPECT_FALSE(is_type_keyword(none)) << none;
  }
}

TEST(Keywords, WithACodeAreThoseOfTheExportedMap) {
  std::size_t coded = 0;
  for (const triglub::Keyword& keyword : kKeywords) {
    if (keyword.code == kNoCode) continue;
    ++coded;
    EXPECT_EQ(INTERPRETERS.at(std::string(keyword.name)), keyword.code);
  }
  EXPECT_EQ(INTERPRETERS.size(), coded);
}

TEST(Keywords, SettleWhatBecomesOfALine) {
  const auto shape = [](const char* name) { return find_keyword(name)->shape; };
  EXPECT_EQ(shape("GROUP"), LineShape::group);
  EXPECT_EQ(shape("CATEGORIZED_GROUP"), LineShape::categories);
  EXPECT_EQ(shape("CATEGORIZED_BY_NUMBER"), LineShape::number_categories);
  EXPECT_EQ(shape("STAGE"), LineShape::stage);
  EXPECT_EQ(shape("count"), LineShape::count);
  EXPECT_EQ(shape("text"), LineShape::text);
  EXPECT_EQ(shape("other_pf:site"), LineShape::value);
}

TEST(Keywords, LeadToGroupsUnlessIgnored) {
  for (const char* line : {"g - GROUP", "g r CATEGORIZED_GROUP a", "g - CATEGORIZED_BY_NUMBER a"}) {
    EXPECT_TRUE(ElementDescription(line).leads_to_group()) << line;
  }
  for (const char* line :
       {"g x GROUP", "g x CATEGORIZED_GROUP a", "g - STAGE a", "g - count a", "g - text GROUP", "g"}) {
    EXPECT_FALSE(ElementDescription(line).leads_to_group()) << line;
  }
}

}  // namespace
