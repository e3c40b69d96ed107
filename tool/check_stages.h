// Stages that a document will have without their filter, and why.
#ifndef TRIGLUB_TOOL_CHECK_STAGES_H
#define TRIGLUB_TOOL_CHECK_STAGES_H

#include "platform/database.h"
#include "resp_helper.h"
#include "tool/gaps.h"

namespace triglub::tool {

// Stages of the view whose response file gives no filter. Faults are files that are there and could not be read, are
// outside of the reach of `responses` or do not hold to their format, and units that XML cannot carry. `responses`:
// what the document will be made of; files are not looked at again, for they may have changed.
void check_stages(Dbptr everything, const ResponseCache& responses, Gaps* gaps);

}  // namespace triglub::tool

#endif
