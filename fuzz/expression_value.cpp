// Expressions of the language that the plain evaluator of the tests knows: their values are the same, where nulls are
// values and where they propagate.
#include <array>
#include <string>

#include "element.h"
#include "reference.h"
#include "station.h"
#include "support/bytes.h"
#include "support/expect.h"

namespace {

namespace ex = triglub::expression;
using triglub_fuzz::Bytes;

// Kinds are kept in mind, and now and then forgotten. Parentheses are mostly left out, so that precedence decides.
class Maker {
 public:
  Maker(Bytes* bytes, bool has_nulls) : bytes_(*bytes), has_nulls_(has_nulls) {}

  std::string number(int depth) {
    if (depth <= 0 || bytes_.at_end()) return leaf();
    switch (bytes_.below(10)) {
      case 0:
        return "(" + number(depth - 1) + ")";
      case 1:
        return one_of("-", "!", "- ", "!-") + number(depth - 1);
      case 2:
        return either(depth) + one_of(" == ", "<", " >= ", " != ", ">", "<=") + either(depth);
      case 3:
        return either(depth) + one_of(" =~ ", "!~") + one_of("/AAK/", "/A.*/", "//", "/-?[0-9.]+/", "/0|1/", "/0007/");
      case 4:
        return number(depth - 1) + " ? " + number(depth - 1) + " : " + number(depth - 1);
      case 5:
        return one_of("abs(", "sqrt(", "floor(", "ceil(", "round(", "exp(", "log10(") + number(depth - 1) + ")";
      case 6:
        return one_of("min(", "max(", "pow(", "atan2(") + number(depth - 1) + "," + number(depth - 1) + ")";
      case 7:
        return one_of("int(", "real(", "length(", "is_null(") + either(depth) + ")";
      case 8:
        return has_nulls_ ? over_records(depth, number(depth - 1)) : leaf();
      default:
        return number(depth - 1) + one_of("+", " - ", "*", " / ", "%", " && ", "||") + number(depth - 1);
    }
  }

  std::string text(int depth) {
    if (depth <= 0 || bytes_.at_end())
      return one_of("sta", "chan", "code", "digits", "nothing", "place", "markup", "'7'", "' 1.5 '", "''");
    switch (bytes_.below(8)) {
      case 0:
        return "concat(" + either(depth) + "," + either(depth) + ")";
      case 1:
        return one_of("upper(", "lower(", "trim(", "xml(") + text(depth - 1) + ")";
      case 2:
        return "str(" + number(depth - 1) + ")";
      case 3:
        return "substr(" + text(depth - 1) + "," + leaf() + "," + leaf() + ")";
      case 4:
        return "replace(" + text(depth - 1) + "," + text(depth - 2) + "," + text(depth - 2) + ")";
      case 5:
        return has_nulls_ ? over_records(depth, text(depth - 1)) : text(0);
      case 6:
        return has_nulls_ ? "assume(" + text(depth - 1) + "," + text(depth - 1) + ")" : text(0);
      default:
        return "(" + number(depth - 1) + " ? " + text(depth - 1) + " : " + text(depth - 1) + ")";
    }
  }

 private:
  template <typename... Choices>
  std::string one_of(Choices... choices) {
    const std::array<const char*, sizeof...(choices)> all = {choices...};
    return bytes_.one_of(all);
  }

  std::string either(int depth) { return bytes_.one_in(2) ? text(depth - 1) : number(depth - 1); }

  std::string over_records(int depth, const std::string& argument) {
    if (bytes_.one_in(3)) return one_of("assume(", "agreed(") + argument + "," + number(depth - 1) + ")";
    return one_of("first(", "last(", "earliest(", "latest(", "count(") + argument + ")";
  }

  std::string leaf() {
    return one_of("0", "1", "2", "7", "0.5", "1.5", "100", "9223372036854775807", "3", "lat", "elev", "zero", "inid",
                  "none", "ondate", "offdate", "site.lat", "time", "endtime", "odd", "(inid)", "4503599627370497.5",
                  "0.1");
  }

  Bytes& bytes_;
  bool has_nulls_;
};

void compare_as_values(const std::string& expression) {
  const std::string plain = ex::reference_text(expression);
  if (plain == "refused") {
    triglub_fuzz::expect(ex::compile(expression) == nullptr, "it is refused", expression);
  } else {
    triglub_fuzz::expect_same(expression + ": " + plain, expression + ": " + ex::text_at_station(expression), "value");
  }
}

void compare_with_nulls(const std::string& expression, std::uint32_t record) {
  const std::string plain = ex::reference_text_in_element(expression, record);
  if (plain == "refused") {
    triglub_fuzz::expect(ex::compile_nullable(expression) == nullptr, "it is refused", expression);
  } else {
    triglub_fuzz::expect_same(expression + ": " + plain, expression + ": " + ex::text_in_element(expression, record),
                              "value");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int kDeepest = 6;
  Bytes bytes(data, size);
  const bool has_nulls = bytes.one_in(2);
  const auto record = static_cast<std::uint32_t>(bytes.below(3));
  const bool is_text = bytes.one_in(3);
  Maker maker(&bytes, has_nulls);
  const std::string expression = is_text ? maker.text(kDeepest) : maker.number(kDeepest);
  if (has_nulls) {
    compare_with_nulls(expression, record);
  } else {
    compare_as_values(expression);
  }
  return 0;
}
