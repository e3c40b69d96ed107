#include "reference.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <map>
#include <regex>
#include <stdexcept>
#include <vector>

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
  std::optional<std::size_t> field;  // when it is that field and nothing else
};

Part failed(Type type) {
  Part part;
  part.type = type;
  part.fails = true;
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
  if (part.field) return std::string(station_fields()[*part.field].text);
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

class Reader {
 public:
  explicit Reader(const std::string& text) : text_(text) {}

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

  static bool truth(const Part& part) { return number(part) != 0; }

  Part conditional() {
    Part condition = disjunction();
    if (!take("?")) return condition;
    const bool holds = truth(condition);
    Part yes = conditional();
    need(":");
    Part no = conditional();
    if ((yes.type == Type::text) != (no.type == Type::text)) throw Refused();
    const Type type = yes.type == no.type ? yes.type : Type::real;
    Part chosen = holds ? yes : no;
    if (condition.fails || chosen.fails) return failed(type);
    if (type == Type::text) return of_text(text(chosen));
    return type == Type::integer ? of_integer(chosen.integer) : of_finite_or_not(number(chosen));
  }

  // A field's number passes a choice unchecked.
  static Part of_finite_or_not(double number) {
    Part part = of_real(number);
    part.fails = false;
    return part;
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
      left = left.fails ? failed(Type::integer)
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
    const StationField& value = station_fields()[static_cast<std::size_t>(field->id)];
    Part part;
    part.type = value.kind == Kind::text ? Type::text : value.kind == Kind::real ? Type::real : Type::integer;
    part.integer = value.integer;
    part.real = value.real;
    part.text = value.text;
    part.field = static_cast<std::size_t>(field->id);
    return part;
  }

  Part call(const std::string& name) {
    std::vector<Part> arguments;
    if (!see(")")) {
      do arguments.push_back(conditional());
      while (take(","));
    }
    need(")");
    bool fails = false;
    bool integers = true;
    for (const Part& argument : arguments) {
      fails = fails || argument.fails;
      integers = integers && argument.type == Type::integer;
    }
    Part result = called(name, arguments, integers);
    return fails ? failed(result.type) : result;
  }

  static const std::string& need_text(const Part& part) {
    if (part.type != Type::text) throw Refused();
    return part.text;
  }

  // Where each character of a text begins, and its end.
  static std::vector<std::size_t> characters(const std::string& text) {
    std::vector<std::size_t> begins;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if ((text[i] & 0xC0) != 0x80) begins.push_back(i);
    }
    begins.push_back(text.size());
    return begins;
  }

  static Part part_of_text(const std::string& text, const Part& from, const Part& length) {
    if (from.type != Type::integer || length.type != Type::integer) throw Refused();
    if (from.fails || length.fails || from.integer < 0 || length.integer < 0) return failed(Type::text);
    const std::vector<std::size_t> begins = characters(text);
    const auto last = static_cast<std::int64_t>(begins.size()) - 1;
    const std::int64_t begin = std::min(from.integer, last);
    const std::int64_t end = begin + std::min(length.integer, last - begin);
    const auto at = [&](std::int64_t i) { return begins[static_cast<std::size_t>(i)]; };
    return of_text(text.substr(at(begin), at(end) - at(begin)));
  }

  static Part replaced(const std::string& text, const std::string& from, const std::string& to) {
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
      const bool is_found = !from.empty() && text.compare(i, from.size(), from) == 0;
      result += is_found ? to : text.substr(i, 1);
      i += is_found ? from.size() : 1;
    }
    return of_text(result);
  }

  static Part safe_in_xml(const std::string& text) {
    std::string result;
    for (const char c : text) result += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
    return of_text(result);
  }

  // Of one number each; the domain is what gives a finite result.
  static std::optional<Part> of_analysis(const std::string& name, const std::vector<Part>& arguments) {
    static const std::map<std::string, double (*)(double)> functions = {
        {"sqrt", std::sqrt}, {"floor", std::floor}, {"ceil", std::ceil}, {"round", std::round},
        {"exp", std::exp},   {"log10", std::log10}, {"sin", std::sin},   {"cos", std::cos}};
    const auto found = functions.find(name);
    if (found == functions.end()) return std::nullopt;
    if (arguments.size() != 1) throw Refused();
    return of_real(found->second(number(arguments[0])));
  }

  // A real without what stands behind its point, if it is an integer then.
  static Part cut(double real) {
    const double whole = std::trunc(real);
    if (!(whole >= -9223372036854775808.0 && whole < 9223372036854775808.0)) return failed(Type::integer);
    return of_integer(static_cast<std::int64_t>(whole));
  }

  static Part called(const std::string& name, const std::vector<Part>& arguments, bool integers) {
    if (name == "concat") {
      std::string joined;
      for (const Part& argument : arguments) joined += text(argument);
      return of_text(joined);
    }
    if (name == "min" || name == "max") {
      Part best = arguments[0];
      for (const Part& argument : arguments) {
        const bool better = name == "min" ? number(argument) < number(best) : number(argument) > number(best);
        if (better) best = argument;
      }
      return integers ? of_integer(best.integer) : of_finite_or_not(number(best));
    }
    if (const auto result = of_analysis(name, arguments)) return *result;
    if (name == "pow" || name == "atan2") {
      if (arguments.size() != 2) throw Refused();
      const double x = number(arguments[0]);
      const double y = number(arguments[1]);
      return of_real(name == "pow" ? std::pow(x, y) : std::atan2(x, y));
    }
    if (name == "substr") {
      if (arguments.size() != 3) throw Refused();
      return part_of_text(need_text(arguments[0]), arguments[1], arguments[2]);
    }
    if (name == "replace") {
      if (arguments.size() != 3) throw Refused();
      return replaced(need_text(arguments[0]), need_text(arguments[1]), need_text(arguments[2]));
    }
    if (arguments.size() != 1) throw Refused();
    const Part& only = arguments[0];
    if (name == "trim") return of_text(trimmed_copy(need_text(only)));
    if (name == "xml") return safe_in_xml(need_text(only));
    if (name == "is_null") {
      if (!only.field) throw Refused();
      return of_integer(station_fields()[*only.field].is_null ? 1 : 0);
    }
    if (name == "int") {
      const Part value = only.type == Type::text ? read(only.text) : only;
      if (value.type == Type::text) return failed(Type::integer);
      return value.type == Type::integer ? of_integer(value.integer) : cut(value.real);
    }
    if (name == "lower") {
      std::string lower = need_text(only);
      for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      return of_text(lower);
    }
    if (name == "str") return of_text(text(only));
    if (name == "upper") {
      std::string upper = need_text(only);
      for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
      return of_text(upper);
    }
    if (name == "length") return of_integer(static_cast<std::int64_t>(characters(need_text(only)).size()) - 1);
    if (name == "abs")
      return integers ? of_wide(only.integer < 0 ? -static_cast<Wide>(only.integer) : only.integer)
                      : of_real(std::fabs(number(only)));
    if (name == "real") {
      const Part value = only.type == Type::text ? read(only.text) : only;
      return value.type == Type::text ? failed(Type::real) : of_finite_or_not(number(value));
    }
    throw Refused();
  }

  const std::string& text_;
  std::size_t at_ = 0;
};

}  // namespace

std::string reference_text(const std::string& expression) {
  try {
    const Part part = Reader(expression).whole();
    return part.fails ? "fails" : text(part);
  } catch (const Refused&) {
    return "refused";
  }
}

}  // namespace triglub::expression
