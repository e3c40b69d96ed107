#include "engine/expression/characters.h"

#include <algorithm>

#include "platform/text.h"

namespace triglub::expression {

namespace {

bool begins_character(char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }

}  // namespace

std::size_t count_characters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), begins_character));
}

std::size_t bytes_of_characters(std::string_view text, std::size_t n) {
  if (n >= text.size()) return text.size();
  std::size_t seen = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (begins_character(text[at]) && seen++ == n) return at;
  }
  return text.size();
}

std::size_t character_length(std::string_view text) {
  if (text.empty()) return 0;
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return 1;
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  return length <= text.size() && is_utf8(text.substr(0, length)) ? length : 0;
}

}  // namespace triglub::expression
