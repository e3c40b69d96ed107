// Characters by the tables of XML 1.0, fifth edition: Char, NameStartChar and NameChar, the colon left out of names.
#include "xml_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

#include "base/characters.h"
#include "base/utf8.h"

namespace triglub {

namespace {

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};

constexpr std::array<Range, 15> kNameStarts = {{{'A', 'Z'},
                                                {'_', '_'},
                                                {'a', 'z'},
                                                {0xC0, 0xD6},
                                                {0xD8, 0xF6},
                                                {0xF8, 0x2FF},
                                                {0x370, 0x37D},
                                                {0x37F, 0x1FFF},
                                                {0x200C, 0x200D},
                                                {0x2070, 0x218F},
                                                {0x2C00, 0x2FEF},
                                                {0x3001, 0xD7FF},
                                                {0xF900, 0xFDCF},
                                                {0xFDF0, 0xFFFD},
                                                {0x10000, 0xEFFFF}}};
constexpr std::array<Range, 5> kFurtherNameCharacters = {
    {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}}};
constexpr std::array<Range, 5> kCharacters = {
    {{'\t', '\n'}, {'\r', '\r'}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}}};
constexpr std::array<std::string_view, 5> kEntities = {"amp", "lt", "gt", "quot", "apos"};

template <std::size_t n>
bool is_in(const std::array<Range, n>& ranges, std::uint32_t code) {
  return std::ranges::any_of(ranges, [code](Range range) { return code >= range.first && code <= range.last; });
}

// The code point of the first character. REQUIRES: well-formed UTF-8, not empty.
std::uint32_t first_code(std::string_view text) {
  const std::size_t length = character_length(text);
  const auto lead = static_cast<unsigned char>(text[0]);
  std::uint32_t code = length == 1 ? lead : lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) code = code << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
  return code;
}

bool is_plain_name(std::string_view name) {
  if (name.empty() || !is_in(kNameStarts, first_code(name))) return false;
  for (; !name.empty(); name.remove_prefix(character_length(name))) {
    const std::uint32_t code = first_code(name);
    if (!is_in(kNameStarts, code) && !is_in(kFurtherNameCharacters, code)) return false;
  }
  return true;
}

// "#13" and "#xD", without the & before and the ; behind.
bool is_character_reference(std::string_view name) {
  if (!name.starts_with('#')) return false;
  const bool is_hexadecimal = name.substr(1).starts_with('x');
  const std::string_view digits = name.substr(is_hexadecimal ? 2 : 1);
  std::uint32_t code = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, code, is_hexadecimal ? 16 : 10);
  return error == std::errc() && stop == end && is_in(kCharacters, code);
}

// The fault of the & at the start of the text.
std::string reference_fault(std::string_view text) {
  const std::size_t end = text.find(';');
  const std::string_view name = end == std::string_view::npos ? "" : text.substr(1, end - 1);
  if (is_character_reference(name) || std::ranges::count(kEntities, name) > 0) return "";
  if (!name.starts_with('#') && !is_plain_name(name)) return "a bare & (write &amp;)";
  return "&" + std::string(name) + "; is not known to XML (write the character itself; &amp; for a mere &)";
}

std::string code_text(std::uint32_t code) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text = "U+";
  for (int shift = code > 0xFFFF ? 20 : 12; shift >= 0; shift -= 4) text += kDigits[code >> shift & 0xFU];
  return text;
}

// The fault of what begins at the start of the text.
std::string fault_at(std::string_view text, bool is_attribute) {
  switch (text[0]) {
    case '&':
      return reference_fault(text);
    case '<':
      return "a bare < (write &lt;)";
    case '"':
      return is_attribute ? "a bare \" in an attribute (write &quot;)" : "";
    case ']':
      return !is_attribute && text.starts_with("]]>") ? "a bare ]]> (write ]]&gt;)" : "";
    default:
      break;
  }
  const std::uint32_t code = first_code(text);
  return is_in(kCharacters, code) ? "" : "the character " + code_text(code) + ", which XML does not allow";
}

}  // namespace

bool is_xml_name(std::string_view name) {
  const std::size_t colon = name.find(':');
  if (colon == std::string_view::npos) return is_plain_name(name);
  return is_plain_name(name.substr(0, colon)) && is_plain_name(name.substr(colon + 1));
}

std::string_view xml_prefix(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? "" : name.substr(0, colon);
}

std::string xml_text_fault(std::string_view text, bool is_attribute) {
  for (; !text.empty(); text.remove_prefix(character_length(text))) {
    std::string fault = fault_at(text, is_attribute);
    if (!fault.empty()) return fault;
  }
  return "";
}

}  // namespace triglub
