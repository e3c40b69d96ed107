// Dates as people and programs write them into the tables of others.
#ifndef TRIGLUB_TIME_DATE_TEXT_H
#define TRIGLUB_TIME_DATE_TEXT_H

#include <string_view>

namespace triglub {

// Reads a date, in UTC, with the time of day or at its start:
//
//     2014-03-03T11:07:06.25Z  2014-03-03 11:07  2014-03-03T110706  20140303T110706  2014-03-03  2014/03/03 11:07:06
//     14-03-03 11:07:06        (two digits are the years 1970 to 2069; the time of day must be there, to the second)
//     03-MAR-14  03-Mar-2014 11:07:06
//
// A number is none: 20140303 by itself counts seconds, as it does wherever a time stands. False, with *seconds as it
// was, when the text is no date, has one that the calendar has not, or anything around it.
bool read_date_text(std::string_view text, double* seconds);

// A quick look: true for every text that read_date_text takes, false for nearly every number.
constexpr bool may_be_date_text(std::string_view text) {
  const auto has = [text](std::size_t at, std::string_view marks) {
    return at < text.size() && marks.find(text[at]) != std::string_view::npos;
  };
  return has(2, "-") || has(4, "-/") || has(8, "T \t");
}

}  // namespace triglub

#endif
