#include "time/calendar.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using namespace triglub::calendar;

// A calendar that only knows how to go to the next day.
struct PlainCalendar {
  int year = 1, month = 1, day = 1, day_of_year = 1;

  int month_length() const {
    if (month == 2) return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0) ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
  }

  void next() {
    ++day;
    ++day_of_year;
    if (day <= month_length()) return;
    day = 1;
    if (++month <= 12) return;
    month = 1;
    day_of_year = 1;
    ++year;
  }
};

// The calendar repeats every 400 years, so both ends and the years around the present stand for all.
bool is_checked(int year) { return year <= 401 || (1800 <= year && year <= 2201) || year >= 9598; }

TEST(Calendar, AgreesWithCountingDayByDayFromYear1ToYear9999) {
  PlainCalendar plain;
  for (std::int64_t day = kFirstDay; day < kEndDay; ++day, plain.next()) {
    if (!is_checked(plain.year)) continue;
    // One check for the whole day: there are hundreds of thousands of them.
    const Date date = date_of(day);
    const bool agrees = date.year == plain.year && date.month == plain.month && date.day == plain.day &&
                        date.day_of_year == plain.day_of_year && is_date(plain.year, plain.month, plain.day) &&
                        day_of(plain.year, plain.month, plain.day) == day &&
                        year_start(plain.year) + plain.day_of_year - 1 == day;
    ASSERT_TRUE(agrees) << "day " << day << " is " << plain.year << '-' << plain.month << '-' << plain.day;
  }
  EXPECT_EQ(plain.year, 10000);
  EXPECT_EQ(plain.day_of_year, 1);
}

TEST(Calendar, CountsDaysFrom1970) {
  EXPECT_EQ(year_start(1970), 0);
  EXPECT_EQ(day_of(1970, 1, 2), 1);
  EXPECT_EQ(day_of(1969, 12, 31), -1);
  EXPECT_EQ(day_of(2000, 3, 1), 11017);
}

TEST(Calendar, KnowsWhichDatesExist) {
  const struct {
    int year, month, day;
    bool exists;
  } cases[] = {
      {2000, 2, 29, true},  {1900, 2, 29, false},  {2023, 2, 29, false}, {2024, 2, 29, true},  {2024, 2, 30, false},
      {2023, 4, 30, true},  {2023, 4, 31, false},  {2023, 1, 0, false},  {2023, 0, 1, false},  {2023, 13, 1, false},
      {2023, 12, 31, true}, {2023, 12, 32, false}, {0, 12, 31, false},   {1, 1, 1, true},      {9999, 12, 31, true},
      {10000, 1, 1, false}, {-1, 1, 1, false},     {2023, -1, 1, false}, {2023, 1, -1, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(is_date(c.year, c.month, c.day), c.exists) << c.year << '-' << c.month << '-' << c.day;
  }
}

TEST(Calendar, KnowsTheLengthOfEveryYear) {
  EXPECT_TRUE(is_year_day(2000, 366));
  EXPECT_FALSE(is_year_day(2000, 367));
  EXPECT_FALSE(is_year_day(1900, 366));
  EXPECT_TRUE(is_year_day(1900, 365));
  EXPECT_FALSE(is_year_day(2000, 0));
  EXPECT_FALSE(is_year_day(0, 1));
  EXPECT_FALSE(is_year_day(10000, 1));
}

}  // namespace
