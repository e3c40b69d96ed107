// What XML asks of names and of texts that go into the document as they stand.
#ifndef TRIGLUB_SRC_TREE_XML_TEXT_H
#define TRIGLUB_SRC_TREE_XML_TEXT_H

#include <string>
#include <string_view>

namespace triglub {

// True for NAME and PREFIX:NAME, as XML 1.0 and its namespaces have names.
bool is_xml_name(std::string_view name);

// What stands before the colon; empty without one.
std::string_view xml_prefix(std::string_view name);

// Why a text cannot stand in the document as it is, and what to write instead; empty when it can. Attributes stand
// between double quotes. REQUIRES: well-formed UTF-8.
std::string xml_text_fault(std::string_view text, bool is_attribute);

}  // namespace triglub

#endif
