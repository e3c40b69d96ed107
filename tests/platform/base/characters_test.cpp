// Character classes: every byte, against the classes of the C locale.
#include "base/characters.h"

#include <gtest/gtest.h>

#include <cctype>
#include <limits>

namespace triglub {
namespace {

// The tests run in the C locale, in which <cctype> knows ASCII only.
TEST(Characters, HoldOfEveryByteWhatTheCLocaleHolds) {
  for (int byte = 0; byte <= std::numeric_limits<unsigned char>::max(); ++byte) {
    const auto c = static_cast<char>(byte);
    SCOPED_TRACE(byte);
    EXPECT_EQ(is_digit(c), std::isdigit(byte) != 0);
    EXPECT_EQ(is_lower(c), std::islower(byte) != 0);
    EXPECT_EQ(is_upper(c), std::isupper(byte) != 0);
    EXPECT_EQ(is_letter(c), std::isalpha(byte) != 0);
    EXPECT_EQ(is_alphanumeric(c), std::isalnum(byte) != 0);
    EXPECT_EQ(is_word_character(c), std::isalnum(byte) != 0 || c == '_');
    EXPECT_EQ(is_blank(c), std::isblank(byte) != 0);
    EXPECT_EQ(is_white_space(c), std::isspace(byte) != 0);
    EXPECT_EQ(is_ascii(c), byte < 128);
    EXPECT_EQ(to_lower(c), static_cast<char>(std::tolower(byte)));
    EXPECT_EQ(to_upper(c), static_cast<char>(std::toupper(byte)));
  }
}

TEST(Characters, SetsAgreeWithTheClasses) {
  for (int byte = 1; byte <= std::numeric_limits<unsigned char>::max(); ++byte) {
    const auto c = static_cast<char>(byte);
    EXPECT_EQ(kWhiteSpace.find(c) != std::string_view::npos, is_white_space(c)) << byte;
    EXPECT_EQ(kBlanks.find(c) != std::string_view::npos, is_blank(c)) << byte;
  }
}

}  // namespace
}  // namespace triglub
