// The element tree of edition 1 in the form that trees of edition 2 have, for those who judge a tree as a whole.
#ifndef TRIGLUB_TOOL_WRITTEN_TREE_H
#define TRIGLUB_TOOL_WRITTEN_TREE_H

#include <memory>

#include "element_tree.h"

namespace triglub::tool {

// Values stand as the file has them; literals are those of the type `text`. Lines that are left out are not there. No
// group is optional, and all are defined.
struct WrittenTree {
  TreeGroups groups;
  const TreeGroup* root = nullptr;
};

// REQUIRES: the parameter file has a root, and all groups that its lines lead to.
std::unique_ptr<const WrittenTree> written_tree(Pf* pf);

}  // namespace triglub::tool

#endif
