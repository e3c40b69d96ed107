// dbprocess: applies the steps in turn, unknown ones through the caller's handler. Handles are resolved anew at each
// step, as a handler may do anything to the database.
#include <string>

#include "engine/classic/handle.h"
#include "engine/session/steps.h"
#include "platform/elog.h"

namespace triglub {

namespace {

Dbptr apply(Dbptr db, const Step& step, DbprocessHandler handler) {
  if (handler != nullptr && !is_operation(step)) return handler(db, step.text.c_str());
  Session* session = session_of(db);
  if (session == nullptr) return kInvalidHandle;
  const std::int64_t view = apply_step(*session, db.table, step);
  return view < 0 ? kInvalidHandle : handle_of_view(db, view);
}

void trace(const Step& step, const View& view) {
  elog_debug(0, "dbprocess: %s: %ld records", step.text.c_str(), static_cast<long>(view.record_count()));
}

// A step list in progress: the view that the steps so far have made.
class Process {
 public:
  Process(Dbptr db, DbprocessHandler handler) : db_(db), handler_(handler) {}

  Dbptr result() const { return db_; }

  // False after a complaint.
  bool apply(const Step& step) {
    if (step.verb == "verbose") {
      is_verbose_ = true;
      return true;
    }
    const Dbptr made = triglub::apply(db_, step, handler_);
    // Nobody has a handle of a view in the middle of the list, unless the handler got it.
    const bool is_own = handler_ == nullptr || is_operation(step);
    if (is_own) leave_view();
    const View* view = view_of(made);
    if (view == nullptr) {
      elog_complain(0, "dbprocess: the step '%s' failed", step.text.c_str());
      return false;
    }
    if (is_verbose_) trace(step, *view);
    is_view_own_ = is_own && step.verb != "dbopen";
    db_ = made;
    return true;
  }

  // Releases the present view when a step of this list made it and it is no base table.
  void leave_view() {
    if (is_view_own_) release_view(db_);
    is_view_own_ = false;
  }

 private:
  Dbptr db_;
  DbprocessHandler handler_;
  bool is_verbose_ = false;
  bool is_view_own_ = false;
};

}  // namespace

}  // namespace triglub

Dbptr dbprocess(Dbptr db, Tbl* steps, DbprocessHandler handler) {
  using namespace triglub;
  if (session_of(db) == nullptr) return kInvalidHandle;
  Process process(db, handler);
  for (long i = 0; i < maxtbl(steps); ++i) {
    const char* text = static_cast<const char*>(gettbl(steps, i));
    if (text == nullptr) {
      elog_complain(0, "dbprocess: step %ld of the list is null", i + 1);
      process.leave_view();
      return kInvalidHandle;
    }
    if (!process.apply(parse_step(text))) return kInvalidHandle;
  }
  return process.result();
}
