// A look at the element tree before a conversion, so that a fault of the parameter file is told with its line.
#ifndef TRIGLUB_TOOL_CHECK_TREE_H
#define TRIGLUB_TOOL_CHECK_TREE_H

#include "platform/parfile.h"

namespace triglub::tool {

// Complains about every fault of the tree that the parameter file describes: no root, a group that is not defined or
// lacks a list, a group that contains itself, too many levels, a line without a type or with one that is not known.
// True when there is none.
bool check_tree(Pf* pf);

}  // namespace triglub::tool

#endif
