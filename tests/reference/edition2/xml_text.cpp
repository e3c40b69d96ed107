#include "reference/edition2/xml_text.h"

namespace triglub_reference::edition2 {

namespace {

// Of the characters that XML does not allow, those that a row can hold.
bool is_forbidden(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
}

std::string escaped(char c, bool is_attribute) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return is_attribute ? "&quot;" : "\"";
    case '\t':
    case '\n':
    case '\r':
      return " ";
    default:
      return {c};
  }
}

}  // namespace

std::string xml_text(const std::string& text, bool is_attribute) {
  std::string safe;
  for (const char c : text) {
    if (!is_forbidden(c)) safe += escaped(c, is_attribute);
  }
  return safe;
}

}  // namespace triglub_reference::edition2
