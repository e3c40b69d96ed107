// dbsubset: the condition as text, the result a view of the session.
#include "engine/operations/subset.h"

#include "engine/classic/handle.h"

Dbptr dbsubset(Dbptr view, const char* expression, const char* name) {
  using namespace triglub;
  const View* from = view_of(view);
  if (from == nullptr) return kInvalidHandle;
  return handle_of_result(view, subset_view(*from, expression, session_of(view)->is_kept(view.table)), name);
}
