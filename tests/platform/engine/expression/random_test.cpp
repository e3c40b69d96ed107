// Random expressions mean the same to the compiled form and to a plain evaluator.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "element.h"
#include "reference.h"
#include "station.h"
#include "support/random_seed.h"

namespace triglub::expression {
namespace {

// Makes mostly expressions that compile: kinds are kept in mind, and now and then forgotten. Parentheses are left out
// more often than not, so that precedence decides.
class Generator {
 public:
  explicit Generator(std::uint64_t seed, Nulls nulls = Nulls::as_values)
      : random_(seed), has_nulls_(nulls == Nulls::propagate) {}

  std::string number(int depth) {
    if (one_in(60)) return text(depth - 1);
    if (depth <= 0) return leaf();
    if (has_nulls_ && one_in(6)) return number_of_nullable_call(depth);
    switch (below(9)) {
      case 0:
        return leaf();
      case 1:
        return "(" + number(depth - 1) + ")";
      case 2:
        return one_of({"-", "!", "- ", "!-"}) + number(depth - 1);
      case 3:
        return text(depth - 1) + one_of({" == ", "<", " >= ", " != ", ">", "<="}) +
               (one_in(2) ? text(depth - 1) : number(depth - 1));
      case 4:
        return (one_in(2) ? text(depth - 1) : number(depth - 1)) + one_of({" =~ ", "!~"}) +
               one_of({"/AAK/", "/A.*/", "/1/", "//", "/[0-9]*/", "/-?[0-9.]+/", "/0|1/", "/0007/"});
      case 5:
        return number(depth - 1) + " ? " + number(depth - 1) + " : " + number(depth - 1);
      case 6:
        return number_of_call(depth);
      case 7:
        return one_in(2) ? "length(" + text(depth - 1) + ")"
                         : one_of({"min(", "max("}) + number(depth - 1) + "," + number(depth - 1) + ")";
      default:
        return number(depth - 1) +
               one_of({"+", " - ", "*", " / ", "%", "<", " <= ", ">", ">=", " == ", "!=", " && ", "||"}) +
               number(depth - 1);
    }
  }

  std::string text(int depth) {
    if (depth <= 0 || one_in(3))
      return one_of({"sta", "chan", "code", "digits", "nothing", "place", "markup", "'AAK'", "'7'", "' 1.5 '", "'x'",
                     "'A'", "''"});
    if (has_nulls_ && one_in(5)) return text_of_nullable_call(depth);
    switch (below(7)) {
      case 0:
        return "concat(" + text(depth - 1) + "," + (one_in(2) ? number(depth - 1) : text(depth - 1)) + ")";
      case 1:
        return one_of({"upper", "lower", "trim", "xml"}) + "(" + text(depth - 1) + ")";
      case 2:
        return "str(" + number(depth - 1) + ")";
      case 3:
        return "substr(" + text(depth - 1) + "," + position(depth) + "," + position(depth) + ")";
      case 4:
        return "replace(" + text(depth - 1) + "," + text(depth - 2) + "," + text(depth - 2) + ")";
      default:
        return "(" + number(depth - 1) + " ? " + text(depth - 1) + " : " + text(depth - 1) + ")";
    }
  }

  int below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }

 private:
  bool one_in(int n) { return below(n) == 0; }

  std::string number_of_call(int depth) {
    switch (below(5)) {
      case 0:
        return one_of({"pow(", "atan2("}) + number(depth - 1) + "," + number(depth - 1) + ")";
      case 1:
        return one_of({"int(", "real("}) + (one_in(2) ? text(depth - 1) : number(depth - 1)) + ")";
      case 2:
        return "is_null(" + (one_in(8) ? number(depth - 1) : one_of({"offdate", "endtime", "lat", "(inid)"})) + ")";
      default:
        return one_of({"abs", "sqrt", "floor", "ceil", "round", "exp", "log10", "sin", "cos"}) + "(" +
               number(depth - 1) + ")";
    }
  }
  std::string number_of_nullable_call(int depth) {
    switch (below(4)) {
      case 0:
        return "count(" + (one_in(2) ? text(depth - 1) : number(depth - 1)) + ")";
      case 1:
        return "is_null(" + (one_in(2) ? text(depth - 1) : number(depth - 1)) + ")";
      case 2:
        return one_of({"assume(", "agreed("}) + number(depth - 1) + "," + number(depth - 1) + ")";
      default:
        return one_of({"first(", "last(", "earliest(", "latest("}) + number(depth - 1) + ")";
    }
  }
  std::string text_of_nullable_call(int depth) {
    if (one_in(2)) return "assume(" + text(depth - 1) + "," + text(depth - 1) + ")";
    return one_of({"first(", "last(", "earliest(", "latest("}) + text(depth - 1) + ")";
  }
  // Most often near the ends of a short text.
  std::string position(int depth) {
    return one_in(4) ? number(depth - 2) : one_of({"0", "1", "2", "3", "5", "100", "-1"});
  }

  std::string one_of(std::initializer_list<const char*> choices) {
    return choices.begin()[below(static_cast<int>(choices.size()))];
  }

  std::string leaf() {
    return one_of({"0", "1", "2", "7", "0.5", "1.5", "100", "9223372036854775", "3", "lat", "elev", "zero", "inid",
                   "none", "ondate", "offdate", "site.lat", "time", "(inid)"});
  }

  std::mt19937 random_;
  bool has_nulls_;
};

TEST(RandomExpressions, MeanTheSameToAPlainEvaluator) {
  Generator generator(triglub_test::random_seed());
  int values = 0;
  int failures = 0;
  int refusals = 0;
  std::size_t digest = 0;
  for (int i = 0; i < 30000; ++i) {
    const int depth = 1 + i % 6;
    const std::string expression = generator.below(3) == 0 ? generator.text(depth) : generator.number(depth);
    digest = digest * 31 + std::hash<std::string>()(expression);
    const std::string expected = reference_text(expression);
    if (expected == "refused") {
      ASSERT_EQ(compile(expression), nullptr) << expression;
      ++refusals;
      continue;
    }
    ASSERT_EQ(text_at_station(expression), expected) << expression;
    (expected == "fails" ? failures : values)++;
  }
  RecordProperty("cases", std::to_string(digest));  // equal when the same cases were met
  // The generator must go on meeting all three.
  EXPECT_GT(values, 10000);
  EXPECT_GT(failures, 50);
  EXPECT_GT(refusals, 100);
}

TEST(RandomExpressions, MeanTheSameToAPlainEvaluatorWhereNullsPropagate) {
  Generator generator(triglub_test::random_seed(), Nulls::propagate);
  std::map<std::string, int> met;
  for (int i = 0; i < 30000; ++i) {
    const int depth = 1 + i % 5;
    const std::string expression = generator.below(3) == 0 ? generator.text(depth) : generator.number(depth);
    const auto record = static_cast<std::uint32_t>(i % 3);
    const std::string expected = reference_text_in_element(expression, record);
    if (expected == "refused") {
      ASSERT_EQ(compile_nullable(expression), nullptr) << expression;
    } else {
      ASSERT_EQ(text_in_element(expression, record), expected) << expression << " at " << record;
    }
    ++met[expected == "refused" || expected == "null" || expected == "fails" ? expected : "value"];
  }
  EXPECT_GT(met["value"], 10000);
  EXPECT_GT(met["null"], 1000);
  EXPECT_GT(met["fails"], 50);
  EXPECT_GT(met["refused"], 100);
}

// Pieces of expressions in any order: whatever comes, an answer and no crash.
TEST(RandomExpressions, RubbishIsRefusedOrAnswered) {
  Generator generator(triglub_test::random_seed());
  const char* const pieces[] = {"1",    "2.5",  "'a'",     "\"",   "'",        "sta", "lat", "foo",  "(",
                                ")",    ",",    "?",       ":",    "+",        "-",   "*",   "/",    "%",
                                "!",    "=~",   "/",       "!~",   "&&",       "||",  "==",  "<",    "=",
                                "min(", "xml(", "format(", "'%d'", "is_null(", " ",   "\\",  "\xFF", "\xC3\xBC"};
  int compiled = 0;
  for (int i = 0; i < 60000; ++i) {
    std::string text;
    for (int n = generator.below(9); n >= 0; --n) text += pieces[generator.below(std::size(pieces))];
    Fault fault{};
    const auto result = compile(text, dbSTRING, &fault);
    if (result == nullptr) {
      ASSERT_LE(fault.position, text.size()) << text;
      ASSERT_EQ(fault.text.rfind("expected ", 0), 0u) << text;
      ASSERT_EQ(fault.text.back(), '^') << text;
      continue;
    }
    std::string value;
    result->text(StationRecord(), scratch(), &value);
    ++compiled;
  }
  EXPECT_GT(compiled, 500);
}

}  // namespace
}  // namespace triglub::expression
