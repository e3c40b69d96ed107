// Channel epochs that a document will not have, and why.
#ifndef TRIGLUB_TOOL_CHECK_CHANNELS_H
#define TRIGLUB_TOOL_CHECK_CHANNELS_H

#include "platform/database.h"
#include "tool/gaps.h"
#include "tool/networks.h"

namespace triglub::tool {

// Channel epochs that are in `sitechan` and selected by the request, but not in its master view.
void check_channels(const Request& request, Dbptr everything, Gaps* gaps);

}  // namespace triglub::tool

#endif
