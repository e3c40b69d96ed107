// The element tree of a parameter file as nodes to be drawn: what becomes an element has its tag, what becomes an
// attribute its name behind an @, and what has no element of its own stands in parentheses. A group that several lines
// lead to has its content where it is first met.
#ifndef TRIGLUB_TOOL_TREE_NODES_H
#define TRIGLUB_TOOL_TREE_NODES_H

#include "element_tree.h"
#include "tool/tree_drawing.h"

namespace triglub::tool {

// Of edition 2.
TreeNode tree_nodes(const ElementTree& tree);

// Of edition 1. REQUIRES: check_tree(pf).
TreeNode tree_nodes(Pf* pf);

}  // namespace triglub::tool

#endif
