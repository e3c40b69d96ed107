// From handles to sessions, views, fields and records, and back. A handle that names nothing gives null. What runs for
// every value that is read is inline.
#ifndef TRIGLUB_ENGINE_CLASSIC_HANDLE_H
#define TRIGLUB_ENGINE_CLASSIC_HANDLE_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/session/registry.h"
#include "engine/session/session.h"
#include "engine/view/view.h"
#include "platform/database.h"

namespace triglub {

inline constexpr Dbptr kInvalidHandle{};

// What they give is valid as long as the session is open and the view is not released.
inline Session* session_of(const Dbptr& db) { return the_registry().find(db.database); }
inline const View* view_of(const Dbptr& db) {
  const Session* session = session_of(db);
  return session == nullptr ? nullptr : session->view(db.table);
}
const ViewField* field_of(const View& view, const Dbptr& db);

// True when the handle's record is one of the view's.
inline bool has_record(const View& view, const Dbptr& db) {
  return db.record >= 0 && db.record < static_cast<std::int64_t>(view.record_count());
}

// The handle of a view of the session that `db` names.
Dbptr handle_of_view(const Dbptr& db, std::int64_t view);

// Adds the view that an operation made to the session that `db` names, and gives its handle: an invalid one for null.
Dbptr handle_of_result(const Dbptr& db, std::unique_ptr<const View> view, const char* name);

// The texts of a list; a null element counts as an empty text.
std::vector<std::string> texts_of(Tbl* list);

}  // namespace triglub

#endif
