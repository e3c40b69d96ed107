// What is a character of UTF-8 follows Unicode 15, table 3-7.
#include "base/utf8.h"

#include "base/characters.h"
#include "platform/text.h"

namespace triglub {

std::size_t character_length(std::string_view text) {
  if (text.empty()) return 0;
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!continues_character(text[i])) return 0;
  }
  const unsigned char second = byte(1);
  if (lead == 0xE0 && second < 0xA0) return 0;  // overlong
  if (lead == 0xED && second > 0x9F) return 0;  // surrogates
  if (lead == 0xF0 && second < 0x90) return 0;  // overlong
  if (lead == 0xF4 && second > 0x8F) return 0;  // above U+10FFFF
  return length;
}

bool is_control(std::string_view character) {
  const auto first = static_cast<unsigned char>(character.front());
  if (character.size() == 1) return first < 0x20 || first == 0x7F;
  // U+0080 to U+009F
  return first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
}

bool is_utf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t length = character_length(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::string latin1_to_utf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 4);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (is_ascii(c)) {
      text += c;
      continue;
    }
    text += static_cast<char>(0xC0 | (byte >> 6));
    text += static_cast<char>(0x80 | (byte & 0x3F));
  }
  return text;
}

std::string_view utf8_prefix(std::string_view text, std::size_t n) {
  if (text.size() <= n) return text;
  while (n > 0 && continues_character(text[n])) --n;
  return text.substr(0, n);
}

}  // namespace triglub
