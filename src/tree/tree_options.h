// The keys of a parameter file that say how documents are written, beside the tree.
#ifndef TRIGLUB_SRC_TREE_TREE_OPTIONS_H
#define TRIGLUB_SRC_TREE_TREE_OPTIONS_H

#include <string>
#include <vector>

#include "element_tree.h"
#include "platform/parfile.h"
#include "tree/fault_list.h"

namespace triglub {

// The names of those keys.
const std::vector<std::string>& option_keys();

// Reads them; a value that none of them can have is told.
TreeOptions read_options(Pf* pf, FaultList* faults);

}  // namespace triglub

#endif
