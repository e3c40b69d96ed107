// The keys of a parameter file outside of groups.
#ifndef TRIGLUB_SRC_TREE_TOP_LEVEL_H
#define TRIGLUB_SRC_TREE_TOP_LEVEL_H

#include <string>
#include <vector>

#include "platform/parfile.h"
#include "tree/fault_list.h"

namespace triglub {

inline constexpr const char* kRootKey = "root_node";

// Tells keys that edition 2 does not have, and a root that is not named.
void check_top_level(Pf* pf, FaultList* faults);

// The names of all tables: what may be a group.
std::vector<std::string> table_keys(Pf* pf);

}  // namespace triglub

#endif
