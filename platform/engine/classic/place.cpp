// Where rows come from, for messages.
#include "engine/classic/handle.h"
#include "platform/sources.h"

namespace triglub {

std::string row_place(Dbptr db) {
  const View* view = view_of(db);
  if (view == nullptr || !has_record(*view, db)) return "";
  const std::uint32_t row = view->row(0, static_cast<std::uint32_t>(db.record));
  return row == kNoRow ? "" : view->tables().front().table->place_of(row);
}

}  // namespace triglub
