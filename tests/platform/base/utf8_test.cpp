// Characters of UTF-8 texts: the first and last of each length, and the bytes next to them.
#include "base/utf8.h"

#include <gtest/gtest.h>

#include <string_view>

namespace triglub {
namespace {

TEST(CharacterLength, CountsTheBytesOfWhatIsWellFormedOnly) {
  const struct {
    std::string_view text;
    std::size_t length;
  } cases[] = {
      {"", 0},
      {"a", 1},
      {"\x7F", 1},
      {std::string_view("\0", 1), 1},
      {"a\xFF", 1},
      {"\x80", 0},
      {"\xC1\xBF", 0},
      {"\xC2\x80", 2},
      {"\xC2\x80z", 2},
      {"\xC2", 0},
      {"\xC2z", 0},
      {"\xDF\xBF", 2},
      {"\xE0\x9F\xBF", 0},
      {"\xE0\xA0\x80", 3},
      {"\xE2\x82", 0},
      {"\xED\x9F\xBF", 3},
      {"\xED\xA0\x80", 0},
      {"\xEF\xBF\xBF", 3},
      {"\xF0\x8F\xBF\xBF", 0},
      {"\xF0\x90\x80\x80", 4},
      {"\xF4\x8F\xBF\xBF", 4},
      {"\xF4\x90\x80\x80", 0},
      {"\xF5\x80\x80\x80", 0},
      {"\xFF", 0},
  };
  for (const auto& [text, length] : cases) EXPECT_EQ(character_length(text), length) << text;
}

TEST(IsControl, HoldsOfC0DeleteAndC1) {
  for (const std::string_view control : {"\x01", "\t", "\x1F", "\x7F", "\xC2\x80", "\xC2\x9F"}) {
    EXPECT_TRUE(is_control(control)) << control;
  }
  EXPECT_TRUE(is_control(std::string_view("\0", 1)));
  for (const std::string_view other : {" ", "~", "\xC2\xA0", "\xC3\x80", "\xE2\x80\x80", "\xF0\x90\x80\x80"}) {
    EXPECT_FALSE(is_control(other)) << other;
  }
}

TEST(ContinuesCharacter, HoldsOfThe64BytesThatBeginNone) {
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(continues_character(static_cast<char>(byte)), byte >= 0x80 && byte <= 0xBF) << byte;
  }
}

}  // namespace
}  // namespace triglub
