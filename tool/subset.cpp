// What people type becomes a regular expression between slashes, as the engine's language has it.
#include "tool/subset.h"

#include "base/characters.h"
#include "platform/text.h"

namespace triglub::tool {

namespace {

// Slashes quoted that are not quoted yet.
std::string with_quoted_slashes(std::string_view pattern) {
  std::string out;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == '\\' && i + 1 < pattern.size()) {
      out += pattern.substr(i++, 2);
      continue;
    }
    if (pattern[i] == '/') out += '\\';
    out += pattern[i];
  }
  return out;
}

bool is_between_slashes(std::string_view pattern) {
  return pattern.size() >= 2 && pattern.front() == '/' && pattern.back() == '/';
}

bool is_plain(char c) { return is_word_character(c) || c == ' ' || !is_ascii(c); }

}  // namespace

bool add_condition(std::string_view argument, Conditions* conditions) {
  const std::size_t equals = argument.find('=');
  if (equals == std::string_view::npos) return false;
  const std::string field(trimmed(argument.substr(0, equals)));
  if (field.empty()) return false;
  std::string_view pattern = trimmed(argument.substr(equals + 1));
  if (is_between_slashes(pattern)) pattern = pattern.substr(1, pattern.size() - 2);
  (*conditions)[field] = "/" + with_quoted_slashes(pattern) + "/";
  return true;
}

std::string exact_pattern(std::string_view text) {
  std::string pattern = "/";
  for (const char c : text) {
    if (!is_plain(c)) pattern += '\\';
    pattern += c;
  }
  return pattern + "/";
}

Subset::Subset(Conditions conditions) : conditions_(std::move(conditions)), array_(newarr(nullptr)) {
  for (auto& [field, pattern] : conditions_) setarr(array_, field.c_str(), pattern.data());
}

}  // namespace triglub::tool
