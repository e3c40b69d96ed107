// Text to trees: precedence, literals, and what is nearly an expression.
#include <gtest/gtest.h>

#include "tree_text.h"

namespace triglub::expression {
namespace {

struct TreeCase {
  std::string_view expression;
  std::string_view tree;
};

void expect_trees(std::initializer_list<TreeCase> cases) {
  for (const auto& [expression, tree] : cases) EXPECT_EQ(tree_text(expression), tree) << expression;
}

TEST(Parse, BindsTighterOperatorsFirst) {
  expect_trees({
      {"1 + 2 * 3", "(+ 1 (* 2 3))"},
      {"1 * 2 + 3", "(+ (* 1 2) 3)"},
      {"1 + 2 < 3", "(< (+ 1 2) 3)"},
      {"1 < 2 == 3 > 4", "(== (< 1 2) (> 3 4))"},
      {"a == b =~ /1/", "(=~ (== f:a f:b) /1/)"},
      {"a =~ /1/ && b", "(&& (=~ f:a /1/) f:b)"},
      {"a && b || c && d", "(|| (&& f:a f:b) (&& f:c f:d))"},
      {"a || b ? c : d", "(? (|| f:a f:b) f:c f:d)"},
      {"- a * b", "(* (- f:a) f:b)"},
      {"!a == b", "(== (! f:a) f:b)"},
      {"(1 + 2) * 3", "(* (+ 1 2) 3)"},
      {"a =~ /x/ && b !~ /y/ || c", "(|| (&& (=~ f:a /x/) (!~ f:b /y/)) f:c)"},
  });
}

TEST(Parse, ChainsOperatorsOfOneLevelToTheLeft) {
  expect_trees({
      {"1 - 2 + 3 - 4", "(- (+ (- 1 2) 3) 4)"},
      {"8 / 4 % 3 * 2", "(* (% (/ 8 4) 3) 2)"},
      {"1 < 2 <= 3 > 4 >= 5", "(>= (> (<= (< 1 2) 3) 4) 5)"},
      {"1 == 2 != 3", "(!= (== 1 2) 3)"},
      {"a =~ /x/ =~ /1/", "(=~ (=~ f:a /x/) /1/)"},
      {"a && b && c", "(&& (&& f:a f:b) f:c)"},
      {"a || b || c", "(|| (|| f:a f:b) f:c)"},
  });
}

TEST(Parse, ChainsConditionalsToTheRight) {
  expect_trees({
      {"a ? b : c ? d : e", "(? f:a f:b (? f:c f:d f:e))"},
      {"a ? b ? c : d : e", "(? f:a (? f:b f:c f:d) f:e)"},
      {"(a ? b : c) ? d : e", "(? (? f:a f:b f:c) f:d f:e)"},
  });
}

TEST(Parse, ReadsNumbers) {
  expect_trees({
      {"0", "0"},
      {"007", "7"},
      {"9223372036854775807", "9223372036854775807"},
      {"9223372036854775808", "0: expected an integer up to 9223372036854775807"},
      {"1.5", "r:1.5"},
      {"1.", "r:1"},
      {".5", "r:0.5"},
      {"1e3", "r:1000"},
      {"1E-2", "r:0.01"},
      {"1.5e+2", "r:150"},
      {"1e999", "0: expected a number within the range of reals"},
      {"1e", "1: expected the end of the number"},
      {"1e+", "1: expected the end of the number"},
      {"12abc", "2: expected the end of the number"},
      {"0x10", "1: expected the end of the number"},
      {"1.2.3", "3: expected the end of the number"},
      {".", "0: expected a value or an operator"},
      {"--1", "(- (- 1))"},
      {"+1", "0: expected a value"},
  });
}

TEST(Parse, ReadsTextsWithoutEscapes) {
  expect_trees({
      {"\"a'b\"", "\"a'b\""},
      {"'a\"b'", "\"a\"b\""},
      {"'a\\'", "\"a\\\""},
      {"''", "\"\""},
      {"'a", "0: expected a closing '"},
      {"  \"a'", "2: expected a closing \""},
  });
}

TEST(Parse, ReadsNamesBareAndQualified) {
  expect_trees({
      {"sta", "f:sta"},
      {"_x9", "f:_x9"},
      {"site.lat", "f:site.lat"},
      {"site.", "5: expected a field name behind the point"},
      {"site.9", "5: expected a field name behind the point"},
      {"site . lat", "5: expected a value or an operator"},
      {"a.b.c", "3: expected a value or an operator"},
      {"min", "f:min"},
      {"ondate::offdate", "6: expected an operator or the end"},
  });
}

TEST(Parse, ReadsPatternsUpToAPlainSlash) {
  expect_trees({
      {"a=~/x/", "(=~ f:a /x/)"},
      {"a =~   /x y/", "(=~ f:a /x y/)"},
      {"a =~ //", "(=~ f:a //)"},
      {"a =~ /x\\/y/", "(=~ f:a /x\\/y/)"},
      {"a =~ /x\\\\/ && b", "(&& (=~ f:a /x\\\\/) f:b)"},
      {"a =~ /\"'/", "(=~ f:a /\"'/)"},
      {"a =~ /x/ || b / 2", "(|| (=~ f:a /x/) (/ f:b 2))"},
      {"a =~ x", "5: expected a regular expression between slashes"},
      {"a =~ 'x'", "5: expected a regular expression between slashes"},
      {"a =~", "4: expected a regular expression between slashes"},
      {"a =~ /x", "5: expected a closing /"},
      {"a =~ /x\\/", "5: expected a closing /"},
      {"a =~ /x\\", "5: expected a closing /"},
      {"a / b / c", "(/ (/ f:a f:b) f:c)"},
  });
}

TEST(Parse, LetsNothingTighterFollowAPattern) {
  expect_trees({
      {"a =~ /x/ / 2", "9: expected parentheses around the match before /"},
      {"a =~ /x/ == 1", "9: expected parentheses around the match before =="},
      {"b && a !~ /x/ + 1", "14: expected parentheses around the match before +"},
      {"(a =~ /x/) == 1", "(== (=~ f:a /x/) 1)"},
      {"1 + (a =~ /x/) * 2", "(+ 1 (* (=~ f:a /x/) 2))"},
  });
}

TEST(Parse, ReadsCalls) {
  expect_trees({
      {"now()", "(now)"},
      {"min(1, a, 2+3)", "(min 1 f:a (+ 2 3))"},
      {"min (1)", "(min 1)"},
      {"f(g(1), h(2, i(3)))", "(f (g 1) (h 2 (i 3)))"},
      {"f(1,)", "4: expected a value"},
      {"f(,1)", "2: expected a value"},
      {"f(1 2)", "4: expected an operator, a comma or )"},
      {"f(1", "3: expected an operator, a comma or )"},
      {"f(", "2: expected a value"},
      {"f)", "1: expected an operator or the end"},
      {"1(2)", "1: expected an operator or the end"},
  });
}

TEST(Parse, RefusesWhatIsNearlyAnExpression) {
  expect_trees({
      {"", "0: expected a value"},
      {"  \t\n ", "5: expected a value"},
      {"1 +", "3: expected a value"},
      {"* 1", "0: expected a value"},
      {"1 2", "2: expected an operator or the end"},
      {"a = 1", "2: expected == or =~"},
      {"a & b", "2: expected &&"},
      {"a | b", "2: expected ||"},
      {"a ~ b", "2: expected a value or an operator"},
      {"a ? b", "5: expected an operator or :"},
      {"a ? b :", "7: expected a value"},
      {"a ? : b", "4: expected a value"},
      {"a : b", "2: expected an operator or the end"},
      {"(1", "2: expected an operator or )"},
      {"1)", "1: expected an operator or the end"},
      {"()", "1: expected a value"},
      {"a b", "2: expected an operator or the end"},
      {"1 ! 2", "2: expected an operator or the end"},
      {"a # b", "2: expected a value or an operator"},
      {"Z\xC3\xBCrich", "1: expected a value or an operator"},
      {std::string_view("1\0", 2), "1: expected a value or an operator"},
  });
}

TEST(Parse, TakesAnyBlanksOrNone) {
  expect_trees({
      {"a<-1", "(< f:a (- 1))"},
      {"a!=!b", "(!= f:a (! f:b))"},
      {"a==-1&&!b", "(&& (== f:a (- 1)) (! f:b))"},
      {"\n a\t==\r\n1\v\f", "(== f:a 1)"},
  });
}

}  // namespace
}  // namespace triglub::expression
