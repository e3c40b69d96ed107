// Days that are no dates.
#ifndef TRIGLUB_TOOL_CHECK_DATES_H
#define TRIGLUB_TOOL_CHECK_DATES_H

#include "platform/database.h"
#include "tool/gaps.h"

namespace triglub::tool {

// Days of the view's stations and channels that are no dates are faults.
void check_dates(Dbptr everything, Gaps* gaps);

}  // namespace triglub::tool

#endif
