// Whether what was written is XML.
#ifndef TRIGLUB_TOOL_WELL_FORMED_H
#define TRIGLUB_TOOL_WELL_FORMED_H

#include <string>
#include <string_view>

namespace triglub::tool {

// The first fault of the document in a file, "line 12, column 3: not well-formed (invalid token)"; empty when it is
// well-formed, with regard to namespaces too. The descriptor is read from its begin and stays where it is. Throws
// FatalFailure where it cannot be read.
std::string xml_fault_of_file(int descriptor);

// Whether a text can stand as what an element holds.
bool is_content(std::string_view text);

}  // namespace triglub::tool

#endif
