// Values that cannot tell categories of edition 1 apart.
#ifndef TRIGLUB_TOOL_CHECK_CATEGORIES_H
#define TRIGLUB_TOOL_CHECK_CATEGORIES_H

#include "platform/database.h"
#include "tool/gaps.h"
#include "tool/written_tree.h"

namespace triglub::tool {

// The library looks for the records of a category by its value as a pattern, and sorts numbers as such. Values of the
// view that would be another pattern, or are no number where one is needed, are faults.
void check_categories(Dbptr everything, const WrittenTree& tree, Gaps* gaps);

}  // namespace triglub::tool

#endif
