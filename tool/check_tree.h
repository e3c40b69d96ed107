// A look at the element tree before a conversion, so that a fault of the parameter file is told with its line.
#ifndef TRIGLUB_TOOL_CHECK_TREE_H
#define TRIGLUB_TOOL_CHECK_TREE_H

#include <memory>

#include "platform/parfile.h"
#include "tool/written_tree.h"

namespace triglub::tool {

// Complains about every fault of the tree that the parameter file describes: no root, a group that is not defined or
// lacks a list, a group that contains itself, too many levels, a line without a type or with one that is not known.
// Also of what is not XML in names (tree_faults) and of texts that site.pf does not have. The tree when there is none,
// else null.
std::unique_ptr<const WrittenTree> check_tree(Pf* pf);

}  // namespace triglub::tool

#endif
