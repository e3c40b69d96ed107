#include "reference/edition2/value_text.h"

#include <cmath>
#include <optional>
#include <stdexcept>

#include "reference/edition2/digits.h"
#include "reference/edition2/instants.h"
#include "reference/edition2/records.h"
#include "reference/edition2/xml_text.h"

namespace triglub_reference::edition2 {

namespace {

using Number = std::optional<double>;

Number number_at_first(const Node& node, const RecordList& records) {
  const Value value = value_at(node, *records.front(), records);
  if (is_null(value)) return std::nullopt;
  if (const auto* text = std::get_if<std::string>(&value)) return number_in(trimmed(*text));
  return number_of(value);
}

std::string integer_text(const Node& node, const RecordList& records) {
  const Value value = value_at(node, *records.front(), records);
  if (const auto* integer = std::get_if<long>(&value)) return std::to_string(*integer);
  const Number number = number_at_first(node, records);
  constexpr double limit = 9223372036854775808.0;
  if (!number || !(*number >= -limit && *number < limit)) return "";
  return std::to_string(static_cast<long>(*number));
}

std::string julian_text(const Number& yearday) {
  if (!yearday || std::abs(*yearday) > 1e9) return "";
  const auto day = day_of_yearday(static_cast<long>(*yearday));
  return day ? instant_text(static_cast<double>(*day) * kDay) : "";
}

// A number that this form worked on itself.
double without_noise(double number, double doubt) {
  return doubt == 0 ? std::round(number * 1e9) / 1e9 : fewest_digits(number, doubt);
}

std::string within(double number, double low, double high) {
  return number >= low && number <= high ? shortest(number) : "";
}

constexpr double kNoAngle = 1e6;

// Brought between `low` and a whole turn more, unless it is there; the end itself may be.
std::string turned(double angle, double doubt, double low, bool with_end) {
  if (std::abs(angle) >= kNoAngle) return "";
  const double end = low + 360.0;
  if (angle >= low && (angle < end || (with_end && angle == end))) return shortest(angle);
  const double turned = without_noise(angle - 360.0 * std::floor((angle - low) / 360.0), doubt);
  return shortest(turned == end ? low : turned);
}

std::string number_text(const std::string& type, double exact, double doubt) {
  const double number = fewest_digits(exact, doubt);
  if (type == "float") return shortest(number);
  if (type == "epoch") return instant_text(rounded(exact));
  if (type == "julian") return julian_text(exact);
  if (type == "deg_lat") return number == 90.0 ? "" : within(number, -90.0, 90.0);
  if (type == "dip") return within(without_noise(exact - 90.0, doubt), -90.0, 90.0);
  if (type == "deg_lon") return turned(number, doubt, -180.0, true);
  if (type == "deg_az") return turned(number, doubt, 0.0, false);
  if (type == "meters") return shortest(without_noise(exact * 1000.0, doubt * 1000.0));
  throw std::runtime_error("no type " + type);
}

}  // namespace

std::string value_text(const Line& line, const RecordList& records, const std::map<std::string, std::string>& site,
                       bool is_attribute) {
  if (line.type == "text") return line.value;
  if (line.type == "other_pf:site") return site.at(line.value);
  const Node node = parsed(line.value);
  if (line.type == "count") return std::to_string(distinct_values(node, records));
  if (line.type == "string" || line.type == "lookup") {
    return xml_text(trimmed(text_at(node, *records.front(), records).value_or("")), is_attribute);
  }
  if (line.type == "integer") return integer_text(node, records);
  const Number number = number_at_first(node, records);
  return number ? number_text(line.type, *number, doubt_at(node, *records.front(), records)) : "";
}

long distinct_values(const Node& node, const RecordList& records) {
  std::vector<Value> values;
  for (const Record* record : records) {
    const Value value = value_at(node, *record, records);
    bool is_known = is_null(value);
    for (const Value& other : values) is_known = is_known || (!is_less(value, other) && !is_less(other, value));
    if (!is_known) values.push_back(value);
  }
  return static_cast<long>(values.size());
}

}  // namespace triglub_reference::edition2
