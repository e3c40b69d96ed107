// Where databases and their rows are, for messages.
#ifndef TRIGLUB_PLATFORM_SOURCES_H
#define TRIGLUB_PLATFORM_SOURCES_H

#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/export.h"

namespace triglub {

// The place of the row behind a handle's record: of a flat file its path and line, "/net/aak/aak.site:12". For a view
// of several tables, the place of the first table's row. Empty, without a complaint, when the handle names no record or
// the row is absent through an outer join. For threads the same holds as for every use of the handle's database.
TRIGLUB_API std::string row_place(Dbptr db);

// A file that a database is read from.
struct SourceFile {
  std::string path;
  const char* what;  // "a table", "the descriptor", "the schema"
};

// The files that the database of a handle is read from, and those that would be if they were there: its descriptor, its
// schema, each of its tables at each of its places. Empty for a handle of no open session, and where nothing is in
// files.
TRIGLUB_API std::vector<SourceFile> source_files(Dbptr db);

// The flat-file databases that somebody may have meant by a text, as dbopen takes them, in the order of their names: of
// a folder those with a table in it; else the one whose name the text is, when its dots at the end and the name of a
// table behind a dot are left off. Tables are those of the CSS3.0 schema. Empty when there is no such database.
TRIGLUB_API std::vector<std::string> databases_meant_by(const std::string& text);

}  // namespace triglub

#endif
