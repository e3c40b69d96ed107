// The values of expressions: kinds, conversions, comparisons, matches, nulls and failures.
#include <gtest/gtest.h>

#include <cmath>

#include "station.h"

namespace triglub::expression {
namespace {

void expect_texts(std::initializer_list<Case> cases) {
  for (const auto& [expression, text] : cases) EXPECT_EQ(text_at_station(expression), text) << expression;
}

TEST(Evaluate, KeepsIntegersButInDivision) {
  expect_texts({
      {"7 + 2", "9"},
      {"7 - 9", "-2"},
      {"7 * 2", "14"},
      {"7 / 2", "3.5"},
      {"8 / 2", "4"},
      {"7 % 2", "1"},
      {"-7 % 2", "-1"},
      {"7 % -2", "1"},
      {"7.5 % 2", "1.5"},
      {"-7.5 % 2", "-1.5"},
      {"7 + 0.5", "7.5"},
      {"0.5 + 7", "7.5"},
      {"9007199254740993 + 0", "9007199254740993"},
      {"-(3)", "-3"},
      {"-1.5", "-1.5"},
      {"--3", "3"},
  });
}

TEST(Evaluate, FailsWhereThereIsNoResult) {
  for (const std::string_view expression :
       {"1 / 0", "1 / 0.0", "1.5 / zero", "1 % 0", "1.5 % 0", "0 / 0", "9223372036854775807 + 1",
        "-9223372036854775807 - 2", "9223372036854775807 * 2", "-(-9223372036854775807 - 1)", "1e308 * 10",
        "-1e308 - 1e308", "odd + 1", "1e308 + 1e308", "1e-300 / 1e-308 * 1e305"}) {
    EXPECT_EQ(text_at_station(expression), "fails") << expression;
    EXPECT_FALSE(integer_at_station(expression)) << expression;
    EXPECT_FALSE(real_at_station(expression)) << expression;
    EXPECT_FALSE(compile(expression)->is_true(StationRecord(), scratch())) << expression;
  }
}

TEST(Evaluate, ComputesUpToTheEndsOfTheRange) {
  expect_texts({
      {"9223372036854775806 + 1", "9223372036854775807"},
      {"-9223372036854775807 - 1", "-9223372036854775808"},
      {"(-9223372036854775807 - 1) % -1", "0"},
      {"-9223372036854775807 * 1", "-9223372036854775807"},
  });
}

TEST(Evaluate, TakesANumberTooSmallForARealAsZero) {
  expect_texts({
      {"1e-400", "0"},
      {"-1e-400", "0"},
      {"'1e-400' == 0", "1"},
      {"int('-1e-400')", "0"},
      {"1e-400 == 0", "1"},
      {"4.9e-324 == 0", "0"},
      {"2.4e-324 == 0", "1"},
  });
}

TEST(Evaluate, ComparesNumbers) {
  expect_texts({
      {"1 < 2", "1"},
      {"2 < 2", "0"},
      {"2 <= 2", "1"},
      {"3 <= 2", "0"},
      {"3 > 2", "1"},
      {"2 > 2", "0"},
      {"2 >= 2", "1"},
      {"1 >= 2", "0"},
      {"1 == 1.0", "1"},
      {"1 != 1.0", "0"},
      {"1 < 1.5", "1"},
      {"-0.0 == 0", "1"},
      {"9007199254740993 == 9007199254740992", "0"},
      {"1 < 2 < 3", "1"},
      {"3 > 2 > 1", "0"},
  });
}

TEST(Evaluate, NumberThatIsNoneDiffersFromAll) {
  expect_texts({
      {"odd == odd", "0"},
      {"odd != odd", "1"},
      {"odd < 1", "0"},
      {"odd >= 1", "0"},
      {"odd <= 1", "0"},
      {"odd > 1", "0"},
  });
}

TEST(Evaluate, ComparesTextsByBytes) {
  expect_texts({
      {"'a' < 'b'", "1"},
      {"'B' < 'a'", "1"},
      {"'10' < '9'", "1"},
      {"'a' == 'a '", "0"},
      {"sta == 'AAK'", "1"},
      {"sta != 'AAK'", "0"},
      {"sta < 'AAKA'", "1"},
      {"'\xC3\xBC' > 'z'", "1"},
      {"nothing == ''", "1"},
  });
}

TEST(Evaluate, ComparesNumberToTextAsNumbersWhereTheTextIsOne) {
  expect_texts({
      {"code == 7", "1"},
      {"7 == code", "1"},
      {"code < 8", "1"},
      {"8 > code", "1"},
      {"8 < code", "0"},
      {"digits == 42.5", "1"},
      {"digits > 42", "1"},
      {"42 < digits", "1"},
      {"' +7 ' == 7", "1"},
      {"'7e0' == 7", "1"},
      {"'9007199254740993' == 9007199254740992", "0"},
      {"'9223372036854775808' > 9223372036854775807", "0"},  // beyond integers both are reals, and the same one
  });
}

TEST(Evaluate, ComparesNumberToTextAsTextsWhereTheTextIsNone) {
  expect_texts({
      {"7 == '7x'", "0"},
      {"7 < '7x'", "1"},
      {"'7x' > 7", "1"},
      {"'' < 7", "1"},
      {"inid < '0007x'", "1"},  // by the field's own text
      {"inid > '0006x'", "1"},
      {"inid + 0 > '0007x'", "1"},  // 7, not 0007
      {"(inid) < '0007x'", "1"},
      {"'inf' == 1", "0"},
      {"1e300 < 'inf'", "1"},
      {"elev < '1.6450x'", "1"},
      {"elev * 1 < '1.645x'", "1"},
      {"elev * 1 > '1.6450x'", "0"},
  });
}

TEST(Evaluate, MatchesTheWholeOfTheTrimmedText) {
  expect_texts({
      {"sta =~ /AAK/", "1"},        {"sta =~ /AA/", "0"},
      {"sta =~ /A/", "0"},          {"sta =~ /AA./", "1"},
      {"sta =~ /A.*/", "1"},        {"sta =~ /AAK|ANMO/", "1"},
      {"sta =~ /AA|K/", "0"},       {"sta !~ /AAK/", "0"},
      {"sta !~ /AA/", "1"},         {"' AAK ' =~ /AAK/", "1"},
      {"' AAK ' =~ /A.K/", "1"},    {"' AAK ' =~ / AAK /", "0"},
      {"nothing =~ //", "1"},       {"'  ' =~ //", "1"},
      {"sta =~ //", "0"},           {"sta !~ //", "1"},
      {"'a/b' =~ /a\\/b/", "1"},    {"'a/b' =~ /a\\/./", "1"},
      {"'a.b' =~ /a\\.b/", "1"},    {"'axb' =~ /a\\.b/", "0"},
      {"place =~ /Z.rich ./", "1"}, {"place =~ /Z\xC3\xBCrich .*/", "1"},
      {"sta =~ /(?i)aak/", "1"},    {"concat(sta, '.', chan) =~ /AAK\\.B../", "1"},
  });
}

TEST(Evaluate, MatchesNumbersAsTheirText) {
  expect_texts({
      {"inid =~ /0007/", "1"},
      {"(inid) =~ /0007/", "1"},
      {"inid =~ /7/", "0"},
      {"inid + 0 =~ /7/", "1"},
      {"7 =~ /7/", "1"},
      {"0.50 =~ /0\\.5/", "1"},
      {"elev =~ /1\\.6450/", "1"},
      {"-elev =~ /-1\\.645/", "1"},
      {"offdate =~ /-1/", "1"},
      {"1 == 1 =~ /1/", "1"},
      {"sta =~ /AAK/ =~ /1/", "1"},
      {"sta =~ /AAK/ =~ /0/", "0"},
  });
}

TEST(Evaluate, LogicGivesOneOrZero) {
  expect_texts({
      {"5 && 7", "1"},      {"5 && 0", "0"},      {"0 && 5", "0"},      {"0 || 7", "1"},         {"5 || 0", "1"},
      {"0 || 0", "0"},      {"!5", "0"},          {"!0", "1"},          {"!0.0", "1"},           {"!0.5", "0"},
      {"0.5 && 1", "1"},    {"0.5 || 0", "1"},    {"!!7", "1"},         {"1 - 1 || 2 - 2", "0"}, {"1 && 2 && 3", "1"},
      {"1 && 0 && 3", "0"}, {"0 && 1 || 1", "1"}, {"1 || 0 && 0", "1"}, {"(5 && 7) + 1", "2"},   {"odd && 1", "1"},
  });
}

TEST(Evaluate, EvaluatesOnlyTheSideThatIsNeeded) {
  expect_texts({
      {"0 && 1 / 0", "0"},
      {"1 && 1 / 0", "fails"},
      {"1 || 1 / 0", "1"},
      {"0 || 1 / 0", "fails"},
      {"1 ? 2 : 1 / 0", "2"},
      {"0 ? 1 / 0 : 2", "2"},
      {"0 ? 2 : 1 / 0", "fails"},
      {"none != 0 && 10 / none > 1", "0"},
      {"none == 0 || 10 / none > 1", "1"},
      {"0 && 1 / 0 || 1", "1"},
      {"1 || 1 / 0 && 1 / 0", "1"},
  });
}

TEST(Evaluate, ConditionalIsRealWhenOneSideIs) {
  expect_texts({
      {"(1 ? 5 : 0.5) / 2", "2.5"},
      {"1 ? 3 : 4", "3"},
      {"0 ? 3 : 4", "4"},
      {"(1 ? 9007199254740993 : 0.5)", "9007199254740992"},
      {"(0 ? 0.5 : 9007199254740993)", "9007199254740992"},
      {"1 ? 'a' : 'b'", "a"},
      {"sta =~ /AAK/ ? chan : sta", "BHZ"},
      {"0.0 ? 'a' : 'b'", "b"},
      {"0 ? 1 : 0 ? 2 : 3", "3"},
      {"1 ? 0 ? 1 : 2 : 3", "2"},
      {"1 + (0 ? 1 : 2) * 3", "7"},
  });
}

TEST(Evaluate, TextOfABareFieldIsItsOwn) {
  expect_texts({
      {"sta", "AAK"},
      {"lat", "42.6375"},
      {"site.lat", "42.6375"},
      {"elev", "1.6450"},
      {"(elev)", "1.6450"},
      {"((inid))", "0007"},
      {"concat(elev)", "1.6450"},
      {"str(elev)", "1.6450"},
      {"str((elev))", "1.6450"},
      {"time", "978307200.00000"},
      {"offdate", "-1"},
      {"refsta", "-"},
  });
}

TEST(Evaluate, TextOfAnyOtherNumberIsTheShortest) {
  expect_texts({
      {"elev + 0", "1.645"},
      {"1 ? elev : elev", "1.645"},
      {"inid + 0", "7"},
      {"real(inid)", "7"},
      {"0.1 + 0.2", "0.30000000000000004"},
      {"1.0", "1"},
      {"time + 0", "978307200"},
      {"1e22 * 10", "1e+23"},
      {"1 / 3", "0.3333333333333333"},
      {"-zero", "0"},
      {"100000.0", "1e+05"},
      {"max(elev, 0)", "1.645"},
  });
}

TEST(Evaluate, ConvertsResultsToIntegers) {
  EXPECT_EQ(integer_at_station("7"), 7);
  EXPECT_EQ(integer_at_station("2.9"), 2);
  EXPECT_EQ(integer_at_station("-2.9"), -2);
  EXPECT_EQ(integer_at_station("code"), 7);
  EXPECT_EQ(integer_at_station("digits"), 42);
  EXPECT_EQ(integer_at_station("'9007199254740993'"), 9007199254740993);
  EXPECT_EQ(integer_at_station("9223372036854774784.0"), 9223372036854774784);
  EXPECT_EQ(integer_at_station("-9223372036854775808.0"), INT64_MIN);
  for (const std::string_view expression :
       {"9223372036854775808.0", "-9223372036854777856.0", "1e19", "odd", "sta", "nothing", "'12x'", "'1e999'", "'nan'",
        "'inf'", "'0x10'", "'+-1'", "'--1'"}) {
    EXPECT_FALSE(integer_at_station(expression)) << expression;
  }
}

TEST(Evaluate, ConvertsResultsToReals) {
  EXPECT_EQ(real_at_station("7"), 7.0);
  EXPECT_EQ(real_at_station("lat"), 42.6375);
  EXPECT_EQ(real_at_station("digits"), 42.5);
  EXPECT_EQ(real_at_station("' -4.25e1 '"), -42.5);
  EXPECT_EQ(real_at_station("endtime"), 9999999999.999);
  EXPECT_TRUE(std::isnan(real_at_station("odd").value()));  // a field is handed on as it is
  for (const std::string_view expression : {"sta", "nothing", "'1 2'", "'inf'", "'-nan'"}) {
    EXPECT_FALSE(real_at_station(expression)) << expression;
  }
}

TEST(Evaluate, LeavesTheResultAloneWhenItFails) {
  std::int64_t integer = 11;
  double real = 1.5;
  std::string text = "before";
  const auto compiled = compile("1 / none");
  ASSERT_NE(compiled, nullptr);
  EXPECT_FALSE(compiled->integer(StationRecord(), scratch(), &integer));
  EXPECT_FALSE(compiled->real(StationRecord(), scratch(), &real));
  EXPECT_FALSE(compiled->text(StationRecord(), scratch(), &text));
  EXPECT_EQ(integer, 11);
  EXPECT_EQ(real, 1.5);
  EXPECT_EQ(text, "before");
}

TEST(Evaluate, NullsAreTheirNullValuesAndAreTold) {
  expect_texts({
      {"offdate", "-1"},
      {"offdate == -1", "1"},
      {"offdate < ondate", "1"},
      {"endtime > time", "1"},
      {"refsta == '-'", "1"},
      {"is_null(offdate)", "1"},
      {"is_null((endtime))", "1"},
      {"is_null(refsta)", "1"},
      {"is_null(ondate)", "0"},
      {"is_null(offdate) ? 'open' : str(offdate)", "open"},
      {"!is_null(sta) && is_null(refsta)", "1"},
  });
}

TEST(Evaluate, TruthIsANumberOtherThanZero) {
  const auto is_true = [](std::string_view expression) {
    return compile(expression)->is_true(StationRecord(), scratch());
  };
  for (const std::string_view yes :
       {"1", "-1", "0.5", "code", "'0.1'", "sta =~ /AAK/", "sta !~ /ANMO/", "inid =~ /0007/", "lat > 40"}) {
    EXPECT_TRUE(is_true(yes)) << yes;
  }
  for (const std::string_view no : {"0", "0.0", "-0.0", "'0'", "'0.00'", "sta", "''", "1/0", "odd", "sta =~ /ANMO/",
                                    "sta !~ /A.*/", "is_null(sta)"}) {
    EXPECT_FALSE(is_true(no)) << no;
  }
}

TEST(Evaluate, TellsAMatchOfOneField) {
  const StationNames names;
  const auto plain = compile("sta =~ /AAK/");
  ASSERT_TRUE(plain->field_match());
  EXPECT_EQ(plain->field_match()->field, names.find("sta")->id);
  EXPECT_FALSE(plain->field_match()->negated);
  ASSERT_NE(plain->field_match()->matcher->literal(), nullptr);
  EXPECT_EQ(*plain->field_match()->matcher->literal(), "AAK");

  const auto negated = compile("((inid) !~ /0.*/)");
  ASSERT_TRUE(negated->field_match());
  EXPECT_EQ(negated->field_match()->field, names.find("inid")->id);
  EXPECT_TRUE(negated->field_match()->negated);
  EXPECT_EQ(negated->field_match()->matcher->literal(), nullptr);
  EXPECT_TRUE(negated->field_match()->matcher->matches("0007"));

  for (const std::string_view other :
       {"sta", "sta == 'AAK'", "!(sta =~ /AAK/)", "sta =~ /A/ =~ /0/", "trim(sta) =~ /AAK/", "sta =~ /AAK/ && 1"}) {
    EXPECT_FALSE(compile(other)->field_match()) << other;
  }
}

TEST(Evaluate, TakesEveryResultTypeAndNoOther) {
  for (const int type : {dbINTEGER, dbREAL, dbTIME, dbYEARDAY, dbSTRING})
    EXPECT_NE(compile("1", type), nullptr) << type;
  for (const int type : {0, 1, 7, -1}) {
    Fault fault{};
    EXPECT_EQ(compile("1", type, &fault), nullptr) << type;
    EXPECT_EQ(fault.text, "expected a result type, not " + std::to_string(type) + "\n1\n^");
  }
}

TEST(Evaluate, OutlivesTheTextItWasMadeOf) {
  std::string text = "concat('a rather long literal text', sta) =~ /a rather long literal textAAK/";
  const auto compiled = compile(text);
  text.assign(text.size(), '#');
  ASSERT_NE(compiled, nullptr);
  EXPECT_TRUE(compiled->is_true(StationRecord(), scratch()));
}

}  // namespace
}  // namespace triglub::expression
