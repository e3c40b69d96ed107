// Handles are numbers, so that a stale one is found out and never leads to memory that is gone.
#include "engine/classic/handle.h"

#include <utility>

namespace triglub {

const ViewField* field_of(const View& view, const Dbptr& db) {
  return view.has_field(db.field) ? &view.fields()[static_cast<std::size_t>(db.field)] : nullptr;
}

Dbptr handle_of_view(const Dbptr& db, std::int64_t view) { return {db.database, view, dbALL, dbALL}; }

Dbptr handle_of_result(const Dbptr& db, std::unique_ptr<const View> view, const char* name) {
  Session* session = session_of(db);
  if (session == nullptr || view == nullptr) return kInvalidHandle;
  return handle_of_view(db, session->add_view(std::move(view), name));
}

std::vector<std::string> texts_of(Tbl* list) {
  std::vector<std::string> texts;
  for (long i = 0; i < maxtbl(list); ++i) {
    const char* text = static_cast<const char*>(gettbl(list, i));
    texts.emplace_back(text == nullptr ? "" : text);
  }
  return texts;
}

}  // namespace triglub
