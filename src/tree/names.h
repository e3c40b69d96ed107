// The names of a group and its lines, by the rules of XML and of its namespaces.
#ifndef TRIGLUB_SRC_TREE_NAMES_H
#define TRIGLUB_SRC_TREE_NAMES_H

#include "element_tree.h"
#include "tree/fault_list.h"

namespace triglub {

// The tag. REQUIRES: the group is not transparent.
void check_tag(const TreeGroup& group, FaultList* faults);

// The names of the group's attributes and leaves; attributes that are there twice; declarations of prefixes that are
// none.
void check_lines(const TreeGroup& group, FaultList* faults);

}  // namespace triglub

#endif
