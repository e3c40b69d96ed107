// Opening and closing: dbopen makes a snapshot and its first session.
#include "engine/classic/open.h"

#include <cstring>
#include <memory>
#include <utility>

#include "engine/classic/handle.h"
#include "engine/source/memory/memory_source.h"
#include "engine/source/open/open_source.h"
#include "platform/elog.h"
#include "platform/sessions.h"

namespace triglub {

namespace {

Dbptr open_over(std::shared_ptr<const Snapshot> snapshot) {
  return {the_registry().add(std::make_unique<Session>(std::move(snapshot))), dbALL, dbALL, dbALL};
}

}  // namespace

int dbopen_source(std::shared_ptr<const Source> source, Dbptr* db) {
  *db = open_over(std::make_shared<const Snapshot>(std::move(source)));
  return 0;
}

Dbptr open_empty() {
  return open_over(std::make_shared<const Snapshot>(std::make_shared<MemorySource>("empty", MemorySource::Tables{})));
}

int open_session(Dbptr db, Dbptr* session) {
  *session = kInvalidHandle;
  const Session* known = session_of(db);
  if (known == nullptr) return -1;
  *session = open_over(known->snapshot());
  return 0;
}

}  // namespace triglub

int dbopen(const char* source, const char* mode, Dbptr* db) {
  using namespace triglub;
  *db = kInvalidHandle;
  if (mode == nullptr || std::strcmp(mode, "r") != 0) {
    elog_complain(0, "dbopen: databases are opened for reading only, mode \"r\"");
    return -1;
  }
  auto found = open_source(source == nullptr ? "" : source);
  return found == nullptr ? -1 : dbopen_source(std::move(found), db);
}

int dbclose(Dbptr db) { return triglub::the_registry().remove(db.database) ? 0 : -1; }
