#include "reference/edition2/digits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace triglub_reference::edition2 {

namespace {

std::string printed(const char* form, int precision, double number) {
  std::array<char, 500> text;
  std::snprintf(text.data(), text.size(), form, precision, number);
  return text.data();
}

double read(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

double half_by_decimals(int decimals, double number) {
  while (read(printed("%.*f", decimals, number)) != number) ++decimals;
  return read("5e-" + std::to_string(decimals + 1));
}

double half_by_digits(int digits, double number) {
  while (read(printed("%.*e", digits - 1, number)) != number) ++digits;
  const std::string text = printed("%.*e", digits - 1, number);
  const long exponent = std::strtol(text.substr(text.find('e') + 1).c_str(), nullptr, 10);
  return read("5e" + std::to_string(exponent - digits));
}

double finite(double doubt) { return std::isfinite(doubt) ? doubt : 0; }

class Doubts {
 public:
  Doubts(const Record& record, const RecordList& of_element) : record_(record), of_element_(of_element) {}

  double of(const Node& node) const {
    const std::string& what = node.what;
    if (node.kind != Kind::real || is_null(value(node))) return 0;
    if (what == "field") return half_place(*node.field, number(node));
    if (what == "negative") return of(node.parts[0]);
    if (what == "+" || what == "-") return smaller(of(node.parts[0]), of(node.parts[1]));
    if (what == "*") return of_product(node.parts[0], node.parts[1]);
    if (what == "/") return of_quotient(node.parts[0], node.parts[1]);
    if (what == "?") return of(node.parts[holds(node.parts[0]) ? 1 : 2]);
    if (what == "assume") return of(node.parts[is_null(value(node.parts[0])) ? 1 : 0]);
    if (what == "agreed") return number(node) == number(node.parts[0]) ? of_first(node) : 0;
    if (what == "first") return at(of_element_.front(), node.parts[0]);
    if (what == "last") return at(of_element_.back(), node.parts[0]);
    if (what == "earliest" || what == "latest") return of_extreme(node);
    return 0;
  }

 private:
  Value value(const Node& node) const { return value_at(node, record_, of_element_); }
  double number(const Node& node) const { return number_of(value(node)); }
  bool holds(const Node& node) const { return !is_null(value(node)) && number(node) != 0; }
  double at(const Record* record, const Node& node) const { return Doubts(*record, of_element_).of(node); }

  // 1 is a factor that is not there.
  double of_product(const Node& a, const Node& b) const {
    if (number(b) == 1) return of(a);
    if (number(a) == 1) return of(b);
    return finite(smaller(std::abs(number(b)) * of(a), std::abs(number(a)) * of(b)));
  }

  double of_quotient(const Node& a, const Node& b) const {
    if (number(b) == 1) return of(a);
    return finite(smaller(of(a) / std::abs(number(b)), std::abs(number(a)) * of(b) / (number(b) * number(b))));
  }

  // Where the two of agreed are one and the same number the second is taken, if it is there.
  double of_first(const Node& agreed) const {
    const Value second = value(agreed.parts[1]);
    return is_null(second) || number_of(second) != number(agreed.parts[0]) ? of(agreed.parts[0]) : 0;
  }

  // Of the first record that has the value.
  double of_extreme(const Node& node) const {
    for (const Record* record : of_element_) {
      const Value candidate = value_at(node.parts[0], *record, of_element_);
      if (!is_null(candidate) && number_of(candidate) == number(node)) return at(record, node.parts[0]);
    }
    return 0;
  }

  const Record& record_;
  const RecordList& of_element_;
};

}  // namespace

// The null of a field is written as its numbers are, but for those of significant digits.
double half_place(const Field& field, double number) {
  const bool is_time = field.name == "time" || field.name == "endtime" || field.name == "lddate";
  if (field.kind != Kind::real || is_time) return 0;
  constexpr int significant = 8;
  const std::size_t point = field.null_text.find('.');
  if (point != std::string::npos) return half_by_decimals(static_cast<int>(field.null_text.size() - point) - 1, number);
  return number == 0 ? 0 : half_by_digits(significant, number);
}

double doubt_at(const Node& node, const Record& record, const RecordList& of_element) {
  return Doubts(record, of_element).of(node);
}

double smaller(double a, double b) {
  if (a == 0) return b;
  return b == 0 ? a : std::min(a, b);
}

double fewest_digits(double number, double doubt) {
  if (doubt == 0) return number;
  if (std::abs(number) <= doubt) return 0;
  for (int digits = 1; digits <= 17; ++digits) {
    const double rounded = read(printed("%.*e", digits - 1, number));
    if (std::abs(rounded - number) <= doubt) return rounded;
  }
  return number;
}

}  // namespace triglub_reference::edition2
