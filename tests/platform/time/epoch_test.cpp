#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>

#include "platform/timeconv.h"

namespace {

TEST(Epoch, IsTheStartOfTheDay) {
  EXPECT_EQ(epoch(1970001), 0.0);
  EXPECT_EQ(epoch(1970002), 86400.0);
  EXPECT_EQ(epoch(1969365), -86400.0);
  EXPECT_EQ(epoch(2001001), 978307200.0);
  EXPECT_EQ(epoch(2000366), 978220800.0);
  EXPECT_EQ(epoch(1001), -62135596800.0);     // 0001-01-01
  EXPECT_EQ(epoch(9999365), 253402214400.0);  // 9999-12-31
}

TEST(Epoch, RefusesWhatIsNoDate) {
  for (const int no_date : {-1, 0, 1, 999, 1000, 1366, 1970000, 1970366, 1970999, 2000367, 1900366, 9999366, 10000001,
                            2000000001, -1970001, INT_MAX, INT_MIN}) {
    EXPECT_EQ(epoch(no_date), NULL_EPOCH) << no_date;
  }
}

TEST(Epoch, TakesDay366OfLeapYearsOnly) {
  EXPECT_EQ(epoch(2000366) + 86400, epoch(2001001));
  EXPECT_EQ(epoch(1904366) + 86400, epoch(1905001));
  EXPECT_EQ(epoch(2001366), NULL_EPOCH);
}

TEST(YearDay, IsTheDayThatHoldsTheInstant) {
  EXPECT_EQ(triglub::yearday(0), 1970001);
  EXPECT_EQ(triglub::yearday(86399.999), 1970001);
  EXPECT_EQ(triglub::yearday(86400), 1970002);
  EXPECT_EQ(triglub::yearday(-0.001), 1969365);
  EXPECT_EQ(triglub::yearday(978307199.999), 2000366);
  EXPECT_EQ(triglub::yearday(-62135596800.0), 1001);
  EXPECT_EQ(triglub::yearday(253402300799.999), 9999365);
}

TEST(YearDay, TellsTheLastRepresentableInstantOfADayFromMidnight) {
  for (int day = 1; day < 30000; day += 7) {
    const double midnight = day * 86400.0;
    const std::int64_t before = triglub::yearday(std::nextafter(midnight, 0.0));
    EXPECT_EQ(triglub::day_number(before), day - 1);
    EXPECT_EQ(triglub::day_number(triglub::yearday(midnight)), day);
  }
}

TEST(YearDay, IsTheNullDateOutsideTheCalendar) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  for (const double no_time : {253402300800.0, -62135596800.1, 1e300, kInfinite, -kInfinite, std::nan("")}) {
    EXPECT_EQ(triglub::yearday(no_time), -1) << no_time;
    EXPECT_EQ(triglub::yearday(no_time, 7), 7) << no_time;
  }
}

TEST(YearDay, IsUndoneByEpoch) {
  for (int year = 1; year <= 9999; ++year) {
    for (const int day : {1, 59, 60, 61, 365}) {
      ASSERT_EQ(triglub::yearday(epoch(year * 1000 + day)), year * 1000 + day);
    }
  }
}

TEST(DayNumber, CountsOnBeyondTheEndOfTheYear) {
  EXPECT_EQ(triglub::day_number(1970001), 0);
  EXPECT_EQ(triglub::day_number(1970366), triglub::day_number(1971001));
  EXPECT_EQ(triglub::day_number(2000367), triglub::day_number(2001001));
  EXPECT_EQ(triglub::day_number(1970000), -1);
}

TEST(DayNumber, OrdersEveryNumber) {
  const std::int64_t least = std::numeric_limits<std::int64_t>::min();
  const std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
  EXPECT_LT(triglub::day_number(least), triglub::day_number(-1));
  EXPECT_LT(triglub::day_number(-1), triglub::day_number(1001));
  EXPECT_LT(triglub::day_number(1001), triglub::day_number(2286324));
  EXPECT_LT(triglub::day_number(9999365), triglub::day_number(10000001));
  EXPECT_LT(triglub::day_number(10000001), triglub::day_number(greatest));
}

}  // namespace
