// The option --limit: budgets as the command line has them.
#ifndef TRIGLUB_TOOL_LIMIT_OPTION_H
#define TRIGLUB_TOOL_LIMIT_OPTION_H

#include <string>
#include <string_view>

namespace triglub::tool {

// Sets the limit that a text names, "join-rows=5000000". Empty, or what is wrong with the text; then nothing is set.
std::string take_limit(std::string_view text);

// What the help says of them: each name with what it is usually.
std::string list_of_limits();

}  // namespace triglub::tool

#endif
