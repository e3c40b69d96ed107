#include "tool/repeated_texts.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using triglub::tool::RepeatedTexts;

TEST(RepeatedTexts, AreCopiedOnce) {
  RepeatedTexts texts;
  const std::string text(RepeatedTexts::kLeast, 'a');
  const std::string* copy = texts.copy_of(text);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(*copy, text);
  EXPECT_NE(copy->data(), text.data());
  EXPECT_EQ(texts.copy_of(text), copy);
}

TEST(RepeatedTexts, AreNotShort) {
  RepeatedTexts texts;
  EXPECT_EQ(texts.copy_of(std::string(RepeatedTexts::kLeast - 1, 'a')), nullptr);
}

// Memory that is given back is given out again, for another text.
TEST(RepeatedTexts, AreNotTakenForOthersThatCameFromTheSamePlace) {
  RepeatedTexts texts;
  std::string text(RepeatedTexts::kLeast + 10, 'a');
  const std::string before = text;
  const std::string* copy = texts.copy_of(text);
  text.back() = 'b';
  EXPECT_EQ(texts.copy_of(text), nullptr);
  EXPECT_EQ(texts.copy_of(std::string_view(text).substr(0, text.size() - 1)), nullptr);
  EXPECT_EQ(*copy, before);
}

TEST(RepeatedTexts, AreAsManyAsThereIsRoomFor) {
  RepeatedTexts texts;
  const std::string half(RepeatedTexts::kRoom / 2, 'a');
  const std::string rest(RepeatedTexts::kRoom / 2 - RepeatedTexts::kLeast + 1, 'b');
  const std::string least(RepeatedTexts::kLeast, 'c');
  const std::string* copy = texts.copy_of(half);
  ASSERT_NE(copy, nullptr);
  EXPECT_NE(texts.copy_of(rest), nullptr);
  EXPECT_EQ(texts.copy_of(least), nullptr);
  EXPECT_EQ(texts.copy_of(half), copy);
}

}  // namespace
