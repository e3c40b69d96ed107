// The conversion by a parameter file of edition 2.
#ifndef TRIGLUB_TOOL_CONVERT_EPOCHS_H
#define TRIGLUB_TOOL_CONVERT_EPOCHS_H

#include "platform/database.h"
#include "platform/parfile.h"
#include "tool/convert.h"

namespace triglub::tool {

// Writes the document of an open database. The exit status, as of convert().
int convert_epochs(const ConvertOptions& options, Dbptr db, Pf* pf);

}  // namespace triglub::tool

#endif
