// The test of =~ : literals are told from patterns, and mean the same.
#include "engine/expression/matcher.h"

#include <gtest/gtest.h>
#include <re2/re2.h>

#include <random>

#include "platform/text.h"
#include "support/random_seed.h"

namespace triglub::expression {
namespace {

TEST(Matcher, HoldsALiteralWhenThePatternIsOne) {
  struct {
    std::string_view pattern;
    std::string_view literal;
  } const cases[] = {{"", ""},
                     {"AAK", "AAK"},
                     {"-1", "-1"},
                     {"00", "00"},
                     {"a b", "a b"},
                     {"a\\.b", "a.b"},
                     {"a\\/b", "a/b"},
                     {"\\\\", "\\"},
                     {"\\-\\ \\#", "- #"},
                     {"42\\.5000", "42.5000"},
                     {"Z\xC3\xBCrich", "Z\xC3\xBCrich"},
                     {"a&<>\"'", "a&<>\"'"}};
  for (const auto& [pattern, literal] : cases) {
    PatternFault fault;
    const auto matcher = make_matcher(pattern, &fault);
    ASSERT_NE(matcher, nullptr) << pattern;
    ASSERT_NE(matcher->literal(), nullptr) << pattern;
    EXPECT_EQ(*matcher->literal(), literal);
  }
}

TEST(Matcher, HoldsNoLiteralForWhatMayBeMore) {
  for (const std::string_view pattern : {"A.", "A+", "A*", "A?", "(A)", "A|B", "[A]", "A{2}", "^A", "A$", "\\d", "\\n",
                                         "\\Qa\\E", "\\x41", "(?i)a", "\\pN", "\\bA"}) {
    PatternFault fault;
    const auto matcher = make_matcher(pattern, &fault);
    ASSERT_NE(matcher, nullptr) << pattern << ": " << fault.reason;
    EXPECT_EQ(matcher->literal(), nullptr) << pattern;
  }
}

TEST(Matcher, RefusesWhatIsNoRegularExpression) {
  for (const std::string_view pattern :
       {"(", ")", "[", "*", "a{2000}", "\\", "\\8", "\\y", "(?<a)", "a\xFF", "a.\xFF"}) {
    PatternFault fault;
    EXPECT_EQ(make_matcher(pattern, &fault), nullptr) << pattern;
    EXPECT_FALSE(fault.reason.empty()) << pattern;
    EXPECT_LE(fault.offset, pattern.size()) << pattern;
  }
}

TEST(Matcher, TrimsTheTextAndNotThePattern) {
  PatternFault fault;
  for (const std::string_view pattern : {"AAK", "A.K"}) {
    const auto matcher = make_matcher(pattern, &fault);
    EXPECT_TRUE(matcher->matches("AAK"));
    EXPECT_TRUE(matcher->matches(" \tAAK\r\n"));
    EXPECT_FALSE(matcher->matches("xAAK"));
    EXPECT_FALSE(matcher->matches("AAKx"));
    EXPECT_FALSE(matcher->matches(""));
  }
  EXPECT_FALSE(make_matcher(" AAK", &fault)->matches(" AAK"));
  EXPECT_FALSE(make_matcher(" A.K", &fault)->matches(" AAK"));
}

TEST(Matcher, TakesNoMoreThanLinearTime) {
  PatternFault fault;
  const auto matcher = make_matcher("(a*)*(a*)*(a*)*b", &fault);
  ASSERT_NE(matcher, nullptr);
  EXPECT_FALSE(matcher->matches(std::string(1000000, 'a')));
  EXPECT_TRUE(matcher->matches(std::string(1000000, 'a') + "b"));
}

std::string random_text(std::mt19937* random, std::string_view alphabet, std::size_t longest) {
  std::string text(std::uniform_int_distribution<std::size_t>(0, longest)(*random), ' ');
  for (char& c : text) c = alphabet[std::uniform_int_distribution<std::size_t>(0, alphabet.size() - 1)(*random)];
  return text;
}

// Where the pattern has no escaped slash it is RE2's own: whether it compiles, and what it matches.
TEST(Matcher, AgreesWithPlainRe2OnRandomPatterns) {
  std::mt19937 random(triglub_test::random_seed());
  for (int i = 0; i < 40000; ++i) {
    const std::string pattern = random_text(&random, "ab.\\-_ 1{}]*|\n\xC3\xBC", 6);
    const RE2 plain(pattern, RE2::Quiet);
    PatternFault fault;
    const auto matcher = make_matcher(pattern, &fault);
    ASSERT_EQ(matcher != nullptr, plain.ok()) << pattern;
    if (matcher == nullptr) continue;
    std::string text = random_text(&random, "ab.\\-_ 1{}]|\n", 6);
    if (matcher->literal() != nullptr && i % 2 == 0) text = *matcher->literal();
    const std::string core(trimmed(text));
    ASSERT_EQ(matcher->matches(text), RE2::FullMatch(core, plain)) << "/" << pattern << "/ on \"" << text << "\"";
  }
}

}  // namespace
}  // namespace triglub::expression
