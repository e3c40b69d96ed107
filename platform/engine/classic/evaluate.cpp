// dbex_compile and what evaluates: results go where the caller's untyped address says, by the type compiled for.
#include "engine/operations/evaluate.h"

#include "engine/classic/handle.h"
#include "engine/classic/new_text.h"
#include "platform/elog.h"

namespace triglub {

namespace {

bool evaluate(const View& view, std::uint32_t record, Expression& expression, void* result) {
  switch (expression.type) {
    case dbINTEGER:
    case dbYEARDAY:
      return evaluate_integer(view, record, expression, static_cast<std::int64_t*>(result));
    case dbREAL:
    case dbTIME:
      return evaluate_real(view, record, expression, static_cast<double*>(result));
    default: {
      std::string text;
      if (!evaluate_text(view, record, expression, &text)) return false;
      *static_cast<char**>(result) = new_text(text);
      return true;
    }
  }
}

// What a caller that goes on after a failure finds.
void clear_result(int type, void* result) {
  switch (type) {
    case dbINTEGER:
    case dbYEARDAY:
      *static_cast<std::int64_t*>(result) = 0;
      break;
    case dbREAL:
    case dbTIME:
      *static_cast<double*>(result) = 0.0;
      break;
    default:
      *static_cast<char**>(result) = nullptr;
  }
}

}  // namespace

bool evaluate_text(Dbptr db, Expression* compiled, std::string* text) {
  const View* view = view_of(db);
  if (compiled == nullptr || view == nullptr || !has_record(*view, db)) return false;
  return evaluate_text(*view, static_cast<std::uint32_t>(db.record), *compiled, text);
}

}  // namespace triglub

int dbex_compile(Dbptr db, const char* expression, Expression** compiled, int type) {
  using namespace triglub;
  *compiled = nullptr;
  Session* session = session_of(db);
  if (session == nullptr || session->view(db.table) == nullptr) {
    elog_complain(0, "an expression needs a view to be compiled for: %s", expression);
    return -1;
  }
  *compiled = session->expression(db.table, expression, type);
  return *compiled == nullptr ? -1 : 0;
}

int dbex_eval(Dbptr db, Expression* compiled, int /*reserved*/, void* result) {
  using namespace triglub;
  const View* view = view_of(db);
  if (compiled == nullptr || view == nullptr || !has_record(*view, db)) return -1;
  return evaluate(*view, static_cast<std::uint32_t>(db.record), *compiled, result) ? 0 : -1;
}

int dbex_evalstr(Dbptr db, const char* expression, int type, void* result) {
  triglub::clear_result(type, result);
  Expression* compiled = nullptr;
  if (dbex_compile(db, expression, &compiled, type) != 0) return -1;
  return dbex_eval(db, compiled, 0, result);
}
