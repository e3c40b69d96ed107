// Prefixes of names and where they are declared.
#ifndef TRIGLUB_SRC_TREE_PREFIXES_H
#define TRIGLUB_SRC_TREE_PREFIXES_H

#include "element_tree.h"
#include "tree/fault_list.h"

namespace triglub {

// Tells prefixes that neither their group nor one around it declares by an attribute xmlns:PREFIX, each where it is
// first met. REQUIRES: no group contains itself.
void check_prefixes(const TreeGroup& root, FaultList* faults);

}  // namespace triglub

#endif
