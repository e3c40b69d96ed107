// Letters are ASCII letters, lengths count characters; no text grows beyond the limit.
#include "engine/expression/text_functions.h"

#include <algorithm>

#include "base/characters.h"
#include "base/utf8.h"
#include "engine/expression/characters.h"
#include "engine/expression/functions.h"
#include "platform/text.h"

namespace triglub::expression {

namespace {

using Arguments = std::span<const Value>;

bool each_letter(char (*change)(char), std::string_view text, std::string* scratch, Value* result) {
  scratch->resize(text.size());
  std::transform(text.begin(), text.end(), scratch->begin(), change);
  *result = Value::of(std::string_view(*scratch));
  return true;
}

// What stands for a character in XML 1.0: an entity for what is markup, nothing for what is forbidden, else itself.
std::string_view as_xml(std::string_view character) {
  if (character.size() == 1) {
    switch (character.front()) {
      case '&':
        return "&amp;";
      case '<':
        return "&lt;";
      case '>':
        return "&gt;";
      case '\t':
      case '\n':
      case '\r':
        return character;
      default:
        return static_cast<unsigned char>(character.front()) < 0x20 ? "" : character;
    }
  }
  return character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF" ? "" : character;  // U+FFFE, U+FFFF
}

// The bytes at the start of `text` that XML takes as they are.
std::size_t plain_prefix(std::string_view text) {
  const auto is_plain = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x80 && c != '&' && c != '<' && c != '>';
  };
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), is_plain) - text.begin());
}

}  // namespace

bool append(std::string_view more, std::string* text) {
  if (more.size() > kMaxText - std::min(text->size(), kMaxText)) return false;
  *text += more;
  return true;
}

bool concat(Arguments arguments, std::string* scratch, Value* result) {
  for (const Value& argument : arguments) {
    if (!append(argument.text(), scratch)) return false;
  }
  *result = Value::of(std::string_view(*scratch));
  return true;
}

bool upper(Arguments arguments, std::string* scratch, Value* result) {
  return each_letter(to_upper, arguments[0].text(), scratch, result);
}

bool lower(Arguments arguments, std::string* scratch, Value* result) {
  return each_letter(to_lower, arguments[0].text(), scratch, result);
}

bool trim(Arguments arguments, std::string* /*scratch*/, Value* result) {
  *result = Value::of(trimmed(arguments[0].text()));
  return true;
}

bool substr(Arguments arguments, std::string* /*scratch*/, Value* result) {
  const std::int64_t from = arguments[1].integer;
  const std::int64_t count = arguments[2].integer;
  if (from < 0 || count < 0) return false;
  std::string_view text = arguments[0].text();
  text.remove_prefix(bytes_of_characters(text, static_cast<std::size_t>(from)));
  *result = Value::of(text.substr(0, bytes_of_characters(text, static_cast<std::size_t>(count))));
  return true;
}

bool length(Arguments arguments, std::string* /*scratch*/, Value* result) {
  *result = Value::of(static_cast<std::int64_t>(count_characters(arguments[0].text())));
  return true;
}

bool replace(Arguments arguments, std::string* scratch, Value* result) {
  std::string_view rest = arguments[0].text();
  const std::string_view from = arguments[1].text();
  const std::string_view to = arguments[2].text();
  // Nothing can be found nowhere and everywhere; the text stays as it is.
  while (!from.empty()) {
    const std::size_t found = rest.find(from);
    if (found == std::string_view::npos) break;
    if (!append(rest.substr(0, found), scratch) || !append(to, scratch)) return false;
    rest.remove_prefix(found + from.size());
  }
  if (!append(rest, scratch)) return false;
  *result = Value::of(std::string_view(*scratch));
  return true;
}

bool xml(Arguments arguments, std::string* scratch, Value* result) {
  std::string_view rest = arguments[0].text();
  // Most texts have nothing to change and are not copied.
  if (plain_prefix(rest) == rest.size()) {
    *result = arguments[0];
    return true;
  }
  while (!rest.empty()) {
    const std::size_t plain = plain_prefix(rest);
    if (!append(rest.substr(0, plain), scratch)) return false;
    rest.remove_prefix(plain);
    if (rest.empty()) break;
    const std::size_t character = character_length(rest);  // 0 for a byte that is no character: dropped
    if (!append(character == 0 ? "" : as_xml(rest.substr(0, character)), scratch)) return false;
    rest.remove_prefix(std::max<std::size_t>(character, 1));
  }
  *result = Value::of(std::string_view(*scratch));
  return true;
}

}  // namespace triglub::expression
