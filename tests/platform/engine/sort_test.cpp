// dbsort: order by type, stability, one record of each run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "support/random_seed.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;

Dbptr sort(Dbptr view, const Texts& keys, int flags = 0) { return dbsort(view, TextTbl(keys).get(), flags, nullptr); }

TEST(Sort, ComparesTextsByBytes) {
  Tables tables;
  for (const char* sta : {"b", "B", "a", "\xC3\xA9", "ab", "-", "a0", "Z", "_"}) tables.add("site", {{"sta", sta}});
  EXPECT_THAT(texts_of(sort(tables.table("site"), {"sta"}), "sta"),
              ElementsAre("-", "B", "Z", "_", "a", "a0", "ab", "b", "\xC3\xA9"));
}

TEST(Sort, ComparesNumbersAsNumbers) {
  Tables tables;
  for (const char* number : {"10", "9", "-1", "-100", "0", "+5", "99999999", "-9999999"}) {
    tables.add("sitechan", {{"chanid", number}, {"chan", number}});
  }
  EXPECT_THAT(texts_of(sort(tables.table("sitechan"), {"chanid"}), "chan"),
              ElementsAre("-9999999", "-100", "-1", "0", "+5", "9", "10", "99999999"));
  Tables reals;
  for (const char* number : {"10", "9.5", "-0.5", "1e2", "-1e2", "0.0", "1e-9", "-1e-9"}) {
    reals.add("site", {{"lat", number}, {"sta", number}});
  }
  EXPECT_THAT(texts_of(sort(reals.table("site"), {"lat"}), "sta"),
              ElementsAre("-1e2", "-0.5", "-1e-9", "0.0", "1e-9", "9.5", "10", "1e2"));
}

TEST(Sort, TakesNullsAsTheirValues) {
  Tables tables;
  tables.add_all("sensor", {{{"sta", "A"}, {"endtime", "5"}}, {{"sta", "B"}}, {{"sta", "C"}, {"endtime", "7"}}});
  EXPECT_THAT(texts_of(sort(tables.table("sensor"), {"endtime"}), "sta"), ElementsAre("A", "C", "B"));
  tables.close();
  tables.add_all("site", {{{"sta", "A"}, {"lat", "-1000"}}, {{"sta", "B"}}, {{"sta", "C"}, {"lat", "-998"}}});
  EXPECT_THAT(texts_of(sort(tables.table("site"), {"lat"}), "sta"), ElementsAre("A", "B", "C"));
}

TEST(Sort, TakesTheFieldsOfAbsentRowsAsNulls) {
  Tables tables;
  for (const char* sta : {"D", "C", "B", "A"}) tables.add("sitechan", {{"sta", sta}});
  tables.add_all("site",
                 {{{"sta", "B"}, {"lat", "-1000"}, {"staname", "!"}}, {{"sta", "D"}, {"lat", "1"}, {"staname", "x"}}});
  const Dbptr view = tables.process({"dbopen sitechan", "dbjoin -o site"});
  EXPECT_THAT(texts_of(sort(view, {"lat"}), "sta"), ElementsAre("B", "C", "A", "D"));
  EXPECT_THAT(texts_of(sort(view, {"staname"}), "sta"), ElementsAre("B", "C", "A", "D"));
}

TEST(Sort, IsStable) {
  Tables tables;
  for (int i = 0; i < 500; ++i)
    tables.add("sitechan", {{"sta", std::string(1, "CAB"[i % 3])}, {"chanid", std::to_string(i)}});
  const Dbptr sorted = sort(tables.table("sitechan"), {"sta"});
  Texts expected;
  for (const int first : {1, 2, 0})
    for (int i = first; i < 500; i += 3) expected.push_back(std::to_string(i));
  EXPECT_EQ(texts_of(sorted, "chanid"), expected);
}

TEST(Sort, TakesTheSignOfZeroForNothing) {
  Tables tables;
  for (const char* hang : {"0.0", "-0.0", "0"}) tables.add("sitechan", {{"hang", hang}, {"chan", hang}});
  EXPECT_THAT(texts_of(sort(tables.table("sitechan"), {"hang"}), "chan"), ElementsAre("0.0", "-0.0", "0"));
  EXPECT_EQ(record_count(sort(tables.table("sitechan"), {"hang"}, dbSORT_UNIQUE)), 1);
}

TEST(Sort, KeepsTheFirstOfEachRunWhenUnique) {
  Tables tables;
  tables.add_all("sitechan", {{{"sta", "B"}, {"chanid", "1"}},
                              {{"sta", "A"}, {"chanid", "2"}},
                              {{"sta", "B"}, {"chanid", "3"}},
                              {{"sta", "A"}, {"chanid", "4"}},
                              {{"sta", "A"}, {"chanid", "2"}}});
  EXPECT_THAT(records_of(sort(tables.table("sitechan"), {"sta"}, dbSORT_UNIQUE), {"sta", "chanid"}),
              ElementsAre("A 2", "B 1"));
  EXPECT_THAT(records_of(sort(tables.table("sitechan"), {"sta", "chanid"}, dbSORT_UNIQUE), {"sta", "chanid"}),
              ElementsAre("A 2", "A 4", "B 1", "B 3"));
}

TEST(Sort, OfNothingGivesNothing) {
  Tables tables;
  tables.add("site", {{"sta", "A"}});
  EXPECT_EQ(record_count(sort(tables.table("stage"), {"sta"}, dbSORT_UNIQUE)), 0);
  EXPECT_EQ(record_count(sort(tables.table("site"), {"sta"}, dbSORT_UNIQUE)), 1);
}

TEST(Sort, NamesTheKeyThatIsNoField) {
  Tables tables;
  tables.add("site", {{"sta", "A"}});
  const Dbptr site = tables.table("site");
  CollectedLog log;
  EXPECT_EQ(sort(site, {"sta", "nothing"}), Dbptr());
  EXPECT_EQ(sort(site, {"stage.sta"}), Dbptr());
  EXPECT_THAT(log.lines(), ElementsAre("warning: dbsort: the view has no field 'nothing'",
                                       "warning: dbsort: the view has no field 'stage.sta'"));
  EXPECT_EQ(sort(Dbptr(), {"sta"}), Dbptr());
  EXPECT_EQ(log.lines().size(), 2u);
}

// --- random views ----------------------------------------------------------------------------------------------------

// The value that a key compares: texts as they are, numbers as dbgetv gives them.
struct Value {
  std::string text;
  double number = 0;

  friend auto operator<=>(const Value&, const Value&) = default;
};

std::vector<Value> values_of(Dbptr view, const Texts& keys, long record) {
  std::vector<Value> values;
  for (const std::string& key : keys) {
    int type = 0;
    dbquery(dblookup(view, nullptr, nullptr, key.c_str(), nullptr), dbFIELD_TYPE, &type);
    Value value;
    std::int64_t integer = 0;
    if (type == dbSTRING) {
      value.text = text_at(view, key, record);
    } else if (type == dbINTEGER || type == dbYEARDAY) {
      EXPECT_EQ(dbgetv(at(view, record), nullptr, key.c_str(), &integer, nullptr), 0);
      value.number = static_cast<double>(integer);
    } else {
      EXPECT_EQ(dbgetv(at(view, record), nullptr, key.c_str(), &value.number, nullptr), 0);
    }
    values.push_back(value);
  }
  return values;
}

// The base rows of both tables behind each record tell which records a sort has put where.
using Rows = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

Rows rows_of(Dbptr view) {
  const auto first = triglub::base_rows(view, "sitechan");
  const auto second = triglub::base_rows(view, "site");
  Rows rows;
  for (std::size_t i = 0; i < first.size(); ++i) rows.emplace_back(first[i], second[i]);
  return rows;
}

// The rows in order, and those of the first record of each run.
std::pair<Rows, Rows> sorted_plainly(Dbptr view, const Texts& keys) {
  std::vector<std::vector<Value>> values;
  for (long r = 0; r < record_count(view); ++r) values.push_back(values_of(view, keys, r));
  std::vector<std::size_t> order(values.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) { return values[a] < values[b]; });
  const Rows before = rows_of(view);
  Rows all, firsts;
  for (std::size_t i = 0; i < order.size(); ++i) {
    all.push_back(before[order[i]]);
    if (i == 0 || values[order[i]] != values[order[i - 1]]) firsts.push_back(before[order[i]]);
  }
  return {all, firsts};
}

TEST(Sort, AgreesWithAStableSortOfTheValues) {
  std::mt19937 random(random_seed());
  const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
  const Texts fields = {"sta", "chan", "ondate",  "chanid",       "hang",        "descrip",
                        "lat", "elev", "staname", "site.offdate", "site.lddate", "site.sta"};
  const Texts texts = {"a", "b", "B", "ab", "\xC3\xA9", "\xFC", ""};
  const Texts numbers = {"0", "-1", "1", "1.5", "-0.0", "1e2", "", "-999.0", "10"};
  for (int round = 0; round < 60; ++round) {
    Tables tables;
    for (int i = below(120); i > 0; --i) {
      tables.add("sitechan", {{"sta", texts[static_cast<std::size_t>(below(5))]},
                              {"chan", texts[static_cast<std::size_t>(below(7))]},
                              {"ondate", std::to_string(1990001 + below(3))},
                              {"chanid", std::to_string(below(5) - 2)},
                              {"hang", numbers[static_cast<std::size_t>(below(9))]},
                              {"descrip", texts[static_cast<std::size_t>(below(7))]}});
    }
    for (int i = below(12); i > 0; --i) {
      tables.add("site", {{"sta", texts[static_cast<std::size_t>(below(5))]},
                          {"lat", numbers[static_cast<std::size_t>(below(9))]},
                          {"elev", numbers[static_cast<std::size_t>(below(9))]},
                          {"staname", texts[static_cast<std::size_t>(below(7))]},
                          {"lddate", std::to_string(below(4))}});
    }
    const Dbptr view = tables.process({"dbopen sitechan", "dbjoin -o site sta"});
    ASSERT_TRUE(is_view(view));
    for (int sorts = 0; sorts < 25; ++sorts) {
      Texts keys;
      for (int k = below(4); k >= 0; --k) keys.push_back(fields[static_cast<std::size_t>(below(12))]);
      const auto [expected, expected_unique] = sorted_plainly(view, keys);
      ASSERT_EQ(rows_of(sort(view, keys)), expected);
      ASSERT_EQ(rows_of(sort(view, keys, dbSORT_UNIQUE)), expected_unique);
    }
  }
}

}  // namespace
}  // namespace triglub_test
