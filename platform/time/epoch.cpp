// Year-days to epoch seconds and back.
#include <cmath>

#include "platform/timeconv.h"
#include "time/calendar.h"

using namespace triglub::calendar;

double epoch(int yyyyddd) {
  if (!is_year_day(yyyyddd / 1000, yyyyddd % 1000)) return NULL_EPOCH;
  return static_cast<double>(triglub::day_number(yyyyddd) * kSecondsPerDay);
}

namespace triglub {

std::int64_t day_number(std::int64_t yyyyddd) {
  // Cut towards zero, so that a small negative number, as a null is written, comes before every date.
  return year_start(yyyyddd / 1000) + yyyyddd % 1000 - 1;
}

std::int64_t yearday(double seconds, std::int64_t null_date) {
  // Written so that a time that is not a number is refused too.
  if (!(seconds >= kFirstSecond && seconds < kEndSecond)) return null_date;
  // Whole seconds first: the quotient of a time just before midnight could round up to the next day.
  const auto second = static_cast<std::int64_t>(std::floor(seconds));
  const Date date = date_of(floor_div(second, kSecondsPerDay));
  return std::int64_t{date.year} * 1000 + date.day_of_year;
}

}  // namespace triglub
