// Numbers and times of texts, and texts of both: what is read is what the C library reads, what is written reads back.
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/half_place.h"
#include "base/number.h"
#include "base/six_digits.h"
#include "engine/expression/numbers.h"
#include "platform/timeconv.h"
#include "support/bytes.h"
#include "support/expect.h"
#include "time/date_text.h"

namespace {

using triglub_fuzz::expect;

bool is_decimal(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789+-.eE") == std::string::npos;
}

// Nothing (false) where the text as a whole is no number.
bool read_by_c(const std::string& text, double* value) {
  char* end = nullptr;
  *value = std::strtod(text.c_str(), &end);
  return is_decimal(text) && end == text.c_str() + text.size();
}

void compare_reals(const std::string& text) {
  double plain = 0;
  double read = 0;
  const bool is_number = read_by_c(text, &plain);
  const triglub::NumberReading reading = triglub::read_real(text, &read);
  expect((reading != triglub::NumberReading::none) == is_number, "the same texts are numbers", text);
  if (!is_number) return;
  expect((reading == triglub::NumberReading::too_large) == std::isinf(plain), "too large is too large", text);
  if (std::isinf(plain)) return;
  expect(read == plain && std::signbit(read) == std::signbit(plain), "the same number", text);
}

void compare_integers(const std::string& text) {
  std::int64_t integer = 0;
  if (!triglub::parse_integer(text, &integer)) return;
  expect(std::strtoll(text.c_str(), nullptr, 10) == integer, "the same integer", text);
}

void write_back(double number) {
  triglub::expression::NumberBuffer buffer;
  double again = 0;
  expect(triglub::parse_real(triglub::expression::text_of(number, &buffer), &again), "a number's text is one");
  expect(again == number, "a number reads back");
  std::string six;
  triglub::append_six_digits(number, &six);
  std::array<char, 64> plain{};
  std::snprintf(plain.data(), plain.size(), "%g", number);
  triglub_fuzz::expect_same(plain.data(), six, "six digits");
}

// Every number of digits is tried, from one on.
double by_every_precision(double number, double doubt) {
  constexpr int kMostDigits = 17;
  if (std::fabs(number) <= doubt) return 0;
  for (int digits = 1; digits <= kMostDigits; ++digits) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*e", digits - 1, number);
    const double rounded = std::strtod(text.data(), nullptr);
    if (std::fabs(rounded - number) <= doubt) return rounded;
  }
  return number;
}

void round_within(const std::string& format, double number) {
  const double half = triglub::LastPlace::of_format(format).half_at(number);
  expect(half >= 0 && std::isfinite(half), "half a place is a number", format);
  if (half == 0) return;
  const double rounded = triglub::fewest_digits(number, half);
  expect(rounded == by_every_precision(number, half), "the fewest digits", format + " of " + std::to_string(number));
}

void look_at_date(const std::string& text) {
  double seconds = 0;
  if (!triglub::read_date_text(text, &seconds)) return;
  expect(triglub::may_be_date_text(text), "a date looks like one", text);
  const std::string written = triglub::format_epoch(seconds, "%GT%H:%M:%S.%u");
  expect(!written.empty(), "a date can be written", text);
  expect(str2epoch(written.c_str()) == std::floor(seconds * 1000 + 0.5) / 1000, "a date reads back", written);
}

void look_at_time(double seconds, const std::string& format) {
  const std::string plain = triglub::format_epoch(seconds, "%GT%H:%M:%SZ");
  triglub::format_epoch(seconds, format.c_str());
  if (plain.empty()) return;
  double again = 0;
  expect(is_epoch_string(plain.c_str(), &again) == 1, "a time is one", plain);
  expect(again == std::floor(seconds), "a time reads back", plain);
  expect(epoch(static_cast<int>(triglub::yearday(seconds))) <= seconds, "a day begins before its times", plain);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  triglub_fuzz::Bytes bytes(data, size);
  const std::string text(bytes.take_until('\n'));
  const std::string format(bytes.take_until('\n'));
  compare_reals(text);
  compare_integers(text);
  look_at_date(text);
  double number = 0;
  if (!triglub::parse_real(text, &number)) return 0;
  write_back(number);
  round_within(format, number);
  look_at_time(number, format);
  return 0;
}
