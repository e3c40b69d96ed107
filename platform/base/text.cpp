// Trims and copies texts.
#include "platform/text.h"

#include <cstring>

#include "base/characters.h"

std::string_view triglub::trimmed(std::string_view text) {
  while (!text.empty() && is_white_space(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_white_space(text.back())) text.remove_suffix(1);
  return text;
}

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
