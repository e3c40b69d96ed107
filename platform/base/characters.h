// Classes of ASCII characters. The functions of <cctype> ask the program's locale, which may take bytes of a UTF-8 text
// for letters; these do not.
#ifndef TRIGLUB_BASE_CHARACTERS_H
#define TRIGLUB_BASE_CHARACTERS_H

#include <string_view>

namespace triglub {

inline constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
inline constexpr std::string_view kBlanks = " \t";

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }
constexpr bool is_lower(char c) { return c >= 'a' && c <= 'z'; }
constexpr bool is_upper(char c) { return c >= 'A' && c <= 'Z'; }
constexpr bool is_letter(char c) { return is_lower(c) || is_upper(c); }
constexpr bool is_alphanumeric(char c) { return is_letter(c) || is_digit(c); }
// A character of a name, as regular expressions have it.
constexpr bool is_word_character(char c) { return is_alphanumeric(c) || c == '_'; }
constexpr bool is_blank(char c) { return c == ' ' || c == '\t'; }
constexpr bool is_white_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool is_ascii(char c) { return static_cast<unsigned char>(c) < 0x80; }

constexpr char to_lower(char c) { return is_upper(c) ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr char to_upper(char c) { return is_lower(c) ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace triglub

#endif
