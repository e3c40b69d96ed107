// Where the rows of a database come from, for messages.
#ifndef TRIGLUB_PLATFORM_SOURCES_H
#define TRIGLUB_PLATFORM_SOURCES_H

#include <string>

#include "platform/database.h"
#include "platform/export.h"

namespace triglub {

// The place of the row behind a handle's record: of a flat file its path and line, "/net/aak/aak.site:12". For a view
// of several tables, the place of the first table's row. Empty, without a complaint, when the handle names no record or
// the row is absent through an outer join. For threads the same holds as for every use of the handle's database.
TRIGLUB_API std::string row_place(Dbptr db);

}  // namespace triglub

#endif
