// What somebody may have meant who typed something else.
#ifndef TRIGLUB_TOOL_SLIPS_H
#define TRIGLUB_TOOL_SLIPS_H

#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"

namespace triglub::tool {

// Tells the line to type for a source that could not be opened, if there is one to be guessed.
void suggest_database(const std::string& source);

// False, after a message of what was looked for, when no table of the database has a file.
bool has_tables(Dbptr db, const std::string& source);

// The line to type for words without a subcommand, the first of which is none.
std::string convert_line(const std::vector<std::string>& words);

}  // namespace triglub::tool

#endif
