// How many threads one operation may use.
//
// This is about the helpers that a single call takes to itself: loading a table, joining, sorting. How many threads a
// program has of its own, each with a session (platform/sessions.h), is the program's affair.
#ifndef TRIGLUB_PLATFORM_THREADS_H
#define TRIGLUB_PLATFORM_THREADS_H

#include "platform/export.h"

namespace triglub {

// How many threads loading, joining and looking through records may use, the caller's included; 1 at first and for 0.
// What they do is the same for any number. Holds for the process; any thread may set it at any time, and operations
// that begin afterwards go by it.
TRIGLUB_API void set_threads(unsigned int count);

}  // namespace triglub

#endif
