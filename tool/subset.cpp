// What people type becomes a regular expression between slashes, as the engine's language has it.
#include "tool/subset.h"

#include <iterator>

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

// A blank text is a null one, whose text is "-"; some tables have "--" for it, as location codes are often written.
bool means_blank(std::string_view pattern) { return pattern.empty() || pattern == "-" || pattern == "--"; }

std::string regular_expression(std::string_view pattern) {
  if (means_blank(pattern)) return "-?-?";
  if (is_between_slashes(pattern)) pattern = pattern.substr(1, pattern.size() - 2);
  return with_quoted_slashes(pattern);
}

bool is_plain(char c) { return is_word_character(c) || c == ' ' || !is_ascii(c); }

}  // namespace

bool add_condition(std::string_view argument, Conditions* conditions) {
  const std::size_t equals = argument.find('=');
  if (equals == std::string_view::npos) return false;
  const std::string field(trimmed(argument.substr(0, equals)));
  if (field.empty()) return false;
  conditions->emplace(field, "/" + regular_expression(trimmed(argument.substr(equals + 1))) + "/");
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

// The array has one pattern for a key. Blanks behind a key tell those of one field apart; the library takes them off
// when it makes conditions of the keys.
Subset::Subset(Conditions conditions) : conditions_(std::move(conditions)), array_(newarr(nullptr)) {
  std::string key;
  for (auto condition = conditions_.begin(); condition != conditions_.end(); ++condition) {
    const bool is_further = condition != conditions_.begin() && std::prev(condition)->first == condition->first;
    if (is_further) {
      key += ' ';
    } else {
      key = condition->first;
    }
    setarr(array_, key.c_str(), condition->second.data());
  }
}

}  // namespace triglub::tool
