// The dates of XML schemas, in years of four digits: no leap second, 24:00:00 is the next midnight.
#include "checks/instant.h"

#include <chrono>

#include "base/characters.h"

namespace triglub::checks {

namespace {

constexpr std::int64_t kMicroseconds = 1'000'000;
constexpr int kFractionDigits = 6;

// Takes a text from the front; once something does not fit, nothing does.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool fits() const { return fits_; }
  bool is_at_end() const { return rest_.empty(); }
  bool is_at(char c) const { return !rest_.empty() && rest_.front() == c; }

  void take(char c) {
    fits_ = fits_ && is_at(c);
    if (fits_) rest_.remove_prefix(1);
  }
  // A number of exactly so many digits, not above `most`.
  int number(int digits, int most) {
    int value = 0;
    for (int i = 0; i < digits; ++i) value = value * 10 + digit();
    fits_ = fits_ && value <= most;
    return value;
  }
  // Digits of a fraction, at least one, as microseconds.
  std::int64_t fraction() {
    std::int64_t value = digit();
    int digits = 1;
    for (; fits_ && !rest_.empty() && is_digit(rest_.front()); ++digits) {
      const int next = digit();
      if (digits < kFractionDigits) value = value * 10 + next;
    }
    for (; digits < kFractionDigits; ++digits) value *= 10;
    return value;
  }

 private:
  int digit() {
    fits_ = fits_ && !rest_.empty() && is_digit(rest_.front());
    if (!fits_) return 0;
    const int value = rest_.front() - '0';
    rest_.remove_prefix(1);
    return value;
  }

  std::string_view rest_;
  bool fits_ = true;
};

// Days since 1970-01-01; none for a day that there is not.
std::optional<std::int64_t> day_number(int year, int month, int day) {
  const std::chrono::year_month_day date(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  if (!date.ok()) return std::nullopt;
  return std::chrono::sys_days(date).time_since_epoch().count();
}

std::optional<std::int64_t> take_date(Scanner& scanner, int* year) {
  *year = scanner.number(4, 9999);
  scanner.take('-');
  const int month = scanner.number(2, 12);
  scanner.take('-');
  const int day = scanner.number(2, 31);
  if (!scanner.fits()) return std::nullopt;
  return day_number(*year, month, day);
}

std::int64_t take_minutes(Scanner& scanner, int most_hours) {
  const int hours = scanner.number(2, most_hours);
  scanner.take(':');
  return hours * 60 + scanner.number(2, 59);
}

// Since midnight.
std::int64_t take_clock(Scanner& scanner) {
  const std::int64_t minutes = take_minutes(scanner, 24);
  scanner.take(':');
  std::int64_t clock = (minutes * 60 + scanner.number(2, 59)) * kMicroseconds;
  if (!scanner.is_at('.')) return clock;
  scanner.take('.');
  return clock + scanner.fraction();
}

// How far the zone's clocks are ahead of UTC.
std::int64_t take_zone(Scanner& scanner) {
  if (scanner.is_at('Z')) {
    scanner.take('Z');
    return 0;
  }
  const bool is_behind = scanner.is_at('-');
  scanner.take(is_behind ? '-' : '+');
  const std::int64_t ahead = take_minutes(scanner, 14) * 60 * kMicroseconds;
  return is_behind ? -ahead : ahead;
}

constexpr std::int64_t kDay = 86'400 * kMicroseconds;

}  // namespace

std::optional<Instant> parse_instant(std::string_view text) {
  Scanner scanner(text);
  Instant instant;
  const auto day = take_date(scanner, &instant.year);
  scanner.take('T');
  const std::int64_t clock = take_clock(scanner);
  instant.has_zone = !scanner.is_at_end();
  const std::int64_t ahead = instant.has_zone ? take_zone(scanner) : 0;
  if (!day || !scanner.fits() || !scanner.is_at_end() || clock > kDay) return std::nullopt;
  instant.microseconds = *day * kDay + clock - ahead;
  return instant;
}

bool overlap(const Span& a, const Span& b) {
  const bool a_is_over = a.end && b.begin && *a.end <= *b.begin;
  const bool b_is_over = b.end && a.begin && *b.end <= *a.begin;
  return !a_is_over && !b_is_over;
}

bool begins_before(const Span& inner, const Span& outer) {
  return inner.begin && outer.begin && *inner.begin < *outer.begin;
}

bool ends_after(const Span& inner, const Span& outer) { return outer.end && (!inner.end || *inner.end > *outer.end); }

}  // namespace triglub::checks
