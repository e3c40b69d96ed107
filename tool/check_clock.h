// The time that stands for now in documents, where the environment says it.
#ifndef TRIGLUB_TOOL_CHECK_CLOCK_H
#define TRIGLUB_TOOL_CHECK_CLOCK_H

namespace triglub::tool {

// Fatal when SOURCE_DATE_EPOCH is set to what is no time of the years 1970 to 9999: a document that is to be the same
// each time would have the clock's time, or none.
void check_clock();

}  // namespace triglub::tool

#endif
