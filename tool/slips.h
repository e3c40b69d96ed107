// What somebody may have meant who typed something else.
#ifndef TRIGLUB_TOOL_SLIPS_H
#define TRIGLUB_TOOL_SLIPS_H

#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"

namespace triglub::tool {

// The known word that is nearest to this one: at most two letters of it are others, missing, or too many, large letters
// being no others. Empty when none is that near.
std::string nearest(std::string_view word, const std::vector<std::string>& known);

// Tells the line to type for a source that could not be opened, if there is one to be guessed.
void suggest_database(const std::string& source);

// False, after a message of what was looked for, when no table of the database has a file.
bool has_tables(Dbptr db, const std::string& source);

// The line to type for words without a subcommand, the first of which is none.
std::string convert_line(const std::vector<std::string>& words);

}  // namespace triglub::tool

#endif
