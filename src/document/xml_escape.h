// Texts of the tables as XML.
#ifndef TRIGLUB_SRC_DOCUMENT_XML_ESCAPE_H
#define TRIGLUB_SRC_DOCUMENT_XML_ESCAPE_H

#include <cstdint>
#include <string>
#include <string_view>

namespace triglub {

enum class XmlPlace : std::uint8_t { content, attribute };

// Appends a text so that a reader of the document gets it back: markup as entities, tabs and line ends as blanks, and
// without the characters that XML 1.0 forbids: false when there were some. REQUIRES: UTF-8.
bool append_escaped(std::string_view text, XmlPlace place, std::string* xml);

// Whether it would leave characters out.
bool has_forbidden_characters(std::string_view text);

}  // namespace triglub

#endif
