#include "platform/text.h"

#include <cstring>

namespace {

bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool is_continuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// The length of the well-formed character at `at`, 0 when there is none (Unicode 15, table 3-7).
std::size_t well_formed_length(std::string_view bytes, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[at + i]); };
  const std::size_t left = bytes.size() - at;
  const unsigned char lead = byte(0);
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (left < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!is_continuation(bytes[at + i])) return 0;
  }
  const unsigned char second = byte(1);
  if (lead == 0xE0 && second < 0xA0) return 0;  // overlong
  if (lead == 0xED && second > 0x9F) return 0;  // surrogates
  if (lead == 0xF0 && second < 0x90) return 0;  // overlong
  if (lead == 0xF4 && second > 0x8F) return 0;  // above U+10FFFF
  return length;
}

}  // namespace

namespace triglub {

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_space(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_space(text.back())) text.remove_suffix(1);
  return text;
}

bool is_utf8(std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t length = well_formed_length(bytes, at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::string latin1_to_utf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 4);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
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
  while (n > 0 && is_continuation(text[n])) --n;
  return text.substr(0, n);
}

}  // namespace triglub

char* strtrim(char* text) {
  if (text == nullptr) return nullptr;
  return copystrip(text, text, std::strlen(text));
}

char* copystrip(char* to, const char* from, std::size_t n) {
  const std::string_view kept = triglub::trimmed(std::string_view(from, strnlen(from, n)));
  // A text that is bare already is not written to: threads may trim a text that they share.
  if (to == kept.data() && to[kept.size()] == '\0') return to;
  std::memmove(to, kept.data(), kept.size());
  to[kept.size()] = '\0';
  return to;
}
