// Words and parts of texts, with each set of separators that the formats have.
#include "base/words.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "base/characters.h"

namespace triglub {
namespace {

using Texts = std::vector<std::string_view>;

TEST(TakeWord, TakesWordAfterWord) {
  const struct {
    std::string_view text;
    std::string_view separators;
    Texts words;
  } cases[] = {
      {"", " ", {}},
      {"  ", " ", {}},
      {"one", " ", {"one"}},
      {"one two", " ", {"one", "two"}},
      {"  one   two  ", " ", {"one", "two"}},
      {"a\tb c", " ", {"a\tb", "c"}},
      {" \ta", " ", {"\ta"}},
      {"a\tb c", kBlanks, {"a", "b", "c"}},
      {"a\vb\rc", kBlanks, {"a\vb\rc"}},
      {"\ra\vb \n\tc\f", kWhiteSpace, {"a", "b", "c"}},
      {"a:b", ":", {"a", "b"}},
      {"\xC2\xA0x y", kWhiteSpace, {"\xC2\xA0x", "y"}},
  };
  for (const auto& [text, separators, words] : cases) {
    std::string_view rest = text;
    Texts taken;
    for (auto word = take_word(&rest, separators); !word.empty(); word = take_word(&rest, separators)) {
      taken.push_back(word);
    }
    EXPECT_EQ(taken, words) << text;
    EXPECT_EQ(rest, "") << text;
  }
}

TEST(TakeWord, LeavesWhatBeginsWithAWord) {
  std::string_view rest = " key \t a value ";
  EXPECT_EQ(take_word(&rest, kBlanks), "key");
  EXPECT_EQ(rest, "a value ");
  rest = "alone  ";
  EXPECT_EQ(take_word(&rest, kBlanks), "alone");
  EXPECT_EQ(rest, "");
}

TEST(TakePart, TakesPartAfterPart) {
  const struct {
    std::string_view text;
    Texts parts;
  } cases[] = {
      {"", {}},
      {"a", {"a"}},
      {"a:b", {"a", "b"}},
      {"a:", {"a"}},
      {":", {""}},
      {":a", {"", "a"}},
      {"a::b", {"a", "", "b"}},
      {"::", {"", ""}},
      {" a : b ", {" a ", " b "}},
  };
  for (const auto& [text, parts] : cases) {
    std::string_view rest = text;
    Texts taken;
    while (!rest.empty()) taken.push_back(take_part(&rest, ':'));
    EXPECT_EQ(taken, parts) << text;
  }
}

TEST(TakePart, OfNothingIsEmpty) {
  std::string_view rest;
  EXPECT_EQ(take_part(&rest, '\n'), "");
  EXPECT_EQ(rest, "");
}

}  // namespace
}  // namespace triglub
