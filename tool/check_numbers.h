// Numbers and times that a document of edition 1 cannot hold.
#ifndef TRIGLUB_TOOL_CHECK_NUMBERS_H
#define TRIGLUB_TOOL_CHECK_NUMBERS_H

#include "platform/database.h"
#include "tool/gaps.h"
#include "tool/written_tree.h"

namespace triglub::tool {

// Values of the view that the library would end at, or write as what is no number or time, are faults: of lines of
// angles and metres what is no number within the range of a double, and of the times that the tree names those outside
// of the years 1 to 9999.
void check_numbers(Dbptr everything, const WrittenTree& tree, Gaps* gaps);

}  // namespace triglub::tool

#endif
