// A number is rounded within its doubt before anything is asked of it, so that 62.3 - 90 is -27.7 in the document as it
// is on paper, and 89.99999 of four decimals is the pole.
#include "document/typed_text.h"

#include <cmath>

#include "epochs/instant.h"
#include "platform/timeconv.h"

namespace triglub {

namespace {

constexpr double kMostDegrees = 1e6;  // beyond it no angle is meant

// What was worked out here adds noise of its own; a number without doubt is rounded to a length that no instrument
// reaches.
double without_noise(double number, double doubt) {
  return doubt > 0 ? rounded_within(number, doubt) : std::round(number * 1e9) / 1e9;
}

ValueRemark append_within(double number, double least, double most, std::string* text) {
  if (!(number >= least && number <= most)) return ValueRemark::out_of_range;
  append_shortest(number, text);
  return ValueRemark::none;
}

// The angle by whole turns from `least` on.
double turned(double angle, double doubt, double least) {
  const double turned = without_noise(angle - 360 * std::floor((angle - least) / 360), doubt);
  return turned >= least + 360 ? least : turned;
}

// The schema takes the one pole but not the other.
ValueRemark append_latitude(double angle, std::string* text) {
  return angle == 90 ? ValueRemark::out_of_range : append_within(angle, -90, 90, text);
}

ValueRemark append_longitude(double angle, double doubt, std::string* text) {
  if (!(std::fabs(angle) < kMostDegrees)) return ValueRemark::out_of_range;
  const bool is_wrapped = angle < -180 || angle > 180;
  append_shortest(is_wrapped ? turned(angle, doubt, -180) : angle, text);
  return is_wrapped ? ValueRemark::wrapped : ValueRemark::none;
}

ValueRemark append_azimuth(double angle, double doubt, std::string* text) {
  if (!(std::fabs(angle) < kMostDegrees)) return ValueRemark::out_of_range;
  append_shortest(angle < 0 || angle >= 360 ? turned(angle, doubt, 0) : angle, text);
  return ValueRemark::none;
}

ValueRemark append_metres(double kilometres, double doubt, std::string* text) {
  const double metres = without_noise(kilometres * 1000, doubt * 1000);
  if (!std::isfinite(metres)) return ValueRemark::out_of_range;
  append_shortest(metres, text);
  return ValueRemark::none;
}

}  // namespace

ValueRemark append_integer(double number, std::string* text) {
  if (!(number >= -0x1p63 && number < 0x1p63)) return ValueRemark::out_of_range;
  append_decimal(static_cast<std::int64_t>(number), text);
  return ValueRemark::none;
}

ValueRemark append_instant(double seconds, std::string* text) {
  const double milliseconds = std::floor(seconds * 1000 + 0.5);
  if (!(milliseconds >= static_cast<double>(kYear1) && milliseconds < static_cast<double>(kYear10000))) {
    return ValueRemark::no_date;
  }
  const double whole = std::floor(milliseconds / 1000);
  text->append(format_epoch(whole, "%GT%H:%M:%S"));
  const int rest = static_cast<int>(milliseconds - whole * 1000);
  if (rest != 0) text->append(1, '.').append(std::to_string(1000 + rest), 1, 3);
  *text += 'Z';
  return ValueRemark::none;
}

ValueRemark append_day(double yyyyddd, std::string* text) {
  if (!(yyyyddd >= 0 && yyyyddd < 1e7)) return ValueRemark::no_date;
  const std::optional<Instant> start = start_of_day(static_cast<std::int64_t>(yyyyddd));
  return start ? append_instant(seconds_of(*start, 0), text) : ValueRemark::no_date;
}

ValueRemark append_number_as(LineType type, double number, double doubt, std::string* text) {
  switch (type) {
    case LineType::integer:
      return append_integer(number, text);
    case LineType::epoch:
      return append_instant(number, text);
    case LineType::julian:
      return append_day(number, text);
    case LineType::latitude:
      return append_latitude(rounded_within(number, doubt), text);
    case LineType::longitude:
      return append_longitude(rounded_within(number, doubt), doubt, text);
    case LineType::azimuth:
      return append_azimuth(rounded_within(number, doubt), doubt, text);
    case LineType::dip:
      return append_within(without_noise(number - 90, doubt), -90, 90, text);
    case LineType::meters:
      return append_metres(number, doubt, text);
    default:  // real
      append_rounded(number, doubt, text);
      return ValueRemark::none;
  }
}

std::optional<double> number_of(const RecordValue& value, ValueKind kind) {
  switch (kind) {
    case ValueKind::integer:
      return static_cast<double>(value.integer);
    case ValueKind::real:
      return value.real;
    case ValueKind::text:
      return number_in(value.text);
  }
  return std::nullopt;
}

}  // namespace triglub
