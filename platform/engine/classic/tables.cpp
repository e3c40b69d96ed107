// What a database tells of its tables without loading them.
#include "engine/classic/handle.h"
#include "platform/sources.h"

namespace triglub {

std::string table_path(Dbptr db, const char* table) {
  const Session* session = session_of(db);
  if (session == nullptr) return "";
  const Schema& schema = session->snapshot()->schema();
  const int index = schema.find(table);
  return index < 0 ? "" : session->snapshot()->source().table_place(schema.tables()[static_cast<std::size_t>(index)]);
}

std::vector<SourceFile> source_files(Dbptr db) {
  const Session* session = session_of(db);
  return session == nullptr ? std::vector<SourceFile>{} : session->snapshot()->source().files();
}

std::vector<std::string> table_names(Dbptr db) {
  std::vector<std::string> names;
  const Session* session = session_of(db);
  if (session == nullptr) return names;
  for (const TableSchema& table : session->snapshot()->schema().tables()) names.push_back(table.name);
  return names;
}

}  // namespace triglub
