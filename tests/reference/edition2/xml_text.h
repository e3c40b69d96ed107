// Texts of the tables as XML.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_XML_TEXT_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_XML_TEXT_H

#include <string>

namespace triglub_reference::edition2 {

// Without what XML does not allow, markup as entities; a quotation mark is one in attributes.
std::string xml_text(const std::string& text, bool is_attribute);

}  // namespace triglub_reference::edition2

#endif
