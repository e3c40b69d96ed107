// What XML asks of names and of texts that go into the document as they stand.
#ifndef TRIGLUB_XML_TEXT_H
#define TRIGLUB_XML_TEXT_H

#include <string>
#include <string_view>

#include "platform/export.h"

namespace triglub {

// True for NAME and PREFIX:NAME, as XML 1.0 and its namespaces have names.
TRIGLUB_API bool is_xml_name(std::string_view name);

// What stands before the colon; empty without one.
TRIGLUB_API std::string_view xml_prefix(std::string_view name);

// Why a text cannot stand in the document as it is, and what to write instead; empty when it can. Attributes stand
// between double quotes. REQUIRES: well-formed UTF-8.
TRIGLUB_API std::string xml_text_fault(std::string_view text, bool is_attribute);

}  // namespace triglub

#endif
