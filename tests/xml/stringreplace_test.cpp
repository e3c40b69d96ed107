#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/random_seed.h"
#include "xml.h"

namespace {

struct Replacement {
  const char* text;
  const char* from;
  const char* to;
  const char* result;
};

TEST(StringReplace, ReplacesFromLeftToRightBehindWhatWasPutIn) {
  const Replacement cases[] = {
      {"", "", "x", ""},
      {"", "a", "x", ""},
      {"abc", "", "x", "abc"},
      {"abc", "d", "x", "abc"},
      {"aaa", "a", "aa", "aaaaaa"},
      {"aaa", "a", "", ""},
      {"aaa", "aa", "b", "ba"},
      {"aaaa", "aa", "a", "aa"},
      {"a-b-c", "-", "--", "a--b--c"},
      {"-abc", "-", "+", "+abc"},
      {"abc-", "-", "+", "abc+"},
      {"abab", "ab", "ba", "baba"},
      {"abc", "abc", "abc", "abc"},
      {"ab", "abc", "x", "ab"},
  };
  for (const Replacement& item : cases) {
    std::string text = item.text;
    stringreplace(text, item.from, item.to);
    EXPECT_EQ(text, item.result) << item.text << ": " << item.from << " by " << item.to;
  }
}

// The definition of the operation, word for word.
void replace_plainly(std::string& text, const std::string& from, const std::string& to) {
  if (from.empty()) return;
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

TEST(StringReplace, AgreesWithReplacingInPlaceOnRandomTexts) {
  std::mt19937 random(triglub_test::random_seed());
  const auto random_text = [&random](std::size_t longest) {
    std::string text(random() % (longest + 1), ' ');
    for (char& c : text) c = static_cast<char>('a' + random() % 2);
    return text;
  };
  for (int i = 0; i < 5000; ++i) {
    std::string text = random_text(12);
    std::string expected = text;
    const std::string from = random_text(3);
    const std::string to = random_text(3);
    SCOPED_TRACE(testing::Message() << text << ": " << from << " by " << to);
    stringreplace(text, from, to);
    replace_plainly(expected, from, to);
    ASSERT_EQ(text, expected);
  }
}

TEST(StringReplace, TakesOneTextForEveryArgument) {
  std::string text = "ab";
  stringreplace(text, text, text);
  EXPECT_EQ(text, "ab");
}

}  // namespace
