// Checked queries: what the database library reports as a status becomes an exception, its texts become strings.
#include "dbhelper.h"
#include "dbhelper/db_value.h"
#include "platform/elog.h"
#include "state/process_state.h"

namespace {

// The answer of a counting or type query.
template <typename Answer>
Answer checked_answer(Dbptr db, int code, const char* failure) {
  Answer answer{};
  if (dbquery(db, code, &answer) < 0) throw dbquery_error(failure);
  return answer;
}

// A text that is only shown: what the library does not answer is shown as missing.
const char* shown_answer(Dbptr db, int code) {
  const char* text = nullptr;
  dbquery(db, code, &text);
  return text == nullptr ? "(null)" : text;
}

}  // namespace

dbquery_error::dbquery_error(const std::string& message) : std::runtime_error(message) {}

dbquery_error::~dbquery_error() = default;

const char* dbquery_error::what() const noexcept { return "invalid response from querying the database"; }

int dbquery(Dbptr db, int code, std::string& value) {
  // Asked twice, as callers of the interface have it: they get the status of the first answer and the text of the
  // second, and an engine that answers differently the second time is seen to.
  const char* text = nullptr;
  const int status = dbquery(db, code, static_cast<void*>(&text));
  const bool answered = dbquery(db, code, static_cast<void*>(&text)) >= 0 && text != nullptr;
  value = answered ? text : "";
  return status;
}

long db_nrecs(Dbptr db) { return checked_answer<long>(db, dbRECORD_COUNT, "unsuccessful query of dbRECORD_COUNT"); }

long db_nfields(Dbptr db) { return checked_answer<long>(db, dbFIELD_COUNT, "unsuccessful query of dbFIELD_COUNT"); }

int db_getfieldtype(Dbptr db) { return checked_answer<int>(db, dbFIELD_TYPE, "unsuccessful query of dbFIELD_TYPE"); }

Dbptr db_setfield(Dbptr db, std::string field) {
  // The engine takes the empty name for none given, and would leave the handle as it is.
  const Dbptr found = field.empty() ? Dbptr() : dblookup(db, nullptr, nullptr, field.c_str(), nullptr);
  // A plain runtime_error: an unknown name is a fault of the caller's parameter file, not of the query, and must get
  // past those who put up with a value that cannot be read.
  if (found.field == dbINVALID) throw std::runtime_error("db field [" + field + "] not found");
  return found;
}

std::string db_fieldlookup(Dbptr db, std::string field) {
  std::string text;
  triglub::read_value(db_setfield(db, field), field, &text);
  return text;
}

std::string db_fieldlookup(Dbptr db, std::string field, std::string fallback) {
  try {
    return db_fieldlookup(db, std::move(field));
  } catch (const dbquery_error&) {
    return fallback;
  }
}

std::string get_nullvalue(Dbptr db) { return triglub::null_value(triglub::process_state(), db); }

std::string get_nullvalue(Dbptr db, std::string field) { return get_nullvalue(db_setfield(db, std::move(field))); }

bool any_dbinvalid(const Dbptr& db) {
  return db.database == dbINVALID || db.table == dbINVALID || db.field == dbINVALID || db.record == dbINVALID;
}

bool is_empty(const Dbptr& db) { return db_nrecs(db) <= 0; }

void dumpViewFieldnames(Dbptr db) {
  elog_notify(0, "%s --", as_string(db).c_str());
  long count = 0;
  dbquery(db, dbFIELD_COUNT, &count);
  db.record = 0;
  for (db.field = 0; db.field < count; ++db.field) {
    elog_notify(0, "field [%ld]: %s.%s = %s", static_cast<long>(db.field), shown_answer(db, dbFIELD_BASE_TABLE),
                shown_answer(db, dbFIELD_NAME), shown_answer(db, dbFIELD_DETAIL));
  }
  elog_debug(0, "This view was achieved by: %s", shown_answer(db, dbVIEW_OPERATIONS));
}
