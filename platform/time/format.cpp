// Times as text: the instant is taken apart once, then the format is copied with its letters replaced.
#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

#include "platform/timeconv.h"
#include "time/calendar.h"

namespace triglub {

namespace {

using calendar::SECONDS_PER_DAY;

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

// The nearest whole millisecond, halves up. The product with 1000 is rounded itself and may fall on the wrong side of
// a half; the fused operations, which round only once, say whether it did.
std::int64_t nearest_millisecond(double seconds) {
  double nearest = std::floor(seconds * 1000 + 0.5);
  if (std::fma(seconds, 1000.0, 0.5 - nearest) < 0) nearest -= 1;
  if (std::fma(seconds, 1000.0, -0.5 - nearest) >= 0) nearest += 1;
  return static_cast<std::int64_t>(nearest);
}

// Takes the instant apart; false when it is no instant of the calendar.
bool take_apart(double seconds, bool milliseconds, Shown& shown) {
  // Written so that a time that is not a number is refused too.
  if (!(seconds >= calendar::FIRST_SECOND && seconds < calendar::END_SECOND)) return false;
  auto second = static_cast<std::int64_t>(std::floor(seconds));
  if (milliseconds) {
    const std::int64_t total = nearest_millisecond(seconds);
    second = calendar::floor_div(total, 1000);
    shown.millisecond = static_cast<int>(total - second * 1000);
    if (second >= calendar::END_SECOND) return false;  // the last half millisecond of 9999 is shown as year 10000
  }
  const std::int64_t day = calendar::floor_div(second, SECONDS_PER_DAY);
  shown.date = calendar::date_of(day);
  shown.second_of_day = static_cast<int>(second - day * SECONDS_PER_DAY);
  return true;
}

template <int width>
void append_number(std::string& text, int number) {
  std::array<char, width> digits;
  for (int i = width; i-- > 0; number /= 10) digits[static_cast<std::size_t>(i)] = static_cast<char>('0' + number % 10);
  text.append(digits.data(), digits.size());
}

void append_date(std::string& text, const calendar::Date& date) {
  append_number<4>(text, date.year);
  text += '-';
  append_number<2>(text, date.month);
  text += '-';
  append_number<2>(text, date.day);
}

// Appends what a format letter stands for; false when it stands for nothing.
bool append_field(std::string& text, char letter, const Shown& shown) {
  switch (letter) {
    case 'Y':
      append_number<4>(text, shown.date.year);
      return true;
    case 'm':
      append_number<2>(text, shown.date.month);
      return true;
    case 'd':
      append_number<2>(text, shown.date.day);
      return true;
    case 'H':
      append_number<2>(text, shown.second_of_day / 3600);
      return true;
    case 'M':
      append_number<2>(text, shown.second_of_day / 60 % 60);
      return true;
    case 'S':
      append_number<2>(text, shown.second_of_day % 60);
      return true;
    case 'j':
      append_number<3>(text, shown.date.day_of_year);
      return true;
    case 'G':
      append_date(text, shown.date);
      return true;
    case 'u':
      append_number<3>(text, shown.millisecond);
      return true;
    case '%':
      text += '%';
      return true;
    default:
      return false;
  }
}

void append_time(std::string& text, double seconds, std::string_view format) {
  Shown shown;
  if (!take_apart(seconds, shows_milliseconds(format), shown)) return;
  for (std::size_t at = 0; at < format.size(); ++at) {
    const bool is_letter = format[at] == '%' && at + 1 < format.size();
    if (is_letter && append_field(text, format[at + 1], shown)) {
      ++at;
    } else {
      text += format[at];
    }
  }
}

}  // namespace

std::string format_epoch(double seconds, const char* format) {
  std::string text;
  append_time(text, seconds, format);
  return text;
}

}  // namespace triglub

const char* epoch2str(double seconds, const char* format) {
  // Several texts in turn, so that a call can use two or more of them, as a message with a begin and an end does.
  constexpr std::size_t TEXTS = 8;
  thread_local std::array<std::string, TEXTS> texts;
  thread_local std::size_t next = 0;
  std::string& text = texts[next];
  next = (next + 1) % TEXTS;
  text.clear();
  triglub::append_time(text, seconds, format);
  return text.c_str();
}
