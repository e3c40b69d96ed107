#include "reference/edition2/instants.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace triglub_reference::edition2 {

namespace {

bool is_leap(long year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

long length_of_year(long year) { return is_leap(year) ? 366 : 365; }

// The first day of a year, counted from 1970-01-01.
long first_day(long year) {
  const long before = year - 1;
  return before * 365 + before / 4 - before / 100 + before / 400 - 719162;
}

Instant first_instant(long year) { return static_cast<double>(first_day(year)) * kDay; }

// Ends on or behind 2286-11-20 stand for none: the null of times lies on that day.
constexpr long kDayOfNoEnd = 115740;

std::string padded(long number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

std::string date_text(long day) {
  long year = 1;
  while (first_day(year + 1) <= day) ++year;
  day -= first_day(year);
  const int lengths[] = {31, is_leap(year) ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  int month = 0;
  for (; day >= lengths[month]; ++month) day -= lengths[month];
  return padded(year, 4) + "-" + padded(month + 1, 2) + "-" + padded(day + 1, 2);
}

}  // namespace

Instant rounded(double seconds) { return std::floor(seconds * 1000.0 + 0.5); }

Instant begin_of(std::optional<double> seconds) {
  if (!seconds) return -kForever;
  const Instant begin = rounded(*seconds);
  if (begin < first_instant(1)) return -kForever;
  return begin >= first_instant(10000) ? kForever : begin;
}

Instant end_of(std::optional<double> seconds) { return seconds ? opened(rounded(*seconds)) : kForever; }

Instant opened(Instant end) { return end >= static_cast<double>(kDayOfNoEnd) * kDay ? kForever : end; }

std::optional<long> day_of_yearday(long yearday) {
  const long year = yearday / 1000;
  const long day = yearday % 1000;
  if (year < 1 || year > 9999 || day < 1 || day > length_of_year(year)) return std::nullopt;
  return first_day(year) + day - 1;
}

std::string instant_text(Instant instant) {
  if (!(instant >= first_instant(1) && instant < first_instant(10000))) return "";
  const double day = std::floor(instant / kDay);
  const long of_day = static_cast<long>(instant - day * kDay);
  const long seconds = of_day / 1000;
  std::string text = date_text(static_cast<long>(day)) + "T" + padded(seconds / 3600, 2) + ":" +
                     padded(seconds / 60 % 60, 2) + ":" + padded(seconds % 60, 2);
  if (of_day % 1000 != 0) text += "." + padded(of_day % 1000, 3);
  return text + "Z";
}

}  // namespace triglub_reference::edition2
