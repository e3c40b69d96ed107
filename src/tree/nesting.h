// How groups nest.
#ifndef TRIGLUB_SRC_TREE_NESTING_H
#define TRIGLUB_SRC_TREE_NESTING_H

#include "element_tree.h"
#include "tree/fault_list.h"

namespace triglub {

// Tells groups that contain themselves, and more than MAX_NODE_DEPTH groups inside one another; false when there is
// any.
bool check_nesting(const TreeGroup& root, FaultList* faults);

}  // namespace triglub

#endif
