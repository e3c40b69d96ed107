// The texts of the parameter file `site` that a tree of edition 1 asks for.
#ifndef TRIGLUB_TOOL_CHECK_SITE_H
#define TRIGLUB_TOOL_CHECK_SITE_H

#include <string>
#include <vector>

#include "tool/parameters.h"
#include "tool/written_tree.h"

namespace triglub::tool {

// Where the library would write an empty text: a fault for each line whose key is not there, "path:line: what". `path`
// is that of the tree's parameter file.
std::vector<std::string> site_faults(const std::string& path, const WrittenTree& tree);

// The parameter file `site` where a line of the tree asks for it, null where none does. Ends the process, after a
// message, when it cannot be had.
Parameters read_site(Pf* pf);

}  // namespace triglub::tool

#endif
