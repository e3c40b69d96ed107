// Counts by the bytes that begin a character.
#include "engine/expression/characters.h"

#include <algorithm>

#include "base/utf8.h"

namespace triglub::expression {

std::size_t count_characters(std::string_view text) {
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues_character));
}

std::size_t bytes_of_characters(std::string_view text, std::size_t n) {
  if (n >= text.size()) return text.size();
  std::size_t seen = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!continues_character(text[at]) && seen++ == n) return at;
  }
  return text.size();
}

}  // namespace triglub::expression
