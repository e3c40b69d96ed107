#include "reference/edition2/expression.h"

#include <algorithm>
#include <cmath>
#include <regex>
#include <stdexcept>

#include "reference/edition2/digits.h"
#include "reference/edition2/records.h"

namespace triglub_reference::edition2 {

namespace {

// What ends an evaluation.
struct Failure {};

Value field_value(const Field& field, const Record& record) {
  const auto text = text_in(record[field.table], field);
  if (!text) return {};
  if (field.kind == Kind::text) return *text;
  const double number = number_in(*text).value();
  if (field.kind == Kind::integer) return static_cast<long>(number);
  return number;
}

Value whole_computed(const std::string& what, long left, long right) {
  if (what == "+") return left + right;
  if (what == "-") return left - right;
  if (what == "*") return left * right;
  if (right == 0) throw Failure();
  return left % right;
}

Value computed(const Node& node, const Value& left, const Value& right) {
  if (node.kind == Kind::integer) return whole_computed(node.what, std::get<long>(left), std::get<long>(right));
  const double a = number_of(left);
  const double b = number_of(right);
  if (node.what == "+") return a + b;
  if (node.what == "-") return a - b;
  if (node.what == "*") return a * b;
  if (b == 0) throw Failure();
  return node.what == "/" ? a / b : std::fmod(a, b);
}

bool compares(const std::string& what, const Value& left, const Value& right) {
  if (what == "<") return is_less(left, right);
  if (what == ">") return is_less(right, left);
  if (what == "<=") return !is_less(right, left);
  if (what == ">=") return !is_less(left, right);
  const bool is_same = !is_less(left, right) && !is_less(right, left);
  return is_same == (what == "==");
}

class Evaluation {
 public:
  Evaluation(const Record& record, const RecordList& of_element) : record_(record), of_element_(of_element) {}

  Value of(const Node& node) const {
    const std::string& what = node.what;
    if (what == "literal") return node.literal;
    if (what == "field") return field_value(*node.field, record_);
    if (what == "&&") return static_cast<long>(holds(node.parts[0]) && holds(node.parts[1]));
    if (what == "||") return static_cast<long>(holds(node.parts[0]) || holds(node.parts[1]));
    if (what == "!") return static_cast<long>(!holds(node.parts[0]));
    if (what == "?") return as(node.kind, of(node.parts[holds(node.parts[0]) ? 1 : 2]));
    if (what == "is_null") return static_cast<long>(is_null(of(node.parts[0])));
    if (what == "assume") return assumed(node);
    if (what == "agreed") return agreed(node);
    if (what == "concat") return concatenated(node);
    if (what == "xml") return of(node.parts[0]);
    if (what == "=~" || what == "!~") return matched(node);
    if (what == "negative") return negative(of(node.parts[0]));
    if (node.parts.size() == 2) return of_two(node);
    return over_records(node);
  }

  std::optional<std::string> text(const Node& node) const {
    if (node.what == "field") return text_in(record_[node.field->table], *node.field);
    const Value value = of(node);
    if (is_null(value)) return std::nullopt;
    if (const auto* integer = std::get_if<long>(&value)) return std::to_string(*integer);
    if (const auto* real = std::get_if<double>(&value)) {
      return shortest(fewest_digits(*real, doubt_at(node, record_, of_element_)));
    }
    return std::get<std::string>(value);
  }

 private:
  bool holds(const Node& node) const {
    const Value value = of(node);
    return !is_null(value) && number_of(value) != 0;
  }

  static Value as(Kind kind, const Value& value) {
    if (kind == Kind::real && std::holds_alternative<long>(value)) return number_of(value);
    return value;
  }

  Value assumed(const Node& node) const {
    const Value value = of(node.parts[0]);
    return as(node.kind, is_null(value) ? of(node.parts[1]) : value);
  }

  // The second where it may be what the first stands for.
  Value agreed(const Node& node) const {
    const Value first = of(node.parts[0]);
    if (is_null(first)) return {};
    const Value second = of(node.parts[1]);
    if (is_null(second)) return as(node.kind, first);
    const double doubt = doubt_at(node.parts[0], record_, of_element_);
    return as(node.kind, std::abs(number_of(first) - number_of(second)) <= doubt ? second : first);
  }

  Value concatenated(const Node& node) const {
    std::string all;
    for (const Node& part : node.parts) all += text(part).value_or("");
    return all;
  }

  Value matched(const Node& node) const {
    const auto left = text(node.parts[0]);
    if (!left) return {};
    return static_cast<long>(std::regex_match(trimmed(*left), std::regex(node.pattern)) == (node.what == "=~"));
  }

  static Value negative(const Value& value) {
    if (const auto* integer = std::get_if<long>(&value)) return -*integer;
    if (const auto* real = std::get_if<double>(&value)) return -*real;
    return {};
  }

  Value of_two(const Node& node) const {
    const Value left = of(node.parts[0]);
    const Value right = of(node.parts[1]);
    if (is_null(left) || is_null(right)) return {};
    const bool is_comparison = std::string("<>=!").find(node.what[0]) != std::string::npos;
    return is_comparison ? Value(static_cast<long>(compares(node.what, left, right))) : computed(node, left, right);
  }

  // The values at the records of the element, nulls among them.
  std::vector<Value> values(const Node& node) const {
    std::vector<Value> all;
    for (const Record* record : of_element_) all.push_back(Evaluation(*record, of_element_).of(node));
    return all;
  }

  Value over_records(const Node& node) const {
    if (node.what == "first") return Evaluation(*of_element_.front(), of_element_).of(node.parts[0]);
    if (node.what == "last") return Evaluation(*of_element_.back(), of_element_).of(node.parts[0]);
    std::vector<Value> all = values(node.parts[0]);
    const auto nulls = std::erase_if(all, is_null);
    if (node.what == "count") return distinct(all);
    if (all.empty()) return {};
    if (node.what == "earliest") return *std::min_element(all.begin(), all.end(), is_less);
    if (node.what != "latest") throw std::runtime_error("no function " + node.what);
    return nulls > 0 ? Value() : *std::max_element(all.begin(), all.end(), is_less);
  }

  static Value distinct(std::vector<Value> all) {
    long count = 0;
    while (!all.empty()) {
      const Value value = all.back();
      std::erase_if(all, [&](const Value& other) { return !is_less(value, other) && !is_less(other, value); });
      ++count;
    }
    return count;
  }

  const Record& record_;
  const RecordList& of_element_;
};

}  // namespace

double number_of(const Value& value) {
  if (const auto* integer = std::get_if<long>(&value)) return static_cast<double>(*integer);
  return std::get<double>(value);
}

bool is_less(const Value& a, const Value& b) {
  if (std::holds_alternative<std::string>(a)) return std::get<std::string>(a) < std::get<std::string>(b);
  return number_of(a) < number_of(b);
}

Value value_at(const Node& node, const Record& record, const RecordList& of_element) {
  try {
    return Evaluation(record, of_element).of(node);
  } catch (const Failure&) {
    return {};
  }
}

std::optional<std::string> text_at(const Node& node, const Record& record, const RecordList& of_element) {
  try {
    return Evaluation(record, of_element).text(node);
  } catch (const Failure&) {
    return std::nullopt;
  }
}

}  // namespace triglub_reference::edition2
