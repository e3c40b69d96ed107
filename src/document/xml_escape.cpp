// Most texts have nothing to be escaped and go over in one piece.
#include "document/xml_escape.h"

#include <algorithm>
#include <array>

namespace triglub {

namespace {

// What stands for a byte: itself where there is nothing. EF may begin one of the two characters that are forbidden.
constexpr std::array<bool, 256> special_bytes() {
  std::array<bool, 256> special{};
  for (std::size_t byte = 0; byte < 0x20; ++byte) special[byte] = true;
  for (const char c : {'&', '<', '>', '"', '\xEF'}) special[static_cast<unsigned char>(c)] = true;
  return special;
}

constexpr std::array<bool, 256> kSpecial = special_bytes();

bool is_special(char c) { return kSpecial[static_cast<unsigned char>(c)]; }

bool begins_noncharacter(std::string_view text) {
  return text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF");
}

// Appends what stands for the first character and returns how many bytes of the text that is. *is_whole is made false
// where nothing stands for it.
std::size_t append_special(std::string_view text, XmlPlace place, std::string* xml, bool* is_whole) {
  switch (text.front()) {
    case '&':
      xml->append("&amp;");
      return 1;
    case '<':
      xml->append("&lt;");
      return 1;
    case '>':
      xml->append("&gt;");
      return 1;
    case '"':
      xml->append(place == XmlPlace::attribute ? "&quot;" : "\"");
      return 1;
    case '\t':
    case '\n':
    case '\r':
      *xml += ' ';
      return 1;
    default:
      break;
  }
  if (text.front() == '\xEF' && !begins_noncharacter(text)) {
    *xml += text.front();
    return 1;
  }
  *is_whole = false;
  return begins_noncharacter(text) ? 3 : 1;
}

}  // namespace

bool append_escaped(std::string_view text, XmlPlace place, std::string* xml) {
  bool is_whole = true;
  while (!text.empty()) {
    const auto* const special = std::find_if(text.begin(), text.end(), is_special);
    const auto plain = static_cast<std::size_t>(special - text.begin());
    xml->append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (!text.empty()) text.remove_prefix(append_special(text, place, xml, &is_whole));
  }
  return is_whole;
}

bool has_forbidden_characters(std::string_view text) {
  std::string xml;
  return !append_escaped(text, XmlPlace::content, &xml);
}

}  // namespace triglub
