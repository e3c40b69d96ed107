#include "epochs/instant.h"

#include <gtest/gtest.h>

#include <limits>

namespace triglub {
namespace {

constexpr double kNull = -9999999999.999;
constexpr double kNullEnd = 9999999999.999;

struct SecondsCase {
  const char* what;
  double seconds;
  Instant begin;
  Instant end;
};

const SecondsCase kSeconds[] = {
    {"zero", 0, 0, 0},
    {"half a millisecond goes up", 0.0005, 1, 1},
    {"less goes down", 0.00049, 0, 0},
    {"half a millisecond before 1970 goes up", -0.0005, 0, 0},
    {"more than half goes down", -0.0006, -1, -1},
    {"the first instant of year 1", -62135596800.0, -62135596800000, -62135596800000},
    {"rounded into year 1", -62135596800.0004, -62135596800000, -62135596800000},
    {"before year 1", -62135596800.001, kPast, kPast},
    {"the null of begins, as an end", kNull, kPast, -9999999999999},
    {"the last millisecond before an open end", 9999935999.999, 9999935999999, 9999935999999},
    {"rounded into an open end", 9999935999.9996, 9999936000000, kFuture},
    {"an open end", 9999936000.0, 9999936000000, kFuture},
    {"the null of ends", kNullEnd, 9999999999999, kFuture},
    {"the last millisecond of year 9999", 253402300799.999, 253402300799999, kFuture},
    {"after year 9999", 253402300800.0, kFuture, kFuture},
    {"far behind", 1e300, kFuture, kFuture},
    {"far before", -1e300, kPast, kPast},
    {"infinite", std::numeric_limits<double>::infinity(), kFuture, kFuture},
};

TEST(Instant, SecondsAreRoundedToMillisecondsAndCutAtTheLimits) {
  for (const SecondsCase& c : kSeconds) {
    EXPECT_EQ(begin_at(c.seconds, kNull), c.begin) << c.what;
    EXPECT_EQ(end_at(c.seconds, kNullEnd), c.end) << c.what;
  }
}

TEST(Instant, DaysBeginAtMidnight) {
  EXPECT_EQ(start_of_day(1970001), 0);
  EXPECT_EQ(start_of_day(1970002), kDay);
  EXPECT_EQ(start_of_day(2000366), 978220800000);
  EXPECT_EQ(start_of_day(1001), -62135596800000);
  EXPECT_EQ(start_of_day(9999365), 253402300800000 - kDay);
}

TEST(Instant, WhatIsNoDateHasNoMidnight) {
  for (const std::int64_t day : {-1L, 0L, 1L, 366L, 1000L, 2000000L, 1999366L, 2000367L, 2000999L, 9999366L, 10000001L,
                                 std::numeric_limits<long>::max(), std::numeric_limits<long>::min()}) {
    EXPECT_EQ(start_of_day(day), std::nullopt) << day;
  }
}

TEST(Instant, ADayEndsWithTheNext) {
  EXPECT_EQ(end_of_day(0), kDay);
  EXPECT_EQ(end_of_day(*start_of_day(2286322)), *start_of_day(2286323));
  EXPECT_EQ(end_of_day(*start_of_day(2286323)), kFuture);
  EXPECT_EQ(end_of_day(*start_of_day(9999365)), kFuture);
}

TEST(Instant, SecondsReadBackAndOpenEndsAreNull) {
  for (const Instant instant : {Instant{0}, Instant{1}, Instant{-1}, Instant{946684800123}, Instant{253402300799999}}) {
    EXPECT_EQ(begin_at(seconds_of(instant, kNull), kNull), instant);
  }
  EXPECT_EQ(seconds_of(kPast, kNull), kNull);
  EXPECT_EQ(seconds_of(kFuture, kNullEnd), kNullEnd);
}

TEST(Span, HoldsFromItsBeginToBeforeItsEnd) {
  const Span span = {10, 20};
  EXPECT_FALSE(span.holds_at(9));
  EXPECT_TRUE(span.holds_at(10));
  EXPECT_TRUE(span.holds_at(19));
  EXPECT_FALSE(span.holds_at(20));
  EXPECT_TRUE(Span{}.holds_at(kPast));
}

TEST(Span, EndsThatAreNotBehindTheBeginNeverHold) {
  EXPECT_TRUE((Span{10, 11}.holds_ever()));
  EXPECT_FALSE((Span{10, 10}.holds_ever()));
  EXPECT_FALSE((Span{11, 10}.holds_ever()));
  EXPECT_FALSE((Span{kPast, kPast}.holds_ever()));
  EXPECT_FALSE((Span{kFuture, kFuture}.holds_ever()));
}

TEST(Span, NeighboursDoNotMeet) {
  EXPECT_FALSE((Span{0, 10}.meets({10, 20})));
  EXPECT_FALSE((Span{10, 20}.meets({0, 10})));
  EXPECT_TRUE((Span{0, 11}.meets({10, 20})));
  EXPECT_TRUE((Span{0, 30}.meets({10, 20})));
}

TEST(Span, GrowsToHoldAnother) {
  Span span = {10, 20};
  span.include({15, 30});
  EXPECT_EQ(span, (Span{10, 30}));
  span.include({kPast, 5});
  EXPECT_EQ(span, (Span{kPast, 30}));
}

}  // namespace
}  // namespace triglub
