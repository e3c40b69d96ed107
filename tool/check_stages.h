// Stages that a document will have without their filter, and why.
#ifndef TRIGLUB_TOOL_CHECK_STAGES_H
#define TRIGLUB_TOOL_CHECK_STAGES_H

#include "platform/database.h"
#include "tool/gaps.h"

namespace triglub::tool {

// Stages of the view whose response file gives no filter; files that do not hold to their format and units that XML
// cannot carry are faults.
void check_stages(Dbptr everything, Gaps* gaps);

}  // namespace triglub::tool

#endif
