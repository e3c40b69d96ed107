// The faults of a tree as a whole.
#ifndef TRIGLUB_SRC_TREE_TREE_FAULTS_H
#define TRIGLUB_SRC_TREE_TREE_FAULTS_H

#include "element_tree.h"
#include "tree/fault_list.h"

namespace triglub {

// How groups nest, and what that makes of prefixes and sizes. False where they do not end.
bool check_whole(const TreeGroup& root, FaultList* faults);

}  // namespace triglub

#endif
