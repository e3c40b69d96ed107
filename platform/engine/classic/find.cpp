// dbfind and its hook: the condition, compiled by the first search.
#include "engine/operations/find.h"

#include "engine/classic/handle.h"

namespace triglub {

namespace {

constexpr std::int64_t kDoesNotCompile = -1;
constexpr std::int64_t kNoMatch = -2;

}  // namespace

}  // namespace triglub

std::int64_t dbfind(Dbptr db, const char* expression, int direction, Expression** hook) {
  using namespace triglub;
  const View* view = view_of(db);
  if (view == nullptr) return kDoesNotCompile;
  if (*hook == nullptr) *hook = compile_expression(*view, expression, dbINTEGER).release();
  if (*hook == nullptr) return kDoesNotCompile;
  const auto found = find_record(*view, **hook, db.record, direction == 0 ? Direction::forward : Direction::backward);
  return found ? std::int64_t{*found} : kNoMatch;
}

void dbfind_release(Expression** hook) {
  delete *hook;
  *hook = nullptr;
}
