// Times as text: the instant is taken apart once, then the format is copied with its letters replaced.
#include <array>
#include <cmath>
#include <string_view>

#include "platform/timeconv.h"
#include "time/calendar.h"

namespace triglub {

namespace {

using calendar::kSecondsPerDay;

// An instant as it is shown.
struct Shown {
  calendar::Date date;
  int second_of_day = 0;
  int millisecond = 0;
};

bool shows_milliseconds(std::string_view format) {
  for (std::size_t at = format.find('%'); at != std::string_view::npos; at = format.find('%', at + 2)) {
    if (at + 1 < format.size() && format[at + 1] == 'u') return true;
  }
  return false;
}

// The nearest whole millisecond, halves up. The half is the double that its decimal text reads as, so a time written
// as a half (….1865) goes up, whichever side of the half its double lies on.
std::int64_t nearest_millisecond(double seconds) {
  const double below = std::floor(seconds * 1000);
  const bool up = seconds >= (below + 0.5) / 1000;
  return static_cast<std::int64_t>(below) + (up ? 1 : 0);
}

// Takes the instant apart; false when it is no instant of the calendar.
bool take_apart(double seconds, bool milliseconds, Shown& shown) {
  // Written so that a time that is not a number is refused too.
  if (!(seconds >= calendar::kFirstSecond && seconds < calendar::kEndSecond)) return false;
  auto second = static_cast<std::int64_t>(std::floor(seconds));
  if (milliseconds) {
    const std::int64_t total = nearest_millisecond(seconds);
    second = calendar::floor_div(total, 1000);
    shown.millisecond = static_cast<int>(total - second * 1000);
    if (second >= calendar::kEndSecond) return false;  // the last half millisecond of 9999 is shown as year 10000
  }
  const std::int64_t day = calendar::floor_div(second, kSecondsPerDay);
  shown.date = calendar::date_of(day);
  shown.second_of_day = static_cast<int>(second - day * kSecondsPerDay);
  return true;
}

// Each of these writes at `to` and returns the place behind what it wrote.

template <int kWidth>
char* put_number(char* to, int number) {
  for (int i = kWidth; i-- > 0; number /= 10) to[i] = static_cast<char>('0' + number % 10);
  return to + kWidth;
}

char* put_date(char* to, const calendar::Date& date) {
  to = put_number<4>(to, date.year);
  *to++ = '-';
  to = put_number<2>(to, date.month);
  *to++ = '-';
  return put_number<2>(to, date.day);
}

// What a format letter stands for: at most kLongestField bytes; none for a letter that stands for nothing.
constexpr std::size_t kLongestField = 10;

char* put_field(char* to, char letter, const Shown& shown) {
  switch (letter) {
    case 'Y':
      return put_number<4>(to, shown.date.year);
    case 'm':
      return put_number<2>(to, shown.date.month);
    case 'd':
      return put_number<2>(to, shown.date.day);
    case 'H':
      return put_number<2>(to, shown.second_of_day / 3600);
    case 'M':
      return put_number<2>(to, shown.second_of_day / 60 % 60);
    case 'S':
      return put_number<2>(to, shown.second_of_day % 60);
    case 'j':
      return put_number<3>(to, shown.date.day_of_year);
    case 'G':
      return put_date(to, shown.date);
    case 'u':
      return put_number<3>(to, shown.millisecond);
    case '%':
      *to = '%';
      return to + 1;
    default:
      return to;
  }
}

// Makes `text` the time in that format, in the memory that it has as far as that goes.
void write_time(std::string& text, double seconds, std::string_view format) {
  text.clear();
  Shown shown;
  if (!take_apart(seconds, shows_milliseconds(format), shown)) return;
  text.resize(format.size() / 2 * kLongestField + 1);  // a field takes two characters of the format
  char* to = text.data();
  for (std::size_t at = 0; at < format.size(); ++at) {
    char* behind = to;
    if (format[at] == '%' && at + 1 < format.size()) behind = put_field(to, format[at + 1], shown);
    if (behind != to) {
      ++at;
      to = behind;
    } else {
      *to++ = format[at];
    }
  }
  text.resize(static_cast<std::size_t>(to - text.data()));
}

}  // namespace

std::string format_epoch(double seconds, const char* format) {
  std::string text;
  write_time(text, seconds, format);
  return text;
}

void format_epoch(double seconds, std::string_view format, std::string* text) { write_time(*text, seconds, format); }

}  // namespace triglub

const char* epoch2str(double seconds, const char* format) {
  // Several texts in turn, so that a call can use two or more of them, as a message with a begin and an end does.
  constexpr std::size_t kTexts = 8;
  thread_local std::array<std::string, kTexts> texts;
  thread_local std::size_t next = 0;
  std::string& text = texts[next];
  next = (next + 1) % kTexts;
  triglub::write_time(text, seconds, format);
  return text.c_str();
}
