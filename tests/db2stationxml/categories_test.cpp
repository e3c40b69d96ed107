#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <random>

#include "conversion.h"
#include "db2stationxml.h"
#include "dbhelper.h"
#include "support/collected_log.h"
#include "support/random_seed.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ExitedWithCode;
using ::testing::IsEmpty;

// A table of channels, one record each.
class Categories : public ::testing::Test {
 protected:
  ~Categories() override {
    if (db_.database >= 0) dbclose(db_);
  }
  // The table of channels with these names, in this order.
  Dbptr channels(const std::vector<std::string>& names) {
    for (const std::string& name : names) files_.add_row("sitechan", {{"sta", "AAK"}, {"chan", name}});
    if (dbopen(files_.write().c_str(), "r", &db_) != 0) throw std::runtime_error("dbopen");
    return dblookup(db_, nullptr, "sitechan", nullptr, nullptr);
  }
  static SmartIndex selected(const std::string& flags) {
    std::vector<bool> bits;
    for (const char flag : flags) bits.push_back(flag == '1');
    return SmartIndex(bits);
  }
  static std::string flags_of(const SmartIndex& index) {
    const std::string text = index.as_string();
    return text.substr(2, text.find(']') - 2);
  }

  FlatDatabase files_;
  Dbptr db_;
};

ElementDescription line(const char* type, const char* value = "chan") {
  return ElementDescription((std::string("group - ") + type + " " + value).c_str());
}

TEST_F(Categories, AreTheDistinctValues) {
  const Dbptr db = channels({"B", "A", "B", "C"});
  EXPECT_THAT(get_categories(db, line("CATEGORIZED_GROUP"), selected("1111")), ElementsAre("A", "B", "C"));
  EXPECT_THAT(get_categories(db, line("CATEGORIZED_GROUP"), selected("1010")), ElementsAre("B"));
  EXPECT_THAT(get_categories(db, line("count"), selected("0111")), ElementsAre("A", "B", "C"));
  EXPECT_THAT(get_categories(db, line("CATEGORIZED_GROUP"), selected("0000")), IsEmpty());
}

TEST_F(Categories, AreInNumericOrderWhereThatIsAsked) {
  const Dbptr db = channels({"100", "9", "10", "-1"});
  EXPECT_THAT(get_categories(db, line("CATEGORIZED_BY_NUMBER"), selected("1111")), ElementsAre("-1", "9", "10", "100"));
  EXPECT_THAT(get_categories(db, line("CATEGORIZED_GROUP"), selected("1111")), ElementsAre("-1", "10", "100", "9"));
  EXPECT_THAT(get_categories(db, line("count"), selected("1111")), ElementsAre("-1", "10", "100", "9"));
}

TEST_F(Categories, OfEqualNumbersStayInByteOrder) {
  const Dbptr db = channels({"7", "12A", "07", "12", "3"});
  EXPECT_THAT(get_categories(db, line("CATEGORIZED_BY_NUMBER"), selected("11111")),
              ElementsAre("3", "07", "7", "12", "12A"));
}

TEST_F(Categories, ThrowForWhatIsNoNumber) {
  const Dbptr db = channels({"A", "1", "99999999"});
  EXPECT_THROW(get_categories(db, line("CATEGORIZED_BY_NUMBER"), selected("111")), std::invalid_argument);
  // One alone is not compared with anything.
  EXPECT_THAT(get_categories(db, line("CATEGORIZED_BY_NUMBER"), selected("100")), ElementsAre("A"));
}

TEST_F(Categories, EndTheProcessForOtherLines) {
  const Dbptr db = channels({"A"});
  for (const char* type : {"GROUP", "STAGE", "text", "string", "counts"}) {
    EXPECT_EXIT(get_categories(db, line(type), selected("1")), ExitedWithCode(1),
                "fatal: get_categories: called on an element that was not a categorized group")
        << type;
  }
}

TEST_F(Categories, EndTheProcessForWhatCannotBeListed) {
  const Dbptr db = channels({"A"});
  EXPECT_EXIT(get_categories(db, line("CATEGORIZED_GROUP", "nosuch"), selected("1")), ExitedWithCode(1),
              "fatal: db field \\[nosuch\\] not found");
  EXPECT_EXIT(get_categories(Dbptr{}, line("count"), selected("1")), ExitedWithCode(1),
              "fatal: db field \\[chan\\] not found");
}

TEST(NumericOrder, ComparesTheLeadingNumbers) {
  const struct {
    const char* a;
    const char* b;
    bool less;
  } cases[] = {
      {"9", "10", true}, {"10", "9", false}, {"7", "07", false}, {"07", "7", false}, {"12", "12A", false},
      {"-1", "0", true}, {" 5", "6", true},  {"+5", "6", true},  {"5x9", "6", true}, {"2147483646", "2147483647", true},
  };
  for (const auto& c : cases) EXPECT_EQ(sort_strings_as_numeric(c.a, c.b), c.less) << c.a << " " << c.b;
  EXPECT_THROW(sort_strings_as_numeric("A1", "1"), std::invalid_argument);
  EXPECT_THROW(sort_strings_as_numeric("1", ""), std::invalid_argument);
  EXPECT_THROW(sort_strings_as_numeric("2147483648", "1"), std::out_of_range);
}

using PseudoSubset = Categories;

TEST_F(PseudoSubset, ReachesFromTheFirstToTheLastMatch) {
  const Dbptr db = channels({"A", "B", "C", "B", "D"});
  const SmartIndex all = selected("11111");
  EXPECT_EQ(flags_of(pseudo_subset(db, "chan =~ /B/", all)), "01110");
  EXPECT_EQ(flags_of(pseudo_subset(db, "chan =~ /A/", all)), "10000");
  EXPECT_EQ(flags_of(pseudo_subset(db, "chan =~ /D/", all)), "00001");
  EXPECT_EQ(flags_of(pseudo_subset(db, "chan =~ /./", all)), "11111");
  EXPECT_EQ(flags_of(pseudo_subset(db, "chan =~ /X/", all)), "00000");
}

TEST_F(PseudoSubset, StartsAndEndsAtTheIndex) {
  const Dbptr db = channels({"A", "B", "A", "B", "A"});
  // The search begins at the borders; what lies between them need not be selected.
  EXPECT_EQ(flags_of(pseudo_subset(db, "chan =~ /A/", selected("01010"))), "00100");
  EXPECT_EQ(flags_of(pseudo_subset(db, "chan =~ /A/", selected("10001"))), "11111");
  // It runs on past the index: the last match at or before its last record.
  EXPECT_EQ(flags_of(pseudo_subset(db, "chan =~ /B/", selected("01000"))), "01000");
}

TEST_F(PseudoSubset, IsEmptyWhenOnlyRecordsAroundTheIndexMatch) {
  const Dbptr db = channels({"A", "B", "B", "A"});
  EXPECT_EQ(pseudo_subset(db, "chan =~ /A/", selected("0110")).as_string(), "([0000],4,4)");
  EXPECT_EQ(pseudo_subset(db, "chan =~ /A/", selected("0100")).as_string(), "([0000],4,4)");
  EXPECT_EQ(pseudo_subset(db, "chan =~ /A/", selected("0111")).as_string(), "([0001],3,3)");
}

TEST_F(PseudoSubset, OfAnEmptyIndexIsEmpty) {
  const Dbptr db = channels({"A", "A"});
  EXPECT_EQ(pseudo_subset(db, "chan =~ /A/", SmartIndex(0, true)).as_string(), "([],0,0)");
  EXPECT_EQ(pseudo_subset(db, "chan =~ /A/", SmartIndex(0, false)).as_string(), "([],0,0)");
  EXPECT_EQ(flags_of(pseudo_subset(db, "chan =~ /A/", selected("00"))), "00");
  // Smaller than the view: nothing is selected beyond its end.
  EXPECT_EQ(flags_of(pseudo_subset(db, "chan =~ /A/", selected("0"))), "0");
}

TEST_F(PseudoSubset, IsTheSameForNarrowAndWideRanges) {
  // Every range of ten records.
  const Dbptr db = channels({"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"});
  const SmartIndex all(10, true);
  for (int lo = 0; lo < 10; ++lo) {
    for (int hi = lo; hi < 10; ++hi) {
      std::string expected(10, '0');
      for (int i = lo; i <= hi; ++i) expected[static_cast<std::size_t>(i)] = '1';
      const std::string condition = "chan =~ /" + std::to_string(lo) + "|" + std::to_string(hi) + "/";
      EXPECT_EQ(flags_of(pseudo_subset(db, condition, all)), expected) << condition;
    }
  }
}

TEST_F(PseudoSubset, TakesConditionsOfAnyKind) {
  const Dbptr db = channels({"A", "B", "C", "D"});
  EXPECT_EQ(flags_of(pseudo_subset(db, "chan > 'A' && chan < 'D'", selected("1111"))), "0110");
  EXPECT_EQ(flags_of(pseudo_subset(db, "1 / 0", selected("1111"))), "0000");
}

// A condition over `chan`, and whether it holds for a name.
struct Condition {
  std::string text;
  std::function<bool(const std::string&)> holds;
};

Condition random_condition(std::mt19937& random) {
  const std::string a(1, static_cast<char>('A' + random() % 6));
  const std::string b(1, static_cast<char>('A' + random() % 6));
  switch (random() % 5) {
    case 0:
      return {"chan =~ /" + a + "|" + b + "/", [=](const std::string& name) { return name == a || name == b; }};
    case 1:
      return {"chan !~ /" + a + "/", [=](const std::string& name) { return name != a; }};
    case 2:
      return {"chan >= '" + a + "' && chan < \"" + b + "\"",
              [=](const std::string& name) { return name >= a && name < b; }};
    case 3:
      return {"1 / (chan == '" + a + "')", [=](const std::string& name) { return name == a; }};
    default:
      return {"chan =~ /" + a + "/", [=](const std::string& name) { return name == a; }};
  }
}

// An index of any shape: now and then one that set() has left with a border that is not one, or of another size.
SmartIndex random_index(std::mt19937& random, std::size_t records) {
  const std::size_t size = random() % 8 == 0 ? random() % (2 * records) : records;
  std::vector<bool> flags(size);
  if (size > 0) {
    const std::size_t begin = random() % size;
    const std::size_t end = begin + random() % (size + 1 - begin);
    for (std::size_t i = begin; i < end; ++i) flags[i] = random() % 3 == 0;
  }
  SmartIndex index(flags);
  for (auto changes = random() % 6 == 0 ? random() % 4 : 0; changes > 0 && size > 0; --changes) {
    index.set(random() % 2 == 0 ? std::min<unsigned long>(index.first(), size) : random() % size, random() % 2 == 0);
  }
  return index;
}

// The definition: each record looked at in turn, from the borders that the index says it has.
std::string subset_plainly(const std::vector<std::string>& names, const Condition& condition, const SmartIndex& index) {
  const auto records = static_cast<long>(names.size());
  const auto holds = [&](long i) { return condition.holds(names[static_cast<std::size_t>(i)]); };
  long lo = static_cast<long>(index.first());
  while (lo < records && !holds(lo)) ++lo;
  long hi = std::min(static_cast<long>(index.last()), records - 1);
  while (hi >= 0 && !holds(hi)) --hi;
  std::string flags(index.size(), '0');
  if (lo >= records || hi < 0) return flags;
  for (long i = lo; i <= hi && i < static_cast<long>(flags.size()); ++i) flags[static_cast<std::size_t>(i)] = '1';
  return flags;
}

TEST_F(PseudoSubset, IsWhatAPlainScanGives) {
  std::mt19937 random(random_seed());
  std::vector<std::string> names;
  names.reserve(60);
  for (int i = 0; i < 60; ++i) names.emplace_back(1, static_cast<char>('A' + random() % 5));
  const Dbptr db = channels(names);
  for (int round = 0; round < 10000; ++round) {
    const SmartIndex index = random_index(random, names.size());
    const Condition condition = random_condition(random);
    ASSERT_EQ(flags_of(pseudo_subset(db, condition.text, index)), subset_plainly(names, condition, index))
        << index.as_string() << " " << condition.text;
  }
}

TEST_F(Categories, AreWhatAPlainListingGives) {
  std::mt19937 random(random_seed());
  std::vector<std::string> names;
  names.reserve(40);
  for (int i = 0; i < 40; ++i) names.push_back(std::string(random() % 3, '0') + std::to_string(random() % 120));
  const Dbptr db = channels(names);
  for (int round = 0; round < 3000; ++round) {
    std::string flags;
    for (int i = 0; i < 40; ++i) flags += random() % 4 == 0 ? '1' : '0';
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < 40; ++i) {
      const bool is_new = std::find(expected.begin(), expected.end(), names[i]) == expected.end();
      if (flags[i] == '1' && is_new) expected.push_back(names[i]);
    }
    std::sort(expected.begin(), expected.end());
    ASSERT_EQ(get_categories(db, line("CATEGORIZED_GROUP"), selected(flags)), expected) << flags;
    ASSERT_EQ(get_categories(db, line("count"), selected(flags)), expected) << flags;
    // Numbers that are equal stay in byte order.
    for (std::size_t end = expected.size(); end > 1; --end) {
      for (std::size_t i = 1; i < end; ++i) {
        if (std::atoi(expected[i].c_str()) < std::atoi(expected[i - 1].c_str()))
          std::swap(expected[i], expected[i - 1]);
      }
    }
    ASSERT_EQ(get_categories(db, line("CATEGORIZED_BY_NUMBER"), selected(flags)), expected) << flags;
  }
}

TEST_F(PseudoSubset, EndsTheProcessForAConditionThatDoesNotCompile) {
  const Dbptr db = channels({"A"});
  EXPECT_EXIT(pseudo_subset(db, "chan =~ /(/", selected("1")), ExitedWithCode(1),
              "fatal: expression didn't compile: \\[chan =~ /\\(/\\]");
}

TEST_F(PseudoSubset, IsTraced) {
  const Dbptr db = channels({"A"});
  verbosity = 3;
  const CollectedLog log;
  pseudo_subset(db, "chan =~ /A/", selected("1"));
  get_categories(db, line("count"), selected("1"));
  EXPECT_THAT(log.lines(), ElementsAre("debug: Function: pseudo_subset", "debug: Function: get_categories(group)"));
}

}  // namespace
}  // namespace triglub_test
