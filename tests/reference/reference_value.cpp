#include "reference/reference_value.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace triglub_reference {

namespace {

constexpr const char* kOpenEnd = "2599-12-31T23:59:59.999";
constexpr const char* kBadDate = "0000-00-00T00:00:00ERR";

// What an expression comes to. `text` is what it is as a text, `number` what it is as a number, if it is one.
struct Value {
  bool compiles = true;
  bool evaluates = true;
  std::string text;
  std::optional<double> number;
};

Value no_expression() { return {.compiles = false, .evaluates = false, .text = "", .number = {}}; }

std::optional<double> as_number(const std::string& text) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0') return std::nullopt;
  return number;
}

std::string shortest(double number) {
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

std::string trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  if (begin == std::string::npos) return "";
  return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

Value computed(double left, char operation, double right) {
  double result = 0;
  switch (operation) {
    case '*':
      result = left * right;
      break;
    case '+':
      result = left + right;
      break;
    case '-':
      result = left - right;
      break;
    case '<':
      result = left < right ? 1 : 0;
      break;
    case '>':
      result = left > right ? 1 : 0;
      break;
    default:
      if (right == 0) return {.compiles = true, .evaluates = false, .text = "", .number = {}};
      result = left / right;
  }
  return {.compiles = true, .evaluates = true, .text = shortest(result), .number = result};
}

Value value_of(const std::string& expression, const Record& record) {
  if (expression.front() == '"') {
    const std::string literal = expression.substr(1, expression.size() - 2);
    return {.compiles = true, .evaluates = true, .text = literal, .number = as_number(literal)};
  }
  const std::size_t blank = expression.find(' ');
  const auto field = find_field(expression.substr(0, blank));
  if (!field) return no_expression();
  const std::string text = text_of(record, *field);
  if (blank == std::string::npos) {
    return {.compiles = true, .evaluates = true, .text = text, .number = as_number(text)};
  }
  const std::size_t second = expression.find(' ', blank + 1);
  const std::string operation = expression.substr(blank + 1, second - blank - 1);
  const std::string right = expression.substr(second + 1);
  if (operation == "=~") {
    const bool matched = matches(text, right.substr(1, right.size() - 2));
    return {.compiles = true, .evaluates = true, .text = matched ? "1" : "0", .number = matched ? 1 : 0};
  }
  if (field->is_text) return no_expression();
  return computed(*as_number(text), operation[0], *as_number(right));
}

std::string streamed(double number) {
  std::ostringstream out;
  out << number;
  return out.str();
}

std::string number_text(const std::string& expression, const Record& record, bool whole,
                        std::vector<std::string>& log) {
  const Value value = value_of(expression, record);
  if (!value.number) {
    log.push_back("warning: dbex_evalstr failure [" + expression + "]");
    return "0";
  }
  return whole ? std::to_string(static_cast<long>(*value.number)) : streamed(*value.number);
}

std::string text_value(const std::string& expression, const Record& record) {
  const Value value = value_of(expression, record);
  if (!value.evaluates) throw std::runtime_error("failure to eval_str_expr %s" + expression);
  return trimmed(value.text);
}

bool is_leap(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

std::string padded(long number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

// YYYY-MM-DD of a day since 1970-01-01.
std::string date_text(long day) {
  int year = 1970;
  for (; day >= (is_leap(year) ? 366 : 365); ++year) day -= is_leap(year) ? 366 : 365;
  const int lengths[] = {31, is_leap(year) ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  int month = 0;
  for (; day >= lengths[month]; ++month) day -= lengths[month];
  return padded(year, 4) + "-" + padded(month + 1, 2) + "-" + padded(day + 1, 2);
}

std::string epoch_value(const std::string& expression, const Record& record, std::vector<std::string>& log) {
  const Value value = value_of(expression, record);
  if (!value.compiles) {
    log.push_back("warning: failure compiling expr " + expression);
    return "";
  }
  if (!value.number) {
    log.push_back("warning: failure to evaluate " + expression);
    return kBadDate;
  }
  if (*value.number < 0.0) return kOpenEnd;
  const long milliseconds = std::lround(*value.number * 1000.0);
  const long seconds = milliseconds / 1000;
  return date_text(seconds / 86400) + "T" + padded(seconds / 3600 % 24, 2) + ":" + padded(seconds / 60 % 60, 2) + ":" +
         padded(seconds % 60, 2) + "." + padded(milliseconds % 1000, 3);
}

std::string yearday_value(const std::string& expression, const Record& record, std::vector<std::string>& log) {
  const Value value = value_of(expression, record);
  if (!value.number) {
    log.push_back((value.compiles ? "warning: failure to evaluate " : "warning: failure with eval_jday_expr ") +
                  expression);
    return kBadDate;
  }
  const long yearday = static_cast<long>(*value.number);
  const int year = static_cast<int>(yearday / 1000);
  const long day = yearday % 1000;
  if (year < 1970 || year > 9999 || day < 1 || day > (is_leap(year) ? 366 : 365)) return kOpenEnd;
  long days = day - 1;
  for (int before = 1970; before < year; ++before) days += is_leap(before) ? 366 : 365;
  if (days == 0) return kOpenEnd;  // the epoch itself counts as no date
  return date_text(days) + "T00:00:00";
}

std::string site_value(const std::string& key, const std::map<std::string, std::string>& site,
                       std::vector<std::string>& log) {
  if (site.contains(key)) return site.at(key);
  log.push_back("warning: pfget_string: [" + key + "] not found");
  return "";
}

double brought_into_range(double value, double low, double high, double step) {
  while (value > high) value -= step;
  while (value < low) value += step;
  return value;
}

std::string angle_value(const std::string& type, const std::string& name, const Record& record) {
  const ViewField field = required_field(name);
  const std::string text = text_of(record, field);
  if (text == field.null_text) return "<!--null-->0.0";
  const double value = std::stod(text);
  if (type == "dip") return std::to_string(std::abs(value - 90.0) == 180.0 ? 0.0 : value - 90.0);
  if (type == "deg_lon") return std::to_string(brought_into_range(value, -180.0, 180.0, 360.0));
  if (type == "deg_az") {
    const double azimuth = brought_into_range(value, 0.0, 360.0, 360.0);
    return std::to_string(azimuth == 360.0 ? 0.0 : azimuth);
  }
  return std::to_string(brought_into_range(value, -90.0, 90.0, 180.0));
}

}  // namespace

ViewField required_field(const std::string& name) {
  const auto field = find_field(name);
  if (!field) throw std::runtime_error("db field [" + name + "] not found");
  return *field;
}

std::string evaluate(const Line& line, const Record& record, const std::map<std::string, std::string>& site,
                     std::vector<std::string>& log) {
  const std::string& type = line.type;
  const std::string& value = line.value;
  if (type == "GROUP") throw std::logic_error("Cannot evaluate groups in ElementDescription::evaluate. (yet?)");
  if (value.empty() || type == "text" || type == "count" || type == "STAGE" || type.starts_with("CATEGORIZED_")) {
    return value;
  }
  if (type == "record_count") return "";
  if (type == "meters") return std::to_string(std::stod(text_of(record, required_field(value))) * 1000.0);
  if (type == "float" || type == "integer") return number_text(value, record, type == "integer", log);
  if (type == "force_lookup") throw std::logic_error("basic_string::_M_construct null not valid");
  if (type == "lookup" || type == "string") return text_value(value, record);
  if (type == "epoch") return epoch_value(value, record, log);
  if (type == "julian") return yearday_value(value, record, log);
  if (type == "other_pf:site") return site_value(value, site, log);
  return angle_value(type, value, record);  // also what an unknown word is taken for
}

}  // namespace triglub_reference
