// dbfind: the nearest record at which a condition holds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "support/random_seed.h"
#include "tables.h"

namespace triglub_test {
namespace {

// A search with a hook of its own.
std::int64_t find(Dbptr view, std::int64_t from, const std::string& condition, int direction) {
  Expression* hook = nullptr;
  const std::int64_t found = dbfind(at(view, from), condition.c_str(), direction, &hook);
  dbfind_release(&hook);
  return found;
}

class Find : public ::testing::Test {
 protected:
  Find() {
    for (const char* sta : {"A", "B", "B", "C", "A"}) tables_.add("sitechan", {{"sta", sta}});
  }
  std::int64_t forward(std::int64_t from, const char* condition) {
    return find(tables_.table("sitechan"), from, condition, 0);
  }
  std::int64_t backward(std::int64_t from, const char* condition) {
    return find(tables_.table("sitechan"), from, condition, 1);
  }

  Tables tables_;
};

// The same condition, decided by texts and by evaluation.
const char* const BY_TEXT[] = {"sta =~ /B/", "sta =~ /B|X/"};
const char* const BY_VALUE[] = {"sta == 'B'", "sta =~ /B/ && 1"};

TEST_F(Find, SearchesForwardFromBehindTheRecord) {
  for (const auto& conditions : {BY_TEXT, BY_VALUE}) {
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(forward(-1, conditions[i]), 1);
      EXPECT_EQ(forward(0, conditions[i]), 1);
      EXPECT_EQ(forward(1, conditions[i]), 2);
      EXPECT_EQ(forward(2, conditions[i]), -2);
      EXPECT_EQ(forward(4, conditions[i]), -2);
    }
  }
}

TEST_F(Find, SearchesBackwardFromBeforeTheRecord) {
  for (const auto& conditions : {BY_TEXT, BY_VALUE}) {
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(backward(5, conditions[i]), 2);
      EXPECT_EQ(backward(3, conditions[i]), 2);
      EXPECT_EQ(backward(2, conditions[i]), 1);
      EXPECT_EQ(backward(1, conditions[i]), -2);
      EXPECT_EQ(backward(0, conditions[i]), -2);
    }
  }
}

TEST_F(Find, StartsAtAnEndFromBeyondIt) {
  constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
  for (const char* condition : {"sta =~ /A/", "sta == 'A'"}) {
    for (const std::int64_t before : {std::int64_t{-1}, std::int64_t{-2}, dbALL, dbINVALID, kMin}) {
      EXPECT_EQ(forward(before, condition), 0);
      EXPECT_EQ(backward(before, condition), -2);
    }
    for (const std::int64_t behind : {std::int64_t{5}, std::int64_t{6}, std::int64_t{1} << 32, kMax}) {
      EXPECT_EQ(forward(behind, condition), -2);
      EXPECT_EQ(backward(behind, condition), 4);
    }
  }
}

TEST_F(Find, TakesTheMatchThatIsNotForNoMatch) {
  EXPECT_EQ(forward(-1, "sta =~ /X/"), -2);
  EXPECT_EQ(forward(-1, "sta !~ /[AC]/"), 1);
  EXPECT_EQ(backward(5, "sta !~ /A/"), 3);
  EXPECT_EQ(forward(-1, "sta !~ /.*/"), -2);
}

TEST_F(Find, PassesRecordsAtWhichTheConditionFails) {
  Tables tables;
  for (const char* chanid : {"0", "0", "3", "0"}) tables.add("sitechan", {{"chanid", chanid}});
  EXPECT_EQ(find(tables.table("sitechan"), -1, "6 % chanid == 0", 0), 2);
  EXPECT_EQ(find(tables.table("sitechan"), 4, "6 % chanid == 0", 1), 2);
}

TEST_F(Find, ComplainsOfAConditionThatDoesNotCompile) {
  const Dbptr view = tables_.table("sitechan");
  CollectedLog log;
  Expression* hook = nullptr;
  EXPECT_EQ(dbfind(at(view, -1), "sta =~", 0, &hook), -1);
  EXPECT_EQ(hook, nullptr);
  EXPECT_EQ(log.lines().size(), 1u);
  EXPECT_EQ(dbfind(Dbptr(), "sta =~ /A/", 0, &hook), -1);
  dbfind_release(&hook);
}

TEST_F(Find, KeepsTheCompiledConditionInTheHook) {
  const Dbptr view = tables_.table("sitechan");
  Expression* hook = nullptr;
  EXPECT_EQ(dbfind(at(view, -1), "sta =~ /A/", 0, &hook), 0);
  Expression* const first = hook;
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(dbfind(at(view, 5), "sta =~ /A/", 1, &hook), 4);
  EXPECT_EQ(hook, first);
  dbfind_release(&hook);
  EXPECT_EQ(hook, nullptr);
  dbfind_release(&hook);  // nothing to do
}

TEST_F(Find, FindsNothingInAnEmptyView) {
  EXPECT_EQ(find(tables_.table("stage"), -1, "sta =~ /A/", 0), -2);
  EXPECT_EQ(find(tables_.table("stage"), 0, "sta == 'A'", 1), -2);
}

// --- far matches -----------------------------------------------------------------------------------------------------

TEST_F(Find, FindsMatchesAtEveryDistance) {
  for (const int distance : {1, 2, 255, 256, 257, 258, 1000}) {
    Tables tables;
    tables.add("sitechan", {{"sta", "X"}, {"chanid", "1"}});
    for (int i = 1; i < distance; ++i) tables.add("sitechan", {{"sta", "A"}, {"chanid", "2"}});
    tables.add("sitechan", {{"sta", "X"}, {"chanid", "1"}});
    const Dbptr view = tables.table("sitechan");
    for (const char* condition : {"sta =~ /X/", "sta =~ /X|Y/", "sta !~ /A/", "chanid =~ /1/", "sta == 'X'"}) {
      EXPECT_EQ(find(view, 0, condition, 0), distance) << condition;
      EXPECT_EQ(find(view, distance, condition, 1), 0) << condition;
    }
  }
}

TEST_F(Find, AgreesWithALookAtEveryRecord) {
  std::mt19937 random(random_seed());
  const auto below = [&](unsigned n) { return static_cast<std::int64_t>(random() % n); };
  const Texts conditions = {"sta =~ /a/",      "sta =~ /a|r/",    "sta !~ /x/",         "sta =~ /none/",
                            "hang =~ /1.5/",   "hang =~ /1.50?/", "hang !~ /-1.0/",     "chan =~ /-/",
                            "site.sta =~ /-/", "site.sta =~ /r/", "lat =~ /-999.0000/", "lat !~ /-999.*/",
                            "chanid =~ /7/",   "chanid == 7",     "sta =~ /[^x]/"};
  for (int round = 0; round < 12; ++round) {
    Tables tables;
    // Long runs of x, something rare in between.
    for (std::int64_t i = 200 + below(1500); i > 0; --i) {
      const bool rare = below(400) == 0;
      tables.add("sitechan", {{"sta", rare ? (below(2) == 0 ? "a" : "r") : "x"},
                              {"chan", rare ? "" : "c"},
                              {"hang", rare ? (below(2) == 0 ? "1.5" : "1.50") : ""},
                              {"chanid", rare ? "7" : "8"}});
    }
    tables.add("site", {{"sta", "r"}, {"lat", "1"}}).add("site", {{"sta", "x"}});
    Dbptr view = tables.process({"dbopen sitechan", "dbjoin -o site sta"});
    if (round % 3 == 1) view = dbsort(view, TextTbl({"sitechan.sta", "chanid"}).get(), 0, nullptr);
    const std::int64_t records = record_count(view);
    for (const std::string& condition : conditions) {
      Expression* compiled = nullptr;
      ASSERT_EQ(dbex_compile(view, condition.c_str(), &compiled, dbINTEGER), 0);
      std::vector<bool> holds;
      for (std::int64_t r = 0; r < records; ++r) {
        std::int64_t is_true = 0;
        holds.push_back(dbex_eval(at(view, r), compiled, 0, &is_true) == 0 && is_true != 0);
      }
      const auto scan = [&](std::int64_t from, std::int64_t step) {
        for (std::int64_t r = from + step; r >= 0 && r < records; r += step) {
          if (holds[static_cast<std::size_t>(r)]) return r;
        }
        return std::int64_t{-2};
      };
      Expression* hook = nullptr;
      for (int search = 0; search < 60; ++search) {
        const std::int64_t from = below(static_cast<unsigned>(records) + 2) - 1;
        ASSERT_EQ(dbfind(at(view, from), condition.c_str(), 0, &hook), scan(from, 1)) << condition << " from " << from;
        ASSERT_EQ(dbfind(at(view, from), condition.c_str(), 1, &hook), scan(from, -1)) << condition << " from " << from;
      }
      dbfind_release(&hook);
    }
  }
}

}  // namespace
}  // namespace triglub_test
