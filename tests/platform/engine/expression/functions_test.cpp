// Every function at ordinary arguments, at the ends of its domain and beyond.
#include <gtest/gtest.h>

#include "station.h"

namespace triglub::expression {
namespace {

void expect_texts(std::initializer_list<Case> cases) {
  for (const auto& [expression, text] : cases) EXPECT_EQ(text_at_station(expression), text) << expression;
}

TEST(Functions, OfNumbersKeepTheirKind) {
  expect_texts({
      {"abs(-3)", "3"},
      {"abs(3)", "3"},
      {"abs(-3.5)", "3.5"},
      {"abs(-9223372036854775807)", "9223372036854775807"},
      {"abs(-9223372036854775807 - 1)", "fails"},
      {"abs(-9007199254740993)", "9007199254740993"},
      {"min(3, 1, 2)", "1"},
      {"max(3, 1, 2)", "3"},
      {"min(3, 1.5)", "1.5"},
      {"max(3, 1.5)", "3"},
      {"max(9007199254740993, 1)", "9007199254740993"},
      {"max(1, 2) % 2", "0"},
      {"min(lat, inid)", "7"},
  });
}

TEST(Functions, RoundHalvesAwayFromZero) {
  expect_texts({
      {"round(2.5)", "3"},    {"round(-2.5)", "-3"},   {"round(2.4)", "2"},
      {"round(0.5)", "1"},    {"round(3.5)", "4"},     {"floor(2.9)", "2"},
      {"floor(-2.1)", "-3"},  {"ceil(2.1)", "3"},      {"ceil(-2.9)", "-2"},
      {"round(7)", "7"},      {"int(2.9)", "2"},       {"int(-2.9)", "-2"},
      {"int(7)", "7"},        {"int(code)", "7"},      {"int('7.9')", "7"},
      {"real(code)", "7"},    {"real('1.50')", "1.5"}, {"real(7) / 2", "3.5"},
      {"int(1e19)", "fails"}, {"int(sta)", "fails"},   {"real(sta)", "fails"},
      {"real('')", "fails"},  {"int(odd)", "fails"},   {"int(' 9007199254740993 ')", "9007199254740993"},
  });
}

TEST(Functions, RoundGivesARealWhateverItIsGiven) {
  // A real, so 9007199254740993 loses its last digit, and int() of what does not fit fails.
  expect_texts({{"round(9007199254740993)", "9007199254740992"}, {"floor(1) / 2", "0.5"}, {"ceil(1) % 2", "1"}});
}

TEST(Functions, OfAnalysisFailOutsideTheirDomain) {
  expect_texts({
      {"sqrt(16)", "4"},
      {"sqrt(0)", "0"},
      {"sqrt(-1)", "fails"},
      {"pow(2, 10)", "1024"},
      {"pow(2, 0.5) == sqrt(2)", "1"},
      {"pow(0, 0)", "1"},
      {"pow(0, -1)", "fails"},
      {"pow(-1, 0.5)", "fails"},
      {"pow(10, 400)", "fails"},
      {"log10(1000)", "3"},
      {"log10(0)", "fails"},
      {"log10(-1)", "fails"},
      {"exp(0)", "1"},
      {"exp(710)", "fails"},
      {"exp(-1000)", "0"},
      {"sin(0)", "0"},
      {"cos(0)", "1"},
      {"sin(odd)", "fails"},
      {"round(sin(3.141592653589793 / 2) * 1000)", "1000"},
      {"atan2(0, 1)", "0"},
      {"atan2(1, 0) * 2", "3.141592653589793"},
      {"atan2(0, 0)", "0"},
  });
}

TEST(Functions, ConcatAndStrTakeNumbers) {
  expect_texts({
      {"concat(sta, '.', chan)", "AAK.BHZ"},
      {"concat(sta)", "AAK"},
      {"concat(1, ' ', 0.50, ' ', elev, ' ', elev + 0)", "1 0.5 1.6450 1.645"},
      {"concat(1 < 2, 2 < 1)", "10"},
      {"concat('', '')", ""},
      {"str(7)", "7"},
      {"str(-0.5)", "-0.5"},
      {"str('x')", "x"},
      {"str(inid) == '0007'", "1"},
      {"length(str(inid))", "4"},
      {"concat(concat(sta, '-'), concat('-', chan))", "AAK--BHZ"},
  });
}

TEST(Functions, CaseChangesAsciiLettersOnly) {
  expect_texts({
      {"upper('aZ9 \xC3\xBC')", "AZ9 \xC3\xBC"},
      {"lower('aZ9 \xC3\x9C')", "az9 \xC3\x9C"},
      {"upper('')", ""},
      {"lower('@[`{')", "@[`{"},
      {"upper('@[`{')", "@[`{"},
  });
}

TEST(Functions, TrimTakesWhiteSpaceOffBothEnds) {
  expect_texts({{"trim('  a b\t')", "a b"}, {"trim('   ')", ""}, {"trim('a')", "a"}});
}

TEST(Functions, SubstrAndLengthCountCharacters) {
  expect_texts({
      {"length('')", "0"},
      {"length(sta)", "3"},
      {"length(place)", "8"},
      {"substr(sta, 0, 2)", "AA"},
      {"substr(sta, 1, 1)", "A"},
      {"substr(sta, 2, 9)", "K"},
      {"substr(sta, 3, 1)", ""},
      {"substr(sta, 9, 1)", ""},
      {"substr(sta, 0, 0)", ""},
      {"substr(place, 0, 2)", "Z\xC3\xBC"},
      {"substr(place, 1, 1)", "\xC3\xBC"},
      {"substr(place, 2, 4)", "rich"},
      {"substr(place, 7, 1)", "\xE2\x82\xAC"},
      {"substr(place, 7, 9223372036854775807)", "\xE2\x82\xAC"},
      {"substr(place, 9223372036854775807, 1)", ""},
      {"substr(sta, -1, 2)", "fails"},
      {"substr(sta, 0, -1)", "fails"},
  });
}

TEST(Functions, ReplaceTakesEveryOccurrenceFromTheLeft) {
  expect_texts({
      {"replace('a.b.c', '.', '-')", "a-b-c"},
      {"replace('aaa', 'aa', 'b')", "ba"},
      {"replace('abc', 'x', 'y')", "abc"},
      {"replace('abc', 'abc', '')", ""},
      {"replace('abc', '', 'x')", "abc"},
      {"replace('aa', 'a', 'aa')", "aaaa"},
      {"replace('', 'a', 'b')", ""},
  });
}

TEST(Functions, XmlMakesATextSafeAsContent) {
  expect_texts({
      {"xml(markup)", "a &lt; b &amp; c"},
      {"xml('>\"')", "&gt;\""},
      {"xml(\"'\")", "'"},
      {"xml(place)", "Z\xC3\xBCrich \xE2\x82\xAC"},
      {"xml('a\tb\nc\rd')", "a\tb\nc\rd"},
      {"xml('a\x01\x08\x0B\x0C\x0E\x1F"
       "b\x7F')",
       "ab\x7F"},
      {"xml('\xEF\xBF\xBE\xEF\xBF\xBF\xEF\xBF\xBD')", "\xEF\xBF\xBD"},
      {"xml('\xF0\x9F\x8C\x8D<')", "\xF0\x9F\x8C\x8D&lt;"},
      {"xml(xml('&'))", "&amp;amp;"},
      {"xml('')", ""},
  });
}

// What a record hands over is UTF-8; a document stays well-formed when it is not.
class BrokenRecord : public StationRecord {
 public:
  std::string_view text(int /*field*/) const override { return "a\xFF<\xC3"; }
};

TEST(Functions, XmlDropsBytesThatAreNoCharacter) {
  std::string text;
  ASSERT_TRUE(compile("xml(sta)")->text(BrokenRecord(), scratch(), &text));
  EXPECT_EQ(text, "a&lt;");
}

}  // namespace
}  // namespace triglub::expression
