// dbjoin: lists of keys by address become JoinKeys and back.
#include "engine/operations/join.h"

#include <optional>

#include "engine/classic/handle.h"
#include "engine/classic/new_text.h"
#include "platform/elog.h"

namespace triglub {

namespace {

std::optional<JoinKeys> keys_of(Tbl** keys_a, Tbl** keys_b) {
  if (keys_a == nullptr || keys_b == nullptr || *keys_a == nullptr || *keys_b == nullptr) return std::nullopt;
  return JoinKeys{texts_of(*keys_a), texts_of(*keys_b)};
}

void report_keys(const std::vector<std::string>& keys, Tbl** joined_on) {
  if (joined_on == nullptr) return;
  *joined_on = newtbl(static_cast<int>(keys.size()));
  // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): the list keeps the texts
  for (const std::string& key : keys) pushtbl(*joined_on, new_text(key));
}

}  // namespace

}  // namespace triglub

Dbptr dbjoin(Dbptr a, Dbptr b, Tbl** keys_a, Tbl** keys_b, int outer, Tbl** joined_on, const char* name) {
  using namespace triglub;
  const View* view = view_of(a);
  const View* other = view_of(b);
  if (view == nullptr || other == nullptr) return kInvalidHandle;
  if (a.database != b.database) {
    elog_complain(0, "dbjoin: the views are of different databases");
    return kInvalidHandle;
  }
  auto joined = join_views(*view, *other, keys_of(keys_a, keys_b), outer != 0 ? JoinKind::outer : JoinKind::inner);
  if (!joined) return kInvalidHandle;
  report_keys(joined->keys, joined_on);
  return handle_of_result(a, std::move(joined->view), name);
}
