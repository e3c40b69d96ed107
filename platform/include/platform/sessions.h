// Sessions: several threads at one database.
//
//     Dbptr db;
//     if (dbopen("/net/aak/aak", "r", &db) != 0) ...
//     std::thread worker([db] {
//       Dbptr own;
//       if (triglub::open_session(db, &own) != 0) ...
//       Dbptr stage = dblookup(own, nullptr, "stage", nullptr, nullptr);   // loaded once, by whoever asks first
//       ...
//       dbclose(own);
//     });
//
// A session has views, names and compiled expressions of its own; tables, their dictionaries and their join indexes are
// those of the database, in memory once. One thread at a time may use a session; different sessions may be used at the
// same time. What belongs to one session (handles, expressions, search hooks, texts) means nothing to another.
#ifndef TRIGLUB_PLATFORM_SESSIONS_H
#define TRIGLUB_PLATFORM_SESSIONS_H

#include "platform/database.h"
#include "platform/export.h"

namespace triglub {

// Opens a further session over what is loaded and will be loaded for `db`; the source is not looked at again. Any
// thread may call it for a session that stays open meanwhile. Returns 0 and a handle as dbopen gives it; -1, *session
// invalid and no complaint, for a handle of no open session. The caller ends it with dbclose, in any order with
// others: the tables stay until the last of their sessions is closed.
TRIGLUB_API int open_session(Dbptr db, Dbptr* session);

}  // namespace triglub

#endif
