// The files that a conversion reads, which its document must not replace.
#ifndef TRIGLUB_TOOL_OWN_FILES_H
#define TRIGLUB_TOOL_OWN_FILES_H

#include "platform/database.h"
#include "platform/parfile.h"
#include "tool/convert.h"

namespace triglub::tool {

// A fatal report where the output is one of the files that the conversion reads, by whatever path or link: a table of
// the database, its descriptor or schema, a parameter file, a response file that a row names; also where it would
// become a table or a parameter file. To be called before the output is opened.
void check_output(const ConvertOptions& options, Dbptr db, Pf* pf);

}  // namespace triglub::tool

#endif
