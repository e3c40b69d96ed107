#include "platform/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using triglub::is_utf8;
using triglub::latin1_to_utf8;
using triglub::trimmed;
using triglub::utf8_prefix;

const struct {
  const char* text;
  const char* bare;
} TRIM_CASES[] = {
    {"", ""},
    {" ", ""},
    {" \t\n\v\f\r", ""},
    {"AAK", "AAK"},
    {"  AAK", "AAK"},
    {"AAK  ", "AAK"},
    {"\tAAK\r\n", "AAK"},
    {" two words ", "two words"},
    {"\xC2\xA0x", "\xC2\xA0x"},
};

TEST(TextTrim, TakesWhiteSpaceOffBothEndsInPlace) {
  for (const auto& c : TRIM_CASES) {
    std::string text = c.text;
    EXPECT_EQ(strtrim(text.data()), text.data()) << c.text;
    EXPECT_STREQ(text.c_str(), c.bare) << c.text;
    EXPECT_EQ(trimmed(c.text), c.bare) << c.text;
  }
}

TEST(TextTrim, OfNullIsNull) { EXPECT_EQ(strtrim(nullptr), nullptr); }

TEST(TextTrim, OnlyReadsABareText) {
  // Writing to a text in read-only memory would end the test.
  static const char bare[] = "AAK";
  EXPECT_EQ(strtrim(const_cast<char*>(bare)), bare);
  EXPECT_EQ(copystrip(const_cast<char*>(bare), bare, 3), bare);
}

TEST(TextCopy, TrimsAtMostNBytes) {
  const struct {
    const char* from;
    std::size_t n;
    const char* copy;
  } cases[] = {
      {"  AAK  ", 7, "AAK"}, {"  AAK  ", 4, "AA"}, {"  AAK  ", 2, ""}, {"AAK", 0, ""},         {"AAK", 2, "AA"},
      {"AAK", 3, "AAK"},     {"AAK", 4, "AAK"},    {"AAK", 20, "AAK"}, {"A K  BHZ", 5, "A K"}, {"", 5, ""},
  };
  for (const auto& c : cases) {
    std::vector<char> to(c.n + 1, '?');
    EXPECT_EQ(copystrip(to.data(), c.from, c.n), to.data());
    EXPECT_STREQ(to.data(), c.copy) << '"' << c.from << "\", " << c.n;
  }
}

TEST(TextCopy, MayBeItsOwnSource) {
  char text[] = "  ABC DEF  ";
  EXPECT_EQ(copystrip(text, text, std::strlen(text)), text);
  EXPECT_STREQ(text, "ABC DEF");
  copystrip(text, text, 4);
  EXPECT_STREQ(text, "ABC");
}

TEST(TextCopy, NeedsNoEndWithinNBytes) {
  const std::vector<char> field = {'B', 'H', 'Z', ' '};  // a field of a row has no zero byte behind it
  char copy[5];
  EXPECT_STREQ(copystrip(copy, field.data(), field.size()), "BHZ");
}

TEST(Utf8, IsWellFormedOrNot) {
  const struct {
    const char* bytes;
    bool well_formed;
  } cases[] = {
      {"", true},
      {"plain", true},
      {"\x7F", true},
      {"\xC2\x80", true},
      {"\xDF\xBF", true},
      {"\xE0\xA0\x80", true},
      {"\xED\x9F\xBF", true},
      {"\xEE\x80\x80", true},
      {"\xEF\xBF\xBF", true},
      {"\xF0\x90\x80\x80", true},
      {"\xF4\x8F\xBF\xBF", true},
      {"\x80", false},
      {"\xBF", false},
      {"\xC0\x80", false},          // overlong
      {"\xC1\xBF", false},          // overlong
      {"\xE0\x9F\xBF", false},      // overlong
      {"\xF0\x8F\xBF\xBF", false},  // overlong
      {"\xED\xA0\x80", false},      // surrogate
      {"\xED\xBF\xBF", false},      // surrogate
      {"\xF4\x90\x80\x80", false},  // above U+10FFFF
      {"\xF5\x80\x80\x80", false},
      {"\xFF", false},
      {"\xC2", false},
      {"\xC2x", false},
      {"\xE2\x82", false},
      {"\xE2\x82x", false},
      {"\xF0\x9F\x8C", false},
      {"x\xC3\xA9\xE9", false},
  };
  for (const auto& c : cases) EXPECT_EQ(is_utf8(c.bytes), c.well_formed) << testing::PrintToString(c.bytes);
  EXPECT_TRUE(is_utf8(std::string_view("a\0b", 3)));
}

TEST(Utf8, HasEveryCharacterButTheSurrogates) {
  for (unsigned code = 0; code < 0x110000; ++code) {
    std::string bytes;
    if (code < 0x80) {
      bytes += static_cast<char>(code);
    } else if (code < 0x800) {
      bytes += static_cast<char>(0xC0 | (code >> 6));
    } else if (code < 0x10000) {
      bytes += static_cast<char>(0xE0 | (code >> 12));
      bytes += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    } else {
      bytes += static_cast<char>(0xF0 | (code >> 18));
      bytes += static_cast<char>(0x80 | (code >> 12 & 0x3F));
      bytes += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    }
    if (code >= 0x80) bytes += static_cast<char>(0x80 | (code & 0x3F));
    const bool surrogate = 0xD800 <= code && code <= 0xDFFF;
    ASSERT_EQ(is_utf8(bytes), !surrogate) << std::hex << code;
  }
}

TEST(Latin1, BecomesUtf8) {
  EXPECT_EQ(latin1_to_utf8(""), "");
  EXPECT_EQ(latin1_to_utf8("plain"), "plain");
  EXPECT_EQ(latin1_to_utf8("Caf\xE9"), "Caf\xC3\xA9");
  EXPECT_EQ(latin1_to_utf8("\x80\xBF\xC0\xFF"), "\xC2\x80\xC2\xBF\xC3\x80\xC3\xBF");
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_TRUE(is_utf8(latin1_to_utf8(all)));
  EXPECT_EQ(latin1_to_utf8(all).size(), 128u + 2 * 128u);
}

TEST(Utf8Prefix, DoesNotCutACharacter) {
  const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8C\x8B";  // 1, 2, 3 and 4 bytes
  const std::size_t whole[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 10};
  for (std::size_t n = 0; n < std::size(whole); ++n) EXPECT_EQ(utf8_prefix(text, n), text.substr(0, whole[n])) << n;
}

}  // namespace
