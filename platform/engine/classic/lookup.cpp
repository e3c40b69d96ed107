// dblookup: names and numbers to the members of a handle.
#include "base/number.h"
#include "engine/classic/handle.h"

namespace triglub {

namespace {

bool given(const char* name) { return name != nullptr && *name != '\0'; }

std::int64_t record_number(std::string_view text, const View& view) {
  if (text == "dbALL") return dbALL;
  if (text == "dbNULL") return dbNULL;
  std::int64_t number = 0;
  if (!parse_integer(text, &number) || number < 0 || number >= view.record_count()) return dbINVALID;
  return number;
}

// The handle with every member from the one that was not found on unset.
Dbptr lost_table(Dbptr db) { return {db.database, dbINVALID, dbINVALID, dbINVALID}; }

}  // namespace

}  // namespace triglub

Dbptr dblookup(Dbptr db, const char* database, const char* table, const char* field, const char* record) {
  using namespace triglub;
  Session* session = session_of(db);
  if (session == nullptr || given(database)) return kInvalidHandle;
  if (given(table)) {
    const std::int64_t number = session->find_view(table);
    if (number < 0) return lost_table(db);
    db = handle_of_view(db, number);
  }
  if (!given(field) && !given(record)) return db;
  const View* view = view_of(db);
  if (view == nullptr) return lost_table(db);
  if (given(field)) {
    db.field = view->find_field(field);
    if (db.field < 0) return {db.database, db.table, dbINVALID, dbINVALID};
  }
  if (given(record)) db.record = record_number(record, *view);
  return db;
}
