// Time as the CSS schema holds it: epoch seconds (double, UTC, no leap seconds) and year-days (integer yyyyddd).
//
// The calendar is the proleptic Gregorian one, right for years 0001 to 9999, before 1970 too.
#ifndef TRIGLUB_PLATFORM_TIMECONV_H
#define TRIGLUB_PLATFORM_TIMECONV_H

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/export.h"

// What `epoch` answers for a number that is no date.
inline constexpr double NULL_EPOCH = -9999999999.999;

// Epoch seconds of the start (UTC) of the day yyyyddd: 1970001 gives 0. NULL_EPOCH when the year is not within
// 1 to 9999, or the day is 0 or beyond the year's length.
TRIGLUB_API double epoch(int yyyyddd);

// The time as text. Format letters: %Y (four digits) %m %d %H %M %S (two digits) %j (day of year, three digits)
// %G (%Y-%m-%d) %u (milliseconds, three digits) %%; any other character, and % before one not listed, stands for
// itself. With a %u anywhere the time shown is rounded to the nearest millisecond (halves up; the double nearest
// to a decimal half counts as that half) and the carry goes all the way up; without one it is cut to the second below.
// A time outside years 0001 to 9999, one whose carry leads there, or one not finite gives the empty text. The text
// belongs to the library and stays valid for the next seven calls on the same thread.
TRIGLUB_API const char* epoch2str(double seconds, const char* format);

// True (1) when the text denotes a time, which is then stored in *seconds (untouched otherwise; may be null).
// Accepted, with blanks at the ends: a number (epoch seconds); yyyyddd as seven digits, optionally with a time of
// day behind a colon or blanks; yyyy-mm-dd and yyyy/mm/dd, optionally with a time of day behind T or blanks; the
// older load date yy-mm-dd hh:mm:ss (70..99 is 19yy, else 20yy). A time of day is hh:mm, hh:mm:ss or hh:mm:ss.fff,
// optionally followed by Z. Fields beyond their range (month 13, 24:00, :60) are refused. Seven plain digits are
// taken as a year-day when they are one, as epoch seconds otherwise.
TRIGLUB_API int is_epoch_string(const char* text, double* seconds);

// The time that the text denotes (as is_epoch_string), or NULL_EPOCH.
TRIGLUB_API double str2epoch(const char* text);

namespace triglub {

// The UTC day that holds the instant, as yyyyddd; `null_date` for an instant outside years 0001 to 9999.
TRIGLUB_API std::int64_t yearday(double seconds, std::int64_t null_date = -1);

// Days since 1970-01-01 of a year-day, counting days beyond the year's end on; for comparing and ordering, never fails.
TRIGLUB_API std::int64_t day_number(std::int64_t yyyyddd);

// epoch2str as a string of its own.
TRIGLUB_API std::string format_epoch(double seconds, const char* format);
// The same in place of what *text held, and in its memory.
TRIGLUB_API void format_epoch(double seconds, std::string_view format, std::string* text);

}  // namespace triglub

#endif
