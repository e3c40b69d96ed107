// A number's text is what the file has: texts are compared, numbers are not, where texts are asked for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;

class OwnDigits : public ::testing::Test {
 protected:
  OwnDigits() {
    if (is_memory_wanted()) throw std::logic_error("these tests are about files");
    tables_.add_all("sitechan", {{{"sta", "A"}, {"hang", "0.50"}, {"lddate", "1700000000.00000"}},
                                 {{"sta", "A"}, {"hang", "0.5"}, {"lddate", "1700000000.00000"}},
                                 {{"sta", "B"}, {"hang", "+1.50"}, {"lddate", "17e8"}},
                                 {{"sta", "B"}, {"hang", " 1.5 "}, {"lddate", ""}},
                                 {{"sta", "C"}, {"hang", "-1"}, {"lddate", ""}}});
    table_ = tables_.table("sitechan");
  }
  Dbptr field(const char* name) const { return dblookup(table_, nullptr, nullptr, name, nullptr); }
  Texts taken(const char* condition) const { return texts_of(dbsubset(table_, condition, nullptr), "sta"); }

  Tables tables_;
  Dbptr table_;
};

TEST_F(OwnDigits, AreGivenTrimmed) {
  EXPECT_THAT(texts_of(table_, "hang"), ElementsAre("0.50", "0.5", "+1.50", "1.5", "-1.0"));
  EXPECT_THAT(texts_of(table_, "lddate"),
              ElementsAre("1700000000.00000", "1700000000.00000", "17e8", "-9999999999.99900", "-9999999999.99900"));
}

TEST_F(OwnDigits, AreWhatPatternsMatch) {
  EXPECT_THAT(taken("hang =~ /0.50/"), ElementsAre("A"));
  EXPECT_THAT(taken("hang =~ /0\\.50?/"), ElementsAre("A", "A"));
  EXPECT_THAT(taken("hang == 0.5"), ElementsAre("A", "A"));
}

TEST_F(OwnDigits, AreTheTextOfAFieldButNotOfASum) {
  char* text = nullptr;
  ASSERT_EQ(dbex_evalstr(at(table_, 0), "hang", dbSTRING, &text), 0);
  EXPECT_STREQ(text, "0.50");
  std::free(text);
  ASSERT_EQ(dbex_evalstr(at(table_, 0), "hang + 0", dbSTRING, &text), 0);
  EXPECT_STREQ(text, "0.5");
  std::free(text);
}

TEST_F(OwnDigits, TellRunsApart) {
  std::vector<triglub::TextRun> runs;
  triglub::text_runs(field("hang"), 0, 5, &runs);
  EXPECT_EQ(runs.size(), 5u);
  triglub::text_runs(field("lddate"), 0, 5, &runs);
  EXPECT_EQ(runs.size(), 3u);
}

TEST_F(OwnDigits, AreWhatRecordsAreFoundBy) {
  EXPECT_THAT(triglub::records_with_text(field("hang"), [](std::string_view text) { return text == "0.50"; }),
              ElementsAre(0));
  Expression* hook = nullptr;
  EXPECT_EQ(dbfind(at(table_, -1), "hang =~ /0.5/", 0, &hook), 1);
  dbfind_release(&hook);
}

}  // namespace
}  // namespace triglub_test
