// Text to epoch seconds: each form is tried in turn on the trimmed text; the first one that fits it whole counts.
#include <algorithm>
#include <array>
#include <charconv>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "base/characters.h"
#include "base/number.h"
#include "platform/text.h"
#include "platform/timeconv.h"
#include "time/calendar.h"
#include "time/date_text.h"

namespace {

using triglub::is_blank;
using triglub::is_digit;
using triglub::calendar::kSecondsPerDay;

// Reads a text from its front: what fits is taken off, and the answer says whether it did.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool at_end() const { return rest_.empty(); }
  char peek() const { return rest_.empty() ? '\0' : rest_.front(); }

  bool take(char c) {
    if (rest_.empty() || rest_.front() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool take_blanks() {
    if (!is_blank(peek())) return false;
    while (is_blank(peek())) rest_.remove_prefix(1);
    return true;
  }

  // A number of exactly `width` digits.
  bool take_number(std::size_t width, int& number) { return count_digits(0) == width && take_digits(width, number); }

  // The first `width` digits of a number, which may go on.
  bool take_digits(std::size_t width, int& number) {
    if (count_digits(0) < width) return false;
    std::from_chars(rest_.data(), rest_.data() + width, number);
    rest_.remove_prefix(width);
    return true;
  }

  // The short English name of a month, in letters of either case.
  bool take_month(int& month) {
    constexpr std::string_view kNames = "janfebmaraprmayjunjulaugsepoctnovdec";
    constexpr std::size_t kLength = 3;
    if (rest_.size() < kLength) return false;
    std::array<char, kLength> name{};
    for (std::size_t i = 0; i < kLength; ++i) name[i] = triglub::to_lower(rest_[i]);
    const std::size_t at = kNames.find(std::string_view(name.data(), kLength));
    if (at == std::string_view::npos || at % kLength != 0) return false;
    month = static_cast<int>(at / kLength) + 1;
    rest_.remove_prefix(kLength);
    return true;
  }

  // Two digits up to 59, optionally with a point and at least one digit behind it.
  bool take_seconds(double& seconds) {
    std::size_t length = count_digits(0);
    if (length != 2 || rest_.front() > '5') return false;
    if (length < rest_.size() && rest_[length] == '.') {
      const std::size_t decimals = count_digits(length + 1);
      if (decimals == 0) return false;
      length += 1 + decimals;
    }
    std::from_chars(rest_.data(), rest_.data() + length, seconds, std::chars_format::fixed);
    rest_.remove_prefix(length);
    return true;
  }

 private:
  // The length of the run of digits that begins at `from`.
  std::size_t count_digits(std::size_t from) const {
    std::size_t to = from;
    while (to < rest_.size() && is_digit(rest_[to])) ++to;
    return to - from;
  }

  std::string_view rest_;
};

enum class Seconds { optional, required };

// hh:mm, hh:mm:ss or hh:mm:ss.fff, optionally with a Z, up to the end of the text.
std::optional<double> time_of_day(Scanner& text, Seconds need) {
  int hour = 0, minute = 0;
  double second = 0;
  if (!text.take_number(2, hour) || !text.take(':') || !text.take_number(2, minute)) return std::nullopt;
  if (text.take(':')) {
    if (!text.take_seconds(second)) return std::nullopt;
  } else if (need == Seconds::required) {
    return std::nullopt;
  }
  text.take('Z');
  if (!text.at_end() || hour > 23 || minute > 59) return std::nullopt;
  return hour * 3600 + minute * 60 + second;
}

// hhmm, hhmmss or hhmmss.fff, optionally with a Z, up to the end of the text.
std::optional<double> time_without_separators(Scanner text) {
  int hour = 0, minute = 0;
  double second = 0;
  if (!text.take_digits(2, hour) || !text.take_digits(2, minute)) return std::nullopt;
  if (is_digit(text.peek()) && !text.take_seconds(second)) return std::nullopt;
  text.take('Z');
  if (!text.at_end() || hour > 23 || minute > 59) return std::nullopt;
  return hour * 3600 + minute * 60 + second;
}

std::optional<double> time_with_separators(Scanner text) { return time_of_day(text, Seconds::optional); }

std::optional<double> time_either_way(Scanner text) {
  const std::optional<double> time = time_with_separators(text);
  return time ? time : time_without_separators(text);
}

// The start of a day, or the time of day behind it, which follows `mark` or blanks and is as `read_time` has it.
template <typename ReadTime>
std::optional<double> on_day(std::int64_t day, Scanner& text, char mark, ReadTime read_time) {
  const auto start = static_cast<double>(day * kSecondsPerDay);
  if (text.at_end()) return start;
  if (!text.take(mark) && !text.take_blanks()) return std::nullopt;
  const std::optional<double> time = read_time(text);
  if (!time) return std::nullopt;
  return start + *time;
}

// yyyyddd, optionally with a time of day.
std::optional<double> year_day_form(Scanner text) {
  int year_day = 0;
  if (!text.take_number(7, year_day)) return std::nullopt;
  if (!triglub::calendar::is_year_day(year_day / 1000, year_day % 1000)) return std::nullopt;
  return on_day(triglub::day_number(year_day), text, ':', time_with_separators);
}

// yyyy-mm-dd or yyyy/mm/dd, optionally with a time of day.
template <typename ReadTime>
std::optional<double> date_and_time(Scanner text, ReadTime read_time) {
  int year = 0, month = 0, day = 0;
  if (!text.take_number(4, year)) return std::nullopt;
  const char separator = text.peek() == '/' ? '/' : '-';
  if (!text.take(separator) || !text.take_number(2, month)) return std::nullopt;
  if (!text.take(separator) || !text.take_number(2, day)) return std::nullopt;
  if (!triglub::calendar::is_date(year, month, day)) return std::nullopt;
  return on_day(triglub::calendar::day_of(year, month, day), text, 'T', read_time);
}

std::optional<double> date_form(Scanner text) { return date_and_time(text, time_with_separators); }

// Two digits stand for the years from 1970 on.
constexpr int whole_year(int two_digits) { return two_digits + (two_digits < 70 ? 2000 : 1900); }

// yy-mm-dd hh:mm:ss, as older databases date their rows. With so little to know it by, nothing in it is optional.
std::optional<double> load_date_form(Scanner text) {
  int year = 0, month = 0, day = 0;
  if (!text.take_number(2, year) || !text.take('-')) return std::nullopt;
  if (!text.take_number(2, month) || !text.take('-')) return std::nullopt;
  if (!text.take_number(2, day) || !text.take_blanks()) return std::nullopt;
  year = whole_year(year);
  if (!triglub::calendar::is_date(year, month, day)) return std::nullopt;
  const std::optional<double> time = time_of_day(text, Seconds::required);
  if (!time) return std::nullopt;
  return static_cast<double>(triglub::calendar::day_of(year, month, day) * kSecondsPerDay) + *time;
}

std::optional<double> mixed_form(Scanner text) { return date_and_time(text, time_either_way); }

// yyyymmdd with a time of day; without one it would be a number.
std::optional<double> compact_form(Scanner text) {
  int year = 0, month = 0, day = 0;
  if (!text.take_digits(4, year) || !text.take_digits(2, month) || !text.take_number(2, day)) return std::nullopt;
  if (text.at_end() || !triglub::calendar::is_date(year, month, day)) return std::nullopt;
  return on_day(triglub::calendar::day_of(year, month, day), text, 'T', time_either_way);
}

// dd-MON-yy or dd-MON-yyyy, optionally with a time of day.
std::optional<double> month_name_form(Scanner text) {
  int year = 0, month = 0, day = 0;
  if (!text.take_number(2, day) || !text.take('-') || !text.take_month(month) || !text.take('-')) return std::nullopt;
  if (text.take_number(2, year)) {
    year = whole_year(year);
  } else if (!text.take_number(4, year)) {
    return std::nullopt;
  }
  if (!triglub::calendar::is_date(year, month, day)) return std::nullopt;
  return on_day(triglub::calendar::day_of(year, month, day), text, 'T', time_with_separators);
}

std::optional<double> number_form(std::string_view text) {
  double number = 0;
  return triglub::parse_real(text, &number) ? std::optional(number) : std::nullopt;
}

std::optional<double> time_in(std::string_view text) {
  for (const auto form : {year_day_form, date_form, load_date_form}) {
    if (const std::optional<double> time = form(Scanner(text))) return time;
  }
  return number_form(text);
}

}  // namespace

bool triglub::read_date_text(std::string_view text, double* seconds) {
  constexpr std::array kForms = {mixed_form, compact_form, load_date_form, month_name_form};
  return std::any_of(kForms.begin(), kForms.end(), [&](auto form) {
    const std::optional<double> time = form(Scanner(text));
    if (time) *seconds = *time;
    return time.has_value();
  });
}

int is_epoch_string(const char* text, double* seconds) {
  if (text == nullptr) return 0;
  const std::optional<double> time = time_in(triglub::trimmed(text));
  if (!time) return 0;
  if (seconds != nullptr) *seconds = *time;
  return 1;
}

double str2epoch(const char* text) {
  double seconds = NULL_EPOCH;
  is_epoch_string(text, &seconds);
  return seconds;
}
