// Joins on ranges of validity.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/timeconv.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Begin and end as the file has them; blank for null.
struct Span {
  std::string begin, end;
};

// Seconds behind the start of a day, as the file has them.
std::string instant(int yyyyddd, double seconds = 0) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", epoch(yyyyddd) + seconds);
  return text;
}

bool meet(const std::string& first, const Span& a, const std::string& second, const Span& b) {
  Tables tables;
  const auto row = [](const std::string& table, const Span& span) {
    const bool days = table == "site" || table == "sitechan";
    return Row{{"sta", "A"}, {days ? "ondate" : "time", span.begin}, {days ? "offdate" : "endtime", span.end}};
  };
  tables.add(first, row(first, a)).add(second, row(second, b));
  return record_count(tables.process({"dbopen " + first, "dbjoin " + second})) == 1;
}

struct Case {
  Span a, b;
  bool meet;
};

TEST(RangeJoin, ComparesDaysWithDays) {
  const std::vector<Case> cases = {
      {{"2000001", "2000100"}, {"2000050", "2000150"}, true},   // overlap
      {{"2000001", "2000100"}, {"2000100", "2000150"}, false},  // touch
      {{"2000001", "2000100"}, {"2000099", "2000150"}, true},   //
      {{"1999365", "2000001"}, {"2000001", "2000002"}, false},  // over the year's end
      {{"1999365", "2000002"}, {"2000001", "2000003"}, true},   //
      {{"2000001", ""}, {"2010001", ""}, true},                 // open to the future
      {{"2000001", "-1"}, {"1990001", "2000001"}, false},       //
      {{"", "2000001"}, {"1990001", "1990002"}, true},          // open to the past
      {{"", ""}, {"1990001", "1990002"}, true},                 // always
      {{"2000005", "2000005"}, {"2000001", "2000010"}, true},   // a point inside
      {{"2000001", "2000001"}, {"2000001", "2000010"}, true},   // at the begin
      {{"2000010", "2000010"}, {"2000001", "2000010"}, false},  // at the end
      {{"2000010", "2000010"}, {"2000010", "2000010"}, true},   // two points
      {{"2000010", "2000010"}, {"2000010", ""}, true},          //
      {{"2000010", "2000009"}, {"2000001", "2000020"}, false},  // backward
      {{"2000010", "2000009"}, {"", ""}, false},                //
      {{"2000010", "2000009"}, {"2000010", "2000009"}, false},  //
  };
  for (const auto& [a, b, expected] : cases) {
    SCOPED_TRACE(a.begin + ".." + a.end + " and " + b.begin + ".." + b.end);
    EXPECT_EQ(meet("sitechan", a, "site", b), expected);
    EXPECT_EQ(meet("sitechan", b, "site", a), expected);
  }
}

TEST(RangeJoin, ComparesInstantsWithInstants) {
  const std::vector<Case> cases = {
      {{"100.000", "200.000"}, {"199.999", "300.000"}, true},
      {{"100.000", "200.000"}, {"200.000", "300.000"}, false},
      {{"100.000", "200.00001"}, {"200.000", "300.000"}, true},
      {{"100.000", ""}, {"1e9", "2e9"}, true},
      {{"", "100.000"}, {"100.000", ""}, false},
      {{"-9999999999.99900", "9999999999.99900"}, {"5", "6"}, true},
      {{"-9999999999.999", "9999999999.999"}, {"5", "6"}, true},
      {{"150", "150"}, {"100", "200"}, true},
      {{"200", "200"}, {"100", "200"}, false},
      {{"200", "199.5"}, {"100", "300"}, false},
      {{"-200", "-100"}, {"-150", "0"}, true},
  };
  for (const auto& [a, b, expected] : cases) {
    SCOPED_TRACE(a.begin + ".." + a.end + " and " + b.begin + ".." + b.end);
    EXPECT_EQ(meet("sensor", a, "calibration", b), expected);
    EXPECT_EQ(meet("sensor", b, "calibration", a), expected);
  }
}

// An instant counts as its day, so a sensor that came in the middle of a day came on that day.
TEST(RangeJoin, ComparesDaysWithInstantsAsDays) {
  const std::vector<Case> cases = {
      {{"2000001", "2000100"}, {instant(2000050), instant(2000060)}, true},
      {{"2000001", "2000100"}, {instant(2000099, 86399.999), ""}, true},
      {{"2000001", "2000100"}, {instant(2000100), ""}, false},
      {{"2000001", "2000100"}, {instant(2000099, 1), instant(2000099, 2)}, true},  // a point on the last day
      {{"2000001", "2000100"}, {instant(2000100, 1), instant(2000100, 2)}, false},
      {{"2000001", "2000100"}, {"", instant(2000001, 43200)}, false},  // ends on the day of the begin
      {{"2000001", "2000100"}, {"", instant(2000002)}, true},
      {{"2000001", ""}, {instant(1999365, 86399), ""}, true},
      {{"", "2000001"}, {instant(2000001), ""}, false},
      {{"", ""}, {"", ""}, true},
      {{"2000050", "2000050"}, {instant(2000050, 5), instant(2000051)}, true},   // a point of one day
      {{"2000050", "2000050"}, {instant(2000049, 5), instant(2000050)}, false},  //
      {{"1969365", "1970001"}, {"-1", "0"}, true},                               // before 1970
      {{"1970001", "1970002"}, {"-1", "0"}, false},
      {{"2000001", "2000100"}, {instant(2000060), instant(2000050)}, false},        // backward
      {{"2000001", "2000100"}, {instant(2000050, 5), instant(2000050, 4)}, false},  // backward within a day
      {{"2000100", "2000001"}, {instant(2000050), instant(2000060)}, false},
  };
  for (const auto& [a, b, expected] : cases) {
    SCOPED_TRACE(a.begin + ".." + a.end + " and " + b.begin + ".." + b.end);
    EXPECT_EQ(meet("sitechan", a, "sensor", b), expected);
    EXPECT_EQ(meet("sensor", b, "sitechan", a), expected);
  }
}

// One channel epoch after the other, sensors that change at the same midnight.
TEST(RangeJoin, KeepsTheEpochsOfOneChannelApart) {
  Tables tables;
  for (int year = 1995; year < 2000; ++year) {
    const std::string from = std::to_string(year * 1000 + 1), to = std::to_string(year * 1000 + 1001);
    tables.add("sitechan", {{"sta", "A"}, {"chan", "Z"}, {"ondate", from}, {"offdate", year == 1999 ? "-1" : to}});
    tables.add("sensor", {{"sta", "A"},
                          {"chan", "Z"},
                          {"time", instant(std::stoi(from))},
                          {"endtime", year == 1999 ? "" : instant(std::stoi(to))},
                          {"jdate", from}});
  }
  EXPECT_THAT(
      records_of(tables.process({"dbopen sitechan", "dbjoin sensor"}), {"ondate", "jdate"}),
      ElementsAre("1995001 1995001", "1996001 1996001", "1997001 1997001", "1998001 1998001", "1999001 1999001"));
}

// --- which of the view's ranges --------------------------------------------------------------------------------------

TEST(RangeJoin, TakesTheViewsFirstRangeOfTheSameName) {
  Tables tables;
  tables.add("sitechan", {{"sta", "A"}, {"chan", "Z"}, {"ondate", "1990001"}, {"offdate", "2000001"}});
  tables.add("sensor", {{"sta", "A"}, {"chan", "Z"}, {"time", instant(1995001)}, {"endtime", instant(1996001)}});
  // Meets the channel's epoch, but not the sensor's, whose range has the name.
  tables.add("calibration", {{"sta", "A"}, {"chan", "Z"}, {"time", instant(1992001)}, {"endtime", instant(1993001)}});
  EXPECT_EQ(record_count(tables.process({"dbopen sitechan", "dbjoin calibration"})), 1);
  EXPECT_EQ(record_count(tables.process({"dbopen sitechan", "dbjoin sensor", "dbjoin calibration"})), 0);
}

TEST(RangeJoin, TakesTheFirstInJoinOrder) {
  Tables tables;
  tables.add("sensor", {{"sta", "A"}, {"chan", "Z"}, {"time", "100"}, {"endtime", "300"}});
  tables.add("calibration", {{"sta", "A"}, {"chan", "Z"}, {"time", "200"}, {"endtime", "400"}});
  tables.add("stage", {{"sta", "A"}, {"chan", "Z"}, {"time", "300"}, {"endtime", "400"}});
  EXPECT_EQ(record_count(tables.process({"dbopen sensor", "dbjoin calibration", "dbjoin stage"})), 0);
  EXPECT_EQ(record_count(tables.process({"dbopen calibration", "dbjoin sensor", "dbjoin stage"})), 1);
}

TEST(RangeJoin, TakesTheFirstRangeOfTheOtherKindElse) {
  Tables tables;
  tables.add("site", {{"sta", "A"}, {"ondate", "1990001"}, {"offdate", "1992001"}});
  tables.add("sitechan", {{"sta", "A"}, {"chan", "Z"}, {"ondate", "1991001"}, {"offdate", "1994001"}});
  tables.add("sensor", {{"sta", "A"}, {"chan", "Z"}, {"time", instant(1993001)}, {"endtime", instant(1993100)}});
  EXPECT_EQ(record_count(tables.process({"dbopen sitechan", "dbjoin site", "dbjoin sensor"})), 1);
  EXPECT_EQ(record_count(tables.process({"dbopen site", "dbjoin sitechan", "dbjoin sensor"})), 0);
}

TEST(RangeJoin, NeedsNoRangeOfTheView) {
  Tables tables;
  tables.add("schanloc", {{"sta", "A"}, {"chan", "Z"}});
  tables.add_all("sitechan", {{{"sta", "A"}, {"chan", "Z"}, {"ondate", "1991001"}, {"offdate", "1994001"}},
                              {{"sta", "A"}, {"chan", "Z"}, {"ondate", "1994001"}, {"offdate", "1993001"}}});
  EXPECT_EQ(record_count(tables.process({"dbopen schanloc", "dbjoin sitechan"})), 2);
}

TEST(RangeJoin, TakesTheRangeOfAnAbsentRowForOpen) {
  Tables tables;
  tables.add("schanloc", {{"sta", "A"}, {"chan", "Z"}});
  tables.add_all("stage", {{{"sta", "A"}, {"chan", "Z"}, {"time", "1"}, {"endtime", "2"}, {"stageid", "1"}},
                           {{"sta", "A"}, {"chan", "Z"}, {"time", "2"}, {"endtime", "1"}, {"stageid", "2"}}});
  EXPECT_THAT(
      texts_of(tables.process({"dbopen schanloc", "dbjoin -o sensor", "dbjoin stage schanloc.sta:sta time::endtime"}),
               "stageid"),
      ElementsAre("1"));
}

// --- named ranges ----------------------------------------------------------------------------------------------------

TEST(RangeJoin, TakesNamedRanges) {
  Tables tables;
  tables.add("sitechan", {{"sta", "A"}, {"ondate", "1990001"}, {"offdate", "1991001"}});
  tables.add_all("sensor", {{{"sta", "B"}, {"time", instant(1990100)}, {"endtime", instant(1990200)}},
                            {{"sta", "A"}, {"time", instant(1991001)}, {"endtime", instant(1992001)}},
                            {{"sta", "A"}, {"time", instant(1990364)}, {"endtime", instant(1992001)}}});
  const auto stations = [&](const std::string& keys) {
    return texts_of(tables.process({"dbopen sitechan", "dbjoin sensor " + keys}), "sensor.sta");
  };
  EXPECT_THAT(stations("ondate::offdate:time::endtime"), ElementsAre("B", "A"));
  EXPECT_THAT(stations("sta ondate::offdate:time::endtime"), ElementsAre("A"));
  EXPECT_THAT(stations("sitechan.ondate::sitechan.offdate:sensor.time::sensor.endtime sta:sta"), ElementsAre("A"));
}

TEST(RangeJoin, TakesANamedRangeThatBothHave) {
  Tables tables;
  tables.add("sitechan", {{"sta", "A"}, {"ondate", "1990001"}, {"offdate", "1991001"}});
  tables.add_all("site", {{{"sta", "B"}, {"ondate", "1990364"}, {"offdate", "-1"}},
                          {{"sta", "C"}, {"ondate", "1991001"}, {"offdate", "-1"}}});
  EXPECT_THAT(texts_of(tables.process({"dbopen sitechan", "dbjoin site ondate::offdate"}), "site.sta"),
              ElementsAre("B"));
}

// A number of the file that is no date at all is compared like one, and harms nothing.
TEST(RangeJoin, BearsDatesThatAreNone) {
  EXPECT_TRUE(meet("sitechan", {"0", "99999999"}, "sensor", {"0", "1"}));
  EXPECT_TRUE(meet("sitechan", {"-9999999", "99999999"}, "sensor", {"-1e300", "1e300"}));
  EXPECT_FALSE(meet("sitechan", {"99999999", "0"}, "sensor", {"0", "1"}));
}

}  // namespace
}  // namespace triglub_test
