#include "reference.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>
#include <regex>
#include <stdexcept>
#include <vector>

#include "element.h"
#include "station.h"

namespace triglub::expression {

namespace {

// Holds any sum, difference or product of two integers.
__extension__ using Wide = __int128;

struct Refused : std::runtime_error {
  Refused() : std::runtime_error("refused") {}
};

enum class Type { integer, real, text };

struct Part {
  Type type = Type::integer;
  bool fails = false;
  std::int64_t integer = 0;
  double real = 0;
  std::string text;
  std::optional<StationField> field;  // when it is that field and nothing else
  bool is_null = false;               // where nulls propagate
};

Part failed(Type type) {
  Part part;
  part.type = type;
  part.fails = true;
  return part;
}

Part null(Type type) {
  Part part;
  part.type = type;
  part.is_null = true;
  return part;
}

Part of_integer(std::int64_t number) {
  Part part;
  part.integer = number;
  return part;
}

Part of_wide(Wide number) {
  if (number > INT64_MAX || number < INT64_MIN) return failed(Type::integer);
  return of_integer(static_cast<std::int64_t>(number));
}

Part of_real(double number) {
  Part part;
  part.type = Type::real;
  part.real = number;
  part.fails = !std::isfinite(number);
  return part;
}

// A field's number passes a choice unchecked.
Part of_finite_or_not(double number) {
  Part part = of_real(number);
  part.fails = false;
  return part;
}

Part of_text(std::string text) {
  Part part;
  part.type = Type::text;
  part.text = std::move(text);
  return part;
}

double number(const Part& part) {
  if (part.type == Type::text) throw Refused();
  return part.type == Type::integer ? static_cast<double>(part.integer) : part.real;
}

std::string text(const Part& part) {
  if (part.is_null) return "";
  if (part.field) return std::string(part.field->text);
  if (part.type == Type::text) return part.text;
  if (part.type == Type::integer) return std::to_string(part.integer);
  if (part.real == 0) return "0";
  char buffer[64];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, part.real).ptr};
}

std::string trimmed_copy(const std::string& text) {
  const auto begin = text.find_first_not_of(" \t\n\v\f\r");
  return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(" \t\n\v\f\r") + 1 - begin);
}

// The number that a text is, as a part; a text when it is none.
Part read(const std::string& text) {
  const std::string core = trimmed_copy(text);
  if (core.empty() || core.find_first_not_of("0123456789+-.eE") != std::string::npos) return of_text(text);
  char* end = nullptr;
  const double real = std::strtod(core.c_str(), &end);
  if (*end != '\0') return of_text(text);
  errno = 0;
  const long long whole = std::strtoll(core.c_str(), nullptr, 10);
  const bool is_whole = core.find_first_of(".eE") == std::string::npos && errno == 0;
  return is_whole ? of_integer(whole) : of_real(real);
}

// Compiled once for all tests: the standard ones are slow to compile.
const std::regex& regex(const std::string& pattern) {
  static std::map<std::string, std::regex> known;
  return known.try_emplace(pattern, pattern).first->second;
}

using Parts = std::vector<Part>;

const std::string& need_text(const Part& part) {
  if (part.type != Type::text) throw Refused();
  return part.text;
}

bool are_integers(const Parts& parts) {
  return std::all_of(parts.begin(), parts.end(), [](const Part& part) { return part.type == Type::integer; });
}

// Where each character of a text begins, and its end.
std::vector<std::size_t> characters(const std::string& text) {
  std::vector<std::size_t> begins;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((text[i] & 0xC0) != 0x80) begins.push_back(i);
  }
  begins.push_back(text.size());
  return begins;
}

Part length(const Parts& arguments) {
  return of_integer(static_cast<std::int64_t>(characters(need_text(arguments[0])).size()) - 1);
}

Part substr(const Parts& arguments) {
  const std::string& text = need_text(arguments[0]);
  const Part& from = arguments[1];
  const Part& length = arguments[2];
  if (from.type != Type::integer || length.type != Type::integer) throw Refused();
  if (from.fails || length.fails || from.integer < 0 || length.integer < 0) return failed(Type::text);
  const std::vector<std::size_t> begins = characters(text);
  const auto last = static_cast<std::int64_t>(begins.size()) - 1;
  const std::int64_t begin = std::min(from.integer, last);
  const std::int64_t end = begin + std::min(length.integer, last - begin);
  const auto at = [&](std::int64_t i) { return begins[static_cast<std::size_t>(i)]; };
  return of_text(text.substr(at(begin), at(end) - at(begin)));
}

Part replace(const Parts& arguments) {
  const std::string& text = need_text(arguments[0]);
  const std::string& from = need_text(arguments[1]);
  const std::string& to = need_text(arguments[2]);
  std::string result;
  for (std::size_t i = 0; i < text.size();) {
    const bool is_found = !from.empty() && text.compare(i, from.size(), from) == 0;
    result += is_found ? to : text.substr(i, 1);
    i += is_found ? from.size() : 1;
  }
  return of_text(result);
}

Part concat(const Parts& arguments) {
  std::string joined;
  for (const Part& argument : arguments) joined += text(argument);
  return of_text(joined);
}

Part trim(const Parts& arguments) { return of_text(trimmed_copy(need_text(arguments[0]))); }

Part xml(const Parts& arguments) {
  std::string result;
  for (const char c : need_text(arguments[0])) {
    result += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
  }
  return of_text(result);
}

template <int (*CHANGED)(int)>
Part each_letter(const Parts& arguments) {
  std::string letters = need_text(arguments[0]);
  for (char& c : letters) c = static_cast<char>(CHANGED(static_cast<unsigned char>(c)));
  return of_text(letters);
}

Part str(const Parts& arguments) { return of_text(text(arguments[0])); }

Part is_null(const Parts& arguments) {
  if (!arguments[0].field) throw Refused();
  return of_integer(arguments[0].field->is_null ? 1 : 0);
}

Part is_value_null(const Parts& arguments) { return of_integer(arguments[0].is_null ? 1 : 0); }

// One of two values, of the kind that both have in common.
Part one_of(const Part& a, const Part& b, bool is_first) {
  if ((a.type == Type::text) != (b.type == Type::text)) throw Refused();
  const Type type = a.type == b.type ? a.type : Type::real;
  const Part& chosen = is_first ? a : b;
  if (chosen.fails) return failed(type);
  if (chosen.is_null) return null(type);
  if (type == Type::text) return of_text(text(chosen));
  return type == Type::integer ? of_integer(chosen.integer) : of_finite_or_not(number(chosen));
}

Part assume(const Parts& arguments) {
  Part chosen = one_of(arguments[0], arguments[1], !arguments[0].is_null);
  if (arguments[0].fails) chosen = failed(chosen.type);
  return chosen;
}

// The fields of the station are exact, so only what is the same agrees.
Part agreed(const Parts& arguments) {
  if (arguments[0].type == Type::text || arguments[1].type == Type::text) throw Refused();
  Part first = one_of(arguments[0], arguments[1], true);
  const bool fails = arguments[0].fails || (!arguments[0].is_null && arguments[1].fails);
  return fails ? failed(first.type) : first;
}

Part identity(const Parts& arguments) { return of_text(need_text(arguments[0])); }

Part number_of(const Part& part) { return part.type == Type::text ? read(part.text) : part; }

// A real without what stands behind its point, if it is an integer then.
Part cut(double real) {
  const double whole = std::trunc(real);
  if (!(whole >= -9223372036854775808.0 && whole < 9223372036854775808.0)) return failed(Type::integer);
  return of_integer(static_cast<std::int64_t>(whole));
}

Part to_integer(const Parts& arguments) {
  const Part value = number_of(arguments[0]);
  if (value.type == Type::text) return failed(Type::integer);
  return value.type == Type::integer ? of_integer(value.integer) : cut(value.real);
}

Part to_real(const Parts& arguments) {
  const Part value = number_of(arguments[0]);
  return value.type == Type::text ? failed(Type::real) : of_finite_or_not(number(value));
}

Part abs(const Parts& arguments) {
  const Part& part = arguments[0];
  if (part.type != Type::integer) return of_real(std::fabs(number(part)));
  return of_wide(part.integer < 0 ? -static_cast<Wide>(part.integer) : part.integer);
}

// The number that is better than all others.
template <class Better>
Part extreme(const Parts& arguments) {
  Part best = arguments[0];
  for (const Part& argument : arguments) {
    if (Better()(number(argument), number(best))) best = argument;
  }
  return are_integers(arguments) ? of_integer(best.integer) : of_finite_or_not(number(best));
}

// The domain is what gives a finite result.
template <double (*FUNCTION)(double)>
Part of_one(const Parts& arguments) {
  return of_real(FUNCTION(number(arguments[0])));
}

template <double (*FUNCTION)(double, double)>
Part of_two(const Parts& arguments) {
  const double x = number(arguments[0]);
  return of_real(FUNCTION(x, number(arguments[1])));
}

struct Function {
  std::size_t arguments;  // 0: any number
  Part (*value)(const Parts&);
};

const std::map<std::string, Function>& functions() {
  static const std::map<std::string, Function> all = {
      {"abs", {1, abs}},
      {"atan2", {2, of_two<std::atan2>}},
      {"ceil", {1, of_one<std::ceil>}},
      {"concat", {0, concat}},
      {"cos", {1, of_one<std::cos>}},
      {"exp", {1, of_one<std::exp>}},
      {"floor", {1, of_one<std::floor>}},
      {"int", {1, to_integer}},
      {"is_null", {1, is_null}},
      {"length", {1, length}},
      {"log10", {1, of_one<std::log10>}},
      {"lower", {1, each_letter<std::tolower>}},
      {"max", {0, extreme<std::greater<>>}},
      {"min", {0, extreme<std::less<>>}},
      {"pow", {2, of_two<std::pow>}},
      {"real", {1, to_real}},
      {"replace", {3, replace}},
      {"round", {1, of_one<std::round>}},
      {"sin", {1, of_one<std::sin>}},
      {"sqrt", {1, of_one<std::sqrt>}},
      {"str", {1, str}},
      {"substr", {3, substr}},
      {"trim", {1, trim}},
      {"upper", {1, each_letter<std::toupper>}},
      {"xml", {1, xml}},
  };
  return all;
}

// Those of other meaning where nulls propagate, or that are only there.
const std::map<std::string, Function>& nullable_functions() {
  static const std::map<std::string, Function> all = {{"agreed", {2, agreed}},
                                                      {"assume", {2, assume}},
                                                      {"concat", {0, concat}},
                                                      {"is_null", {1, is_value_null}},
                                                      {"xml", {1, identity}}};
  return all;
}

Part value_of(const Function& function, const Parts& arguments) {
  if (function.arguments != 0 && function.arguments != arguments.size()) throw Refused();
  return function.value(arguments);
}

bool does_one_fail(const Parts& parts) {
  return std::any_of(parts.begin(), parts.end(), [](const Part& part) { return part.fails; });
}

bool is_one_null(const Parts& parts) {
  return std::any_of(parts.begin(), parts.end(), [](const Part& part) { return part.is_null; });
}

Part called(const std::string& name, const Parts& arguments) {
  const auto found = functions().find(name);
  if (found == functions().end()) throw Refused();
  const Part result = value_of(found->second, arguments);
  if (does_one_fail(arguments)) return failed(result.type);
  return is_one_null(arguments) ? null(result.type) : result;
}

Part called_with_nulls(const std::string& name, const Parts& arguments) {
  const auto found = nullable_functions().find(name);
  if (found == nullable_functions().end()) return called(name, arguments);
  Part result = value_of(found->second, arguments);
  if (name == "assume" || name == "agreed") return result;
  if (does_one_fail(arguments)) return failed(result.type);
  return name == "xml" && is_one_null(arguments) ? null(result.type) : result;
}

bool is_over_records(const std::string& name) {
  return name == "first" || name == "last" || name == "earliest" || name == "latest" || name == "count";
}

bool is_less(const Part& a, const Part& b) {
  if (a.type == Type::text) return a.text < b.text;
  return a.type == Type::integer ? a.integer < b.integer : a.real < b.real;
}

Part counted(Parts values) {
  if (does_one_fail(values)) return failed(Type::integer);
  values.erase(std::remove_if(values.begin(), values.end(), [](const Part& part) { return part.is_null; }),
               values.end());
  std::sort(values.begin(), values.end(), is_less);
  const auto end =
      std::unique(values.begin(), values.end(), [](const Part& a, const Part& b) { return !is_less(a, b); });
  return of_integer(end - values.begin());
}

// Nulls are skipped.
Part earliest(Parts values) {
  if (does_one_fail(values)) return failed(values[0].type);
  std::stable_sort(values.begin(), values.end(), [](const Part& a, const Part& b) {
    return a.is_null || b.is_null ? b.is_null && !a.is_null : is_less(a, b);
  });
  return values[0];
}

// Nothing behind a null is looked at.
Part latest(const Parts& values) {
  Part best = values[0];
  for (const Part& value : values) {
    if (value.fails || value.is_null) return value;
    if (is_less(best, value)) best = value;
  }
  return best;
}

// The values are those at the records of an element.
Part called_over_records(const std::string& name, const Parts& values) {
  if (name == "count") return counted(values);
  Part result = name == "earliest" ? earliest(values) : latest(values);
  if (name == "first") result = values.front();
  if (name == "last") result = values.back();
  result.field.reset();
  return result;
}

// Where an expression is evaluated.
struct Place {
  bool has_nulls = false;        // at the station with nulls as values, or in the element with nulls as nulls
  std::uint32_t record = 0;      // of the element
  bool is_over_records = false;  // within the argument of a function over records

  StationField field(std::size_t number) const {
    return has_nulls ? field_of_element(record, number) : station_fields()[number];
  }
};

class Reader {
 public:
  Reader(const std::string& text, const Place& place, std::size_t at = 0) : text_(text), place_(place), at_(at) {}

  Part whole() {
    Part part = conditional();
    blanks();
    if (at_ != text_.size()) throw Refused();
    return part;
  }

 private:
  void blanks() {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
  }

  bool take(const std::string& symbol) {
    blanks();
    if (text_.compare(at_, symbol.size(), symbol) != 0) return false;
    at_ += symbol.size();
    return true;
  }

  bool see(const std::string& symbol) {
    blanks();
    return text_.compare(at_, symbol.size(), symbol) == 0;
  }

  void need(const std::string& symbol) {
    if (!take(symbol)) throw Refused();
  }

  static bool truth(const Part& part) { return number(part) != 0 && !part.is_null; }

  Part conditional() {
    Part condition = disjunction();
    if (!take("?")) return condition;
    const bool holds = truth(condition);
    Part yes = conditional();
    need(":");
    Part no = conditional();
    const Part chosen = one_of(yes, no, holds);
    return condition.fails ? failed(chosen.type) : chosen;
  }

  Part disjunction() {
    Part left = conjunction();
    while (take("||")) {
      Part right = conjunction();
      const bool l = truth(left);
      const bool r = truth(right);
      const bool fails = left.fails || (!l && right.fails);
      left = fails ? failed(Type::integer) : of_integer(l || r ? 1 : 0);
    }
    return left;
  }

  Part conjunction() {
    Part left = matching();
    while (take("&&")) {
      Part right = matching();
      const bool l = truth(left);
      const bool r = truth(right);
      const bool fails = left.fails || (l && right.fails);
      left = fails ? failed(Type::integer) : of_integer(l && r ? 1 : 0);
    }
    return left;
  }

  Part matching() {
    Part left = equality();
    while (see("=~") || see("!~")) {
      const bool wanted = take("=~") || !take("!~");
      need("/");
      const auto end = text_.find('/', at_);
      if (end == std::string::npos) throw Refused();
      const std::regex& pattern = regex(text_.substr(at_, end - at_));
      at_ = end + 1;
      left = left.fails     ? failed(Type::integer)
             : left.is_null ? null(Type::integer)
                            : of_integer(std::regex_match(trimmed_copy(text(left)), pattern) == wanted ? 1 : 0);
    }
    return left;
  }

  // Below, at or above zero as a is to b; nothing when one is no number.
  static std::optional<int> order(const Part& a, const Part& b) {
    if (a.type == Type::text && b.type == Type::text) return text(a).compare(text(b));
    if (a.type == Type::text || b.type == Type::text) {
      const Part a_read = a.type == Type::text ? read(a.text) : a;
      const Part b_read = b.type == Type::text ? read(b.text) : b;
      if (a_read.type == Type::text || b_read.type == Type::text) return text(a).compare(text(b));
      return order(a_read, b_read);
    }
    if (a.type == Type::integer && b.type == Type::integer) return a.integer < b.integer ? -1 : a.integer > b.integer;
    if (std::isnan(number(a)) || std::isnan(number(b))) return std::nullopt;
    return number(a) < number(b) ? -1 : number(a) > number(b);
  }

  static Part compared(const Part& a, const Part& b, const std::string& symbol) {
    if (a.fails || b.fails) return failed(Type::integer);
    if (a.is_null || b.is_null) return null(Type::integer);
    const std::optional<int> is = order(a, b);
    if (!is) return of_integer(symbol == "!=" ? 1 : 0);
    const bool holds = symbol == "<"    ? *is < 0
                       : symbol == "<=" ? *is <= 0
                       : symbol == ">"  ? *is > 0
                       : symbol == ">=" ? *is >= 0
                       : symbol == "==" ? *is == 0
                                        : *is != 0;
    return of_integer(holds ? 1 : 0);
  }

  Part equality() {
    Part left = relation();
    for (;;) {
      std::string symbol;
      if (take("==")) {
        symbol = "==";
      } else if (take("!=")) {
        symbol = "!=";
      } else {
        return left;
      }
      left = compared(left, relation(), symbol);
    }
  }

  Part relation() {
    Part left = sum();
    for (;;) {
      std::string symbol;
      for (const std::string candidate : {"<=", ">=", "<", ">"}) {
        if (symbol.empty() && take(candidate)) symbol = candidate;
      }
      if (symbol.empty()) return left;
      left = compared(left, sum(), symbol);
    }
  }

  Part sum() {
    Part left = product();
    while (see("+") || see("-")) {
      const char symbol = text_[at_++];
      left = computed(left, product(), symbol);
    }
    return left;
  }

  Part product() {
    Part left = prefix();
    while (see("*") || see("/") || see("%")) {
      const char symbol = text_[at_++];
      left = computed(left, prefix(), symbol);
    }
    return left;
  }

  static Part computed(const Part& a, const Part& b, char symbol) {
    const double x = number(a);
    const double y = number(b);
    const bool integers = a.type == Type::integer && b.type == Type::integer && symbol != '/';
    if (a.fails || b.fails) return failed(integers ? Type::integer : Type::real);
    if (a.is_null || b.is_null) return null(integers ? Type::integer : Type::real);
    if (integers) {
      const Wide i = a.integer;
      const Wide j = b.integer;
      if (symbol == '+') return of_wide(i + j);
      if (symbol == '-') return of_wide(i - j);
      if (symbol == '*') return of_wide(i * j);
      return j == 0 ? failed(Type::integer) : of_wide(i % j);
    }
    if (symbol == '+') return of_real(x + y);
    if (symbol == '-') return of_real(x - y);
    if (symbol == '*') return of_real(x * y);
    return symbol == '/' ? of_real(x / y) : of_real(std::fmod(x, y));
  }

  Part prefix() {
    if (take("-")) {
      Part part = prefix();
      number(part);
      if (part.fails) return failed(part.type);
      if (part.is_null) return null(part.type);
      return part.type == Type::integer ? of_wide(-static_cast<Wide>(part.integer)) : of_finite_or_not(-part.real);
    }
    if (take("!")) {
      Part part = prefix();
      const bool holds = truth(part);
      return part.fails ? failed(Type::integer) : of_integer(holds ? 0 : 1);
    }
    return primary();
  }

  Part primary() {
    blanks();
    if (take("(")) {
      Part inside = conditional();
      need(")");
      return inside;
    }
    if (at_ == text_.size()) throw Refused();
    const char first = text_[at_];
    if (first == '\'') {
      const auto end = text_.find('\'', at_ + 1);
      Part part = of_text(text_.substr(at_ + 1, end - at_ - 1));
      at_ = end + 1;
      return part;
    }
    if (first >= '0' && first <= '9') return literal();
    return named();
  }

  Part literal() {
    std::size_t end = text_.find_first_not_of("0123456789.", at_);
    if (end == std::string::npos) end = text_.size();
    const std::string digits = text_.substr(at_, end - at_);
    at_ = end;
    return read(digits);
  }

  Part named() {
    const auto begin = at_;
    while (at_ < text_.size() &&
           (std::isalnum(static_cast<unsigned char>(text_[at_])) || text_[at_] == '_' || text_[at_] == '.'))
      ++at_;
    const std::string name = text_.substr(begin, at_ - begin);
    if (take("(")) return call(name);
    const auto field = StationNames().find(name);
    if (!field) throw Refused();
    const StationField value = place_.field(static_cast<std::size_t>(field->id));
    Part part;
    part.type = value.kind == Kind::text ? Type::text : value.kind == Kind::real ? Type::real : Type::integer;
    part.integer = value.integer;
    part.real = value.real;
    part.text = value.text;
    part.field = value;
    part.is_null = place_.has_nulls && value.is_null;
    return part;
  }

  Part call(const std::string& name) {
    if (place_.has_nulls && is_over_records(name)) return call_over_records(name);
    Parts arguments;
    if (!see(")")) {
      do arguments.push_back(conditional());
      while (take(","));
    }
    need(")");
    return place_.has_nulls ? called_with_nulls(name, arguments) : called(name, arguments);
  }

  // Reads the argument once for each record.
  Part call_over_records(const std::string& name) {
    if (place_.is_over_records) throw Refused();
    Parts values;
    std::size_t end = at_;
    for (const std::uint32_t record : {0U, 1U, 2U}) {
      Reader reader(text_, {true, record, true}, at_);
      values.push_back(reader.conditional());
      end = reader.at_;
    }
    at_ = end;
    need(")");
    return called_over_records(name, values);
  }

  const std::string& text_;
  Place place_;
  std::size_t at_;
};

std::string text_at_place(const std::string& expression, const Place& place) {
  try {
    const Part part = Reader(expression, place).whole();
    return part.fails ? "fails" : part.is_null ? "null" : text(part);
  } catch (const Refused&) {
    return "refused";
  }
}

}  // namespace

std::string reference_text(const std::string& expression) { return text_at_place(expression, {}); }

std::string reference_text_in_element(const std::string& expression, std::uint32_t record) {
  return text_at_place(expression, {.has_nulls = true, .record = record});
}

}  // namespace triglub::expression
