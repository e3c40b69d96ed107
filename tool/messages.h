// What the command tells on standard error.
#ifndef TRIGLUB_TOOL_MESSAGES_H
#define TRIGLUB_TOOL_MESSAGES_H

#include <string>

#include "platform/elog.h"

namespace triglub::tool {

// Sends the library's messages to standard error: traces only at a verbosity above 0, and failing stages only then,
// since they are told in one line at the end.
void show_messages(unsigned int verbosity);

// Shows one message by that rule. A sink of the log; the context is not used.
void show_message(ElogLevel level, const char* text, void* context);

// Reports the exception that is being handled and ends the process. `source` is the database.
[[noreturn]] void die_of_exception(const std::string& source);

}  // namespace triglub::tool

#endif
