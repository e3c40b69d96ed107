// When ranges of validity meet. In the tables `(` and `)` stand for a side that is open.
#include "engine/operations/range.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

#include "platform/timeconv.h"

namespace triglub {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

struct Case {
  Range a, b;
  bool meet;
};

TEST(Overlap, IsHalfOpenAndKnowsPoints) {
  const std::vector<Case> cases = {
      {{0, 10}, {5, 15}, true},              // overlap
      {{0, 10}, {2, 3}, true},               // one holds the other
      {{0, 10}, {0, 10}, true},              // equal
      {{0, 10}, {10, 20}, false},            // ends where the next begins
      {{0, 10}, {11, 20}, false},            // a gap
      {{0, 10}, {9, 10}, true},              // common end
      {{-kInf, 10}, {9, kInf}, true},        // open sides
      {{-kInf, 10}, {10, kInf}, false},      //
      {{-kInf, kInf}, {5, 6}, true},         //
      {{-kInf, kInf}, {-kInf, kInf}, true},  //
      {{5, 5}, {0, 10}, true},               // a point inside
      {{0, 0}, {0, 10}, true},               // at the begin
      {{10, 10}, {0, 10}, false},            // at the end
      {{10, 10}, {10, 20}, true},            // belongs to the one that begins there
      {{5, 5}, {5, 5}, true},                // two points
      {{5, 5}, {6, 6}, false},               //
      {{5, 5}, {-kInf, kInf}, true},         //
      {{10, 0}, {0, 10}, false},             // backward
      {{10, 0}, {5, 5}, false},              //
      {{10, 0}, {-kInf, kInf}, false},       //
      {{10, 0}, {10, 0}, false},             //
  };
  for (const auto& [a, b, meet] : cases) {
    EXPECT_EQ(overlap(a, b), meet) << a.begin << ".." << a.end << " and " << b.begin << ".." << b.end;
    EXPECT_EQ(overlap(b, a), meet) << b.begin << ".." << b.end << " and " << a.begin << ".." << a.end;
  }
}

// Positive lengths share an instant; a point is held like an instant.
TEST(Overlap, AgreesWithCountingInstants) {
  for (int a = 0; a < 6; ++a)
    for (int b = 0; b < 6; ++b)
      for (int c = 0; c < 6; ++c)
        for (int d = 0; d < 6; ++d) {
          bool meet = false;
          const auto has = [](int from, int to, int i) { return from == to ? i == from : from <= i && i < to; };
          for (int i = 0; i < 6; ++i) meet = meet || (has(a, b, i) && has(c, d, i));
          EXPECT_EQ(overlap({double(a), double(b)}, {double(c), double(d)}), meet) << a << b << c << d;
        }
}

RangeEnd date(double value) { return {FieldType::date, value, false}; }
RangeEnd time(double value) { return {FieldType::time, value, false}; }
RangeEnd open(FieldType type) { return {type, -1, true}; }

TEST(MakeRange, CountsDaysFromYearToYear) {
  const Range old_year = make_range(date(1999365), date(2000001), RangeUnit::days);
  EXPECT_EQ(old_year.end - old_year.begin, 1);
  const Range leap_year = make_range(date(2000365), date(2001001), RangeUnit::days);
  EXPECT_EQ(leap_year.end - leap_year.begin, 2);
}

TEST(MakeRange, TakesAnInstantForItsUtcDay) {
  const double day = epoch(2001001);
  const Range dates = make_range(date(2001001), date(2001003), RangeUnit::days);
  for (const double second : {0.0, 0.001, 43200.0, 86399.999}) {
    const Range times = make_range(time(day + second), time(day + 2 * 86400 + second), RangeUnit::days);
    EXPECT_EQ(times.begin, dates.begin) << second;
    EXPECT_EQ(times.end, dates.end) << second;
  }
  EXPECT_EQ(make_range(time(day - 0.001), time(day), RangeUnit::days).begin, dates.begin - 1);
}

TEST(MakeRange, CountsDaysBefore1970) {
  const Range dates = make_range(date(1969365), date(1970001), RangeUnit::days);
  const Range times = make_range(time(-0.5), time(0), RangeUnit::days);
  EXPECT_EQ(times.begin, dates.begin);
  EXPECT_EQ(times.end, dates.end);
}

TEST(MakeRange, KeepsSecondsAsStored) {
  const Range range = make_range(time(1.25), time(2.5), RangeUnit::as_stored);
  EXPECT_EQ(range.begin, 1.25);
  EXPECT_EQ(range.end, 2.5);
}

TEST(MakeRange, IsOpenWhereTheEndIsNull) {
  for (const RangeUnit unit : {RangeUnit::as_stored, RangeUnit::days}) {
    for (const FieldType type : {FieldType::date, FieldType::time}) {
      const Range range = make_range(open(type), open(type), unit);
      EXPECT_EQ(range.begin, -kInf);
      EXPECT_EQ(range.end, kInf);
    }
  }
}

// In days both ends are the same; what runs backward still meets nothing.
TEST(MakeRange, KnowsARangeThatRunsBackwardWithinOneDay) {
  const double noon = epoch(2001001) + 43200;
  const Range whole_day = make_range(date(2001001), date(2001002), RangeUnit::days);
  EXPECT_FALSE(overlap(make_range(time(noon), time(noon - 1), RangeUnit::days), whole_day));
  EXPECT_TRUE(overlap(make_range(time(noon), time(noon), RangeUnit::days), whole_day));
  EXPECT_TRUE(overlap(make_range(time(noon), time(noon + 1), RangeUnit::days), whole_day));
}

TEST(MakeRange, BearsDatesFarBeyondTheCalendar) {
  const Range range = make_range(date(-9.3e18), date(9.3e18), RangeUnit::as_stored);
  EXPECT_LT(range.begin, range.end);
}

}  // namespace
}  // namespace triglub
