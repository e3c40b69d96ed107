// dbsort: a list of field names and flags become the arguments of sort_view.
#include "engine/operations/sort.h"

#include "engine/classic/handle.h"

Dbptr dbsort(Dbptr view, Tbl* keys, int flags, const char* name) {
  using namespace triglub;
  const View* from = view_of(view);
  if (from == nullptr) return kInvalidHandle;
  const EqualRecords equal = (flags & dbSORT_UNIQUE) != 0 ? EqualRecords::first : EqualRecords::all;
  return handle_of_result(view, sort_view(*from, texts_of(keys), equal), name);
}
