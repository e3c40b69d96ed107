// dbsubset and view_of_records.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "support/random_seed.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Subset : public ::testing::Test {
 protected:
  Subset() {
    tables_.add_all("sitechan", {{{"sta", "AAK"}, {"chan", "BHZ"}, {"chanid", "1"}, {"hang", "0.50"}},
                                 {{"sta", "ANMO"}, {"chan", "BHN"}, {"chanid", "0"}},
                                 {{"sta", "AAKB"}, {"chan", "BHZ"}, {"chanid", "2"}, {"hang", "0.5"}},
                                 {{"sta", "AAK"}, {"chan", "LHZ"}, {"chanid", "-1"}}});
  }
  Texts taken(const char* condition) {
    return texts_of(dbsubset(tables_.table("sitechan"), condition, nullptr), "chanid");
  }

  Tables tables_;
};

TEST_F(Subset, KeepsTheRecordsAtWhichTheConditionHoldsInOrder) {
  EXPECT_THAT(taken("sta == 'AAK'"), ElementsAre("1", "-1"));
  EXPECT_THAT(taken("chanid >= 0 && chan =~ /BH./"), ElementsAre("1", "0", "2"));
  EXPECT_THAT(taken("1"), ElementsAre("1", "0", "2", "-1"));
  EXPECT_THAT(taken("0"), IsEmpty());
  EXPECT_THAT(taken("chanid"), ElementsAre("1", "2", "-1"));
}

TEST_F(Subset, MatchesTheWholeText) {
  EXPECT_THAT(taken("sta =~ /AAK/"), ElementsAre("1", "-1"));
  EXPECT_THAT(taken("sta =~ /AAK|ANMO/"), ElementsAre("1", "0", "-1"));
  EXPECT_THAT(taken("sta !~ /AAK/"), ElementsAre("0", "2"));
  EXPECT_THAT(taken("sta=~/A.*/"), ElementsAre("1", "0", "2", "-1"));
  EXPECT_THAT(taken("sta =~ //"), IsEmpty());
}

TEST_F(Subset, ComparesNumbersAsNumbersAndMatchesThemAsTexts) {
  EXPECT_THAT(taken("hang == 0.5"), ElementsAre("1", "2"));
  EXPECT_THAT(taken("hang =~ /0\\.50?/"), ElementsAre("1", "2"));
  EXPECT_THAT(taken("hang =~ /-1.0/"), ElementsAre("0", "-1"));
}

TEST_F(Subset, LeavesOutRecordsAtWhichTheConditionFails) {
  EXPECT_THAT(taken("10 % chanid == 0"), ElementsAre("1", "2", "-1"));
  EXPECT_THAT(taken("!(10 % chanid == 1)"), ElementsAre("1", "2", "-1"));
}

TEST_F(Subset, OfASubsetNarrowsIt) {
  const Dbptr first = dbsubset(tables_.table("sitechan"), "sta =~ /AAK.*/", nullptr);
  EXPECT_THAT(texts_of(dbsubset(first, "chanid > 0", nullptr), "chanid"), ElementsAre("1", "2"));
  EXPECT_EQ(record_count(dbsubset(dbsubset(first, "0", nullptr), "1", nullptr)), 0);
}

TEST_F(Subset, ThatDoesNotCompileIsReported) {
  const Dbptr view = tables_.table("sitechan");
  CollectedLog log;
  EXPECT_EQ(dbsubset(view, "lat > 0", nullptr), Dbptr());
  EXPECT_EQ(dbsubset(view, "sta =~ /(/", nullptr), Dbptr());
  EXPECT_EQ(log.lines().size(), 2u);
  EXPECT_THAT(log.lines()[0], HasSubstr("lat > 0"));
  EXPECT_EQ(dbsubset(Dbptr(), "1", nullptr), Dbptr());
  EXPECT_EQ(log.lines().size(), 2u) << "an invalid handle goes through without a word";
}

TEST_F(Subset, SeesAbsentRowsAsNulls) {
  tables_.add("site", {{"sta", "ANMO"}, {"lat", "34"}});
  const Dbptr view = tables_.process({"dbopen sitechan", "dbjoin -o site"});
  EXPECT_THAT(texts_of(dbsubset(view, "site.sta =~ /-/", nullptr), "chanid"), ElementsAre("1", "2", "-1"));
  EXPECT_THAT(texts_of(dbsubset(view, "lat =~ /-999.0000/", nullptr), "chanid"), ElementsAre("1", "2", "-1"));
  EXPECT_THAT(texts_of(dbsubset(view, "lat !~ /-999.0000/", nullptr), "chanid"), ElementsAre("0"));
  EXPECT_THAT(texts_of(dbsubset(view, "is_null(lat)", nullptr), "chanid"), ElementsAre("1", "2", "-1"));
}

const Texts kConditions = {"sta =~ /a/",
                           "sta !~ /a/",
                           "sta =~ /[ab]*/",
                           "chan =~ //",
                           "chanid =~ /1/",
                           "chanid !~ /-1/",
                           "hang =~ /.*5/",
                           "site.sta =~ /-/",
                           "site.sta !~ /b|c/",
                           "lat =~ /-999.*/",
                           "lat =~ /1.0/",
                           "sta == site.sta",
                           "chanid % 3 == 1",
                           "7 % chanid > 2",
                           "is_null(lat) || lat > 0",
                           "str(chanid) < sta",
                           "sqrt(lat) >= 0",
                           "ondate =~ /1990.*/",
                           "(sta) =~ /a/",
                           "sta =~ /a/ && 1",
                           "length(sta) - 1",
                           "staname =~ /\xC3\xBC.?/"};

// Stations with few texts, some twice, some without a site.
void add_random_rows(Tables& tables, std::mt19937& random) {
  const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
  const Texts texts = {"a", "b", "ab", "c", "", "aa"};
  const auto text = [&] { return texts[random() % texts.size()]; };
  for (int i = below(100); i > 0; --i) {
    tables.add("sitechan", {{"sta", text()},
                            {"chan", text()},
                            {"ondate", std::to_string(1990001 + below(3) * 1000)},
                            {"chanid", std::to_string(below(5) - 2)},
                            {"hang", below(2) == 0 ? "1.5" : "1.50"}});
  }
  for (int i = below(6); i > 0; --i) {
    tables.add(
        "site",
        {{"sta", text()}, {"lat", below(2) == 0 ? "1.0" : "-1"}, {"staname", below(2) == 0 ? "\xFC" : "\xC3\xBC"}});
  }
}

Dbptr chosen_one_by_one(Dbptr view, const std::string& condition) {
  Expression* compiled = nullptr;
  EXPECT_EQ(dbex_compile(view, condition.c_str(), &compiled, dbINTEGER), 0);
  std::vector<std::uint32_t> chosen;
  for (std::uint32_t r = 0; r < record_count(view); ++r) {
    std::int64_t is_true = 0;
    if (dbex_eval(at(view, r), compiled, 0, &is_true) == 0 && is_true != 0) chosen.push_back(r);
  }
  return triglub::view_of_records(view, chosen, nullptr);
}

TEST_F(Subset, AgreesWithEvaluationRecordByRecord) {
  std::mt19937 random(random_seed());
  for (int round = 0; round < 80; ++round) {
    Tables tables;
    add_random_rows(tables, random);
    const Dbptr view = tables.process({"dbopen sitechan", "dbjoin -o site sta"});
    for (const std::string& condition : kConditions) {
      const Dbptr expected = chosen_one_by_one(view, condition);
      const Dbptr subset = dbsubset(view, condition.c_str(), nullptr);
      ASSERT_EQ(triglub::base_rows(subset, "sitechan"), triglub::base_rows(expected, "sitechan")) << condition;
      ASSERT_EQ(triglub::base_rows(subset, "site"), triglub::base_rows(expected, "site")) << condition;
    }
  }
}

// --- chosen records --------------------------------------------------------------------------------------------------

TEST_F(Subset, CanBeChosenByNumber) {
  const Dbptr view = tables_.table("sitechan");
  EXPECT_THAT(texts_of(triglub::view_of_records(view, {3, 0, 0, 2}, "chosen"), "chanid"),
              ElementsAre("-1", "1", "1", "2"));
  EXPECT_EQ(record_count(tables_.table("chosen")), 4);
  EXPECT_EQ(record_count(triglub::view_of_records(view, {}, nullptr)), 0);
  EXPECT_EQ(triglub::view_of_records(view, {0, 4}, nullptr), Dbptr());
  EXPECT_EQ(triglub::view_of_records(Dbptr(), {}, nullptr), Dbptr());
}

TEST_F(Subset, KnowsItsBaseRows) {
  const Dbptr view = dbsubset(tables_.table("sitechan"), "chan == 'BHZ'", nullptr);
  EXPECT_THAT(triglub::base_rows(view, "sitechan"), ElementsAre(0, 2));
  EXPECT_THAT(triglub::base_rows(view, "site"), IsEmpty());
  EXPECT_THAT(triglub::base_rows(tables_.table("sitechan"), "sitechan"), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(triglub::base_rows(Dbptr(), "sitechan"), IsEmpty());
  tables_.add("site", {{"sta", "ANMO"}});
  tables_.close();
  EXPECT_THAT(triglub::base_rows(tables_.process({"dbopen sitechan", "dbjoin -o site"}), "site"),
              ElementsAre(triglub::NO_BASE_ROW, 0, triglub::NO_BASE_ROW, triglub::NO_BASE_ROW));
}

}  // namespace
}  // namespace triglub_test
