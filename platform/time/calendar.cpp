// Days to dates and back by arithmetic: no table of years, no time zone.
#include "time/calendar.h"

#include <array>

namespace triglub::calendar {

namespace {

// Days of the year gone by before each month, and the length of the year.
using MonthStarts = std::array<int, 13>;
constexpr MonthStarts kCommonYear = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
constexpr MonthStarts kLeapYear = {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366};

const MonthStarts& month_starts(std::int64_t year) { return is_leap(year) ? kLeapYear : kCommonYear; }

int start_of(const MonthStarts& starts, int month) { return starts[static_cast<std::size_t>(month - 1)]; }

bool is_year(std::int64_t year) { return kFirstYear <= year && year <= kLastYear; }

int year_of(std::int64_t day) {
  constexpr std::int64_t kDaysIn400Years = 146097;
  // The mean year is never more than a day and a half away from the true start of a year: one step corrects it.
  std::int64_t year = floor_div((day - kFirstDay) * 400, kDaysIn400Years) + kFirstYear;
  if (year_start(year) > day) --year;
  if (year_start(year + 1) <= day) ++year;
  return static_cast<int>(year);
}

}  // namespace

bool is_year_day(std::int64_t year, std::int64_t day_of_year) {
  return is_year(year) && 1 <= day_of_year && day_of_year <= days_in_year(year);
}

bool is_date(int year, int month, int day) {
  if (!is_year(year) || month < 1 || month > 12 || day < 1) return false;
  const MonthStarts& starts = month_starts(year);
  return day <= start_of(starts, month + 1) - start_of(starts, month);
}

std::int64_t day_of(int year, int month, int day) {
  return year_start(year) + start_of(month_starts(year), month) + day - 1;
}

Date date_of(std::int64_t day) {
  const int year = year_of(day);
  const auto gone = static_cast<int>(day - year_start(year));
  const MonthStarts& starts = month_starts(year);
  // No month is longer than 31 days, so the estimate is right or one month early.
  int month = gone / 31 + 1;
  if (start_of(starts, month + 1) <= gone) ++month;
  return {year, month, gone - start_of(starts, month) + 1, gone + 1};
}

}  // namespace triglub::calendar
