// The proleptic Gregorian calendar: day numbers (days since 1970-01-01) to dates and back.
//
// Everything rests on the day number of January 1, which is a plain count: 365 days a year, and one more for every
// leap year gone by. The way back estimates the year from the mean length of a year and corrects the estimate.
#ifndef TRIGLUB_TIME_CALENDAR_H
#define TRIGLUB_TIME_CALENDAR_H

#include <cstdint>

namespace triglub::calendar {

inline constexpr std::int64_t kSecondsPerDay = 86400;
inline constexpr std::int64_t kFirstYear = 1;
inline constexpr std::int64_t kLastYear = 9999;

// The quotient rounded towards minus infinity, so that times before 1970 need no case of their own. REQUIRES: b > 0.
constexpr std::int64_t floor_div(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

constexpr bool is_leap(std::int64_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

constexpr int days_in_year(std::int64_t year) { return is_leap(year) ? 366 : 365; }

// The day number of January 1. Defined for every year that a year-day of 64 bits can hold.
constexpr std::int64_t year_start(std::int64_t year) {
  constexpr std::int64_t kDaysFromYear1To1970 = 719162;
  const std::int64_t gone = year - 1;
  return 365 * gone + floor_div(gone, 4) - floor_div(gone, 100) + floor_div(gone, 400) - kDaysFromYear1To1970;
}

// The day numbers that have a date here: kFirstDay and later, but not kEndDay. The same in seconds.
inline constexpr std::int64_t kFirstDay = year_start(kFirstYear);
inline constexpr std::int64_t kEndDay = year_start(kLastYear + 1);
inline constexpr std::int64_t kFirstSecond = kFirstDay * kSecondsPerDay;
inline constexpr std::int64_t kEndSecond = kEndDay * kSecondsPerDay;

struct Date {
  int year = 0;         // 1 to 9999
  int month = 0;        // 1 to 12
  int day = 0;          // 1 to 31
  int day_of_year = 0;  // 1 to 366
};

// True when the calendar has that day.
bool is_date(int year, int month, int day);
bool is_year_day(std::int64_t year, std::int64_t day_of_year);

// The day number of a date. REQUIRES: is_date.
std::int64_t day_of(int year, int month, int day);

// The date of a day number. REQUIRES: kFirstDay <= day < kEndDay.
Date date_of(std::int64_t day);

}  // namespace triglub::calendar

#endif
