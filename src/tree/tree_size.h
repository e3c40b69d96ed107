// How much a tree writes for one record.
#ifndef TRIGLUB_SRC_TREE_TREE_SIZE_H
#define TRIGLUB_SRC_TREE_TREE_SIZE_H

#include "element_tree.h"
#include "tree/fault_list.h"

namespace triglub {

// Refuses a tree of more elements and attributes than the limit tree_elements allows for one record, at the line that
// leads beyond it. REQUIRES: check_nesting().
void check_size(const TreeGroup& root, FaultList* faults);

}  // namespace triglub

#endif
