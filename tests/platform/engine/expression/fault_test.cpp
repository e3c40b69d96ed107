// What a person is told who wrote something that is no expression: to the character.
#include <gtest/gtest.h>

#include "station.h"

namespace triglub::expression {
namespace {

struct FaultCase {
  std::string_view expression;
  std::string_view text;
  std::size_t position;
};

void expect_faults(std::initializer_list<FaultCase> cases) {
  for (const FaultCase& item : cases) {
    Fault fault{};
    EXPECT_EQ(compile(item.expression, dbINTEGER, &fault), nullptr) << item.expression;
    EXPECT_EQ(fault.text, item.text);
    EXPECT_EQ(fault.position, item.position) << item.expression;
  }
}

TEST(Fault, ShowsTheExpressionWithACaretUnderThePlace) {
  expect_faults({
      {"sta == ", "expected a value\nsta == \n       ^", 7},
      {"", "expected a value\n\n^", 0},
      {"lat > 40 chan", "expected an operator or the end\nlat > 40 chan\n         ^", 9},
      {"sta = 'AAK'", "expected == or =~\nsta = 'AAK'\n    ^", 4},
      {"(lat > 40", "expected an operator or )\n(lat > 40\n         ^", 9},
      {"sta =~ AAK", "expected a regular expression between slashes\nsta =~ AAK\n       ^", 7},
  });
}

TEST(Fault, TellsUnknownNames) {
  expect_faults({
      {"1 + foo", "expected a field, found no \"foo\"\n1 + foo\n    ^", 4},
      {"1 + (sensor.lat)", "expected a field, found no \"sensor.lat\"\n1 + (sensor.lat)\n     ^", 5},
      {"foo(1)", "expected a function, found no \"foo\"\nfoo(1)\n^", 0},
      {"1 + site.min(1)", "expected a function, found no \"site.min\"\n1 + site.min(1)\n    ^", 4},
      {"LAT", "expected a field, found no \"LAT\"\nLAT\n^", 0},
  });
}

TEST(Fault, TellsWrongKinds) {
  expect_faults({
      {"sta + 1", "expected a number before +\nsta + 1\n^", 0},
      {"1 + sta", "expected a number behind +\n1 + sta\n    ^", 4},
      {"1 * 2 - (sta)", "expected a number behind -\n1 * 2 - (sta)\n         ^", 9},
      {"lat % 'x'", "expected a number behind %\nlat % 'x'\n      ^", 6},
      {"-sta", "expected a number behind -\n-sta\n ^", 1},
      {"!sta", "expected a number behind !\n!sta\n ^", 1},
      {"sta && 1", "expected a number before &&\nsta && 1\n^", 0},
      {"1 || sta", "expected a number behind ||\n1 || sta\n     ^", 5},
      {"sta ? 1 : 2", "expected a number before ?\nsta ? 1 : 2\n^", 0},
      {"1 ? sta : 2", "expected a text behind : as before it\n1 ? sta : 2\n          ^", 10},
      {"1 ? 2 : sta", "expected a number behind : as before it\n1 ? 2 : sta\n        ^", 8},
      {"abs(sta)", "expected a number as argument 1 of abs\nabs(sta)\n    ^", 4},
      {"pow(2, 'x')", "expected a number as argument 2 of pow\npow(2, 'x')\n       ^", 7},
      {"min(1, 2, sta)", "expected a number as argument 3 of min\nmin(1, 2, sta)\n          ^", 10},
      {"upper(7)", "expected a text as argument 1 of upper\nupper(7)\n      ^", 6},
      {"xml(lat)", "expected a text as argument 1 of xml\nxml(lat)\n    ^", 4},
      {"substr(sta, 1.5, 2)", "expected an integer as argument 2 of substr\nsubstr(sta, 1.5, 2)\n            ^", 12},
      {"epoch(1.5)", "expected an integer as argument 1 of epoch\nepoch(1.5)\n      ^", 6},
      {"is_null(lat + 1)", "expected a field and nothing else as argument 1 of is_null\nis_null(lat + 1)\n        ^",
       8},
      {"is_null(1)", "expected a field and nothing else as argument 1 of is_null\nis_null(1)\n        ^", 8},
  });
}

TEST(Fault, TellsTheNumberOfArguments) {
  expect_faults({
      {"1 + abs()", "expected 1 argument for abs\n1 + abs()\n    ^", 4},
      {"abs(1, 2)", "expected 1 argument for abs\nabs(1, 2)\n^", 0},
      {"pow(1)", "expected 2 arguments for pow\npow(1)\n^", 0},
      {"now(1)", "expected 0 arguments for now\nnow(1)\n^", 0},
      {"min(1)", "expected 2 or more arguments for min\nmin(1)\n^", 0},
      {"concat()", "expected 1 or more argument for concat\nconcat()\n^", 0},
  });
}

TEST(Fault, TellsWhatIsWrongWithAPattern) {
  expect_faults({
      {"sta =~ /(A/", "expected a regular expression: missing ): (A\nsta =~ /(A/\n        ^", 8},
      {"sta =~ /A[b/", "expected a regular expression: missing ]: [b\nsta =~ /A[b/\n         ^", 9},
      {"sta =~ /A**/", "expected a regular expression: bad repetition operator: **\nsta =~ /A**/\n         ^", 9},
      {"sta =~ /a\\8/", "expected a regular expression: invalid escape sequence: \\8\nsta =~ /a\\8/\n         ^", 9},
  });
}

TEST(Fault, TellsWhatIsWrongWithAFormat) {
  expect_faults({
      {"format('%q', 1)", "expected one of d i f e g x s %\nformat('%q', 1)\n         ^", 9},
      {"format('%d', sta)", "expected a number as the format wants\nformat('%d', sta)\n             ^", 13},
      {"format(1, 2)", "expected a text as argument 1 of format\nformat(1, 2)\n       ^", 7},
      {"format(('%n'), 2)", "expected one of d i f e g x s %\nformat(('%n'), 2)\n          ^", 10},
  });
}

TEST(Fault, CountsCharactersNotBytes) {
  expect_faults({
      {"'\xC3\xBC\xE2\x82\xAC' == foo", "expected a field, found no \"foo\"\n'\xC3\xBC\xE2\x82\xAC' == foo\n        ^",
       11},
  });
}

TEST(Fault, GivesEveryCharacterOneColumn) {
  expect_faults({
      {"1\t+\nfoo", "expected a field, found no \"foo\"\n1 + foo\n    ^", 4},
      {"'\x1b[31m' + foo", "expected a field, found no \"foo\"\n'?[31m' + foo\n          ^", 10},
      {"'\xC2\x9B' + foo", "expected a field, found no \"foo\"\n'?' + foo\n      ^", 7},
      {"'\x7F' + foo", "expected a field, found no \"foo\"\n'?' + foo\n      ^", 6},
  });
}

TEST(Fault, RefusesWhatIsNotUtf8) {
  expect_faults({
      {"'Z\xFCrich'", "expected UTF-8\n'Z?rich'\n  ^", 2},
      {"'\xC3", "expected UTF-8\n'?\n ^", 1},
  });
}

std::string digits(std::size_t n) { return std::string(n, '1'); }

TEST(Fault, ShowsAWindowOfALongExpression) {
  const std::string long_text = "'" + std::string(200, 'a') + "'";
  Fault fault{};

  EXPECT_EQ(compile("foo == " + long_text, dbINTEGER, &fault), nullptr);
  EXPECT_EQ(fault.text, "expected a field, found no \"foo\"\nfoo == '" + std::string(72, 'a') + "...\n^");

  EXPECT_EQ(compile(long_text + " == foo", dbINTEGER, &fault), nullptr);
  EXPECT_EQ(fault.text, "expected a field, found no \"foo\"\n..." + std::string(72, 'a') + "' == foo\n" +
                            std::string(80, ' ') + "^");
  EXPECT_EQ(fault.position, 206u);

  EXPECT_EQ(compile(long_text + " == foo == " + long_text, dbINTEGER, &fault), nullptr);
  EXPECT_EQ(fault.text, "expected a field, found no \"foo\"\n..." + std::string(35, 'a') + "' == foo == '" +
                            std::string(32, 'a') + "...\n" + std::string(43, ' ') + "^");
}

TEST(Fault, ShowsAnExpressionThatFitsWhole) {
  Fault fault{};
  EXPECT_EQ(compile("foo == " + digits(18) + std::string(55, ' '), dbINTEGER, &fault), nullptr);
  EXPECT_EQ(fault.text, "expected a field, found no \"foo\"\nfoo == " + digits(18) + std::string(55, ' ') + "\n^");
}

TEST(Fault, NeedNotBeAskedFor) { EXPECT_EQ(compile("1 +", dbINTEGER, nullptr), nullptr); }

}  // namespace
}  // namespace triglub::expression
