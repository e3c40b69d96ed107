// Joins of views that stay with tables that stay are made once for the life of the session; every other step makes a
// view of its own.
#include "engine/session/steps.h"

#include <memory>
#include <string>

#include "engine/operations/join.h"
#include "engine/operations/sort.h"
#include "engine/operations/subset.h"
#include "platform/database.h"
#include "platform/elog.h"

namespace triglub {

namespace {

std::int64_t fail(const Step& step, const char* fault) {
  elog_complain(0, "dbprocess: '%s': %s", step.text.c_str(), fault);
  return dbINVALID;
}

// The view that the step works on; null after a complaint.
const View* working_view(const Session& session, std::int64_t number, const Step& step) {
  const View* view = session.view(number);
  if (view == nullptr) fail(step, "there is no view to work on; a list begins with dbopen TABLE");
  return view;
}

bool is_table(const Session& session, const std::string& name) { return session.snapshot()->schema().find(name) >= 0; }

// A table or view by name. One that refuses to load has had its complaints.
std::int64_t find_table(Session& session, const Step& step, const std::string& name) {
  const std::int64_t found = session.find_view(name);
  if (found >= 0 || is_table(session, name)) return found;
  return fail(step, "the schema has no such table");
}

std::int64_t added(Session& session, std::unique_ptr<const View> view) {
  return view == nullptr ? dbINVALID : session.add_view(std::move(view), nullptr);
}

std::int64_t open_table(Session& session, const Step& step) {
  if (step.words.size() != 1) return fail(step, "expected one table");
  return find_table(session, step, step.words[0]);
}

std::int64_t join_table(Session& session, std::int64_t number, const Step& step, const JoinStep& join) {
  if (join.table.empty()) return fail(step, "expected a table");
  const std::int64_t table = find_table(session, step, join.table);
  if (table < 0) return dbINVALID;
  const View* view = working_view(session, number, step);
  if (view == nullptr) return dbINVALID;
  auto joined = join_views(*view, *session.view(table), join.keys, join.is_outer ? JoinKind::outer : JoinKind::inner);
  return joined ? added(session, std::move(joined->view)) : dbINVALID;
}

// A named view, unlike a table, may come to name another.
std::int64_t join_once(Session& session, std::int64_t number, const Step& step) {
  const JoinStep join = parse_join(step);
  if (!session.is_kept(number) || !is_table(session, join.table)) return join_table(session, number, step, join);
  const std::int64_t known = session.kept_join(number, step.text);
  if (known >= 0) return known;
  const std::int64_t joined = join_table(session, number, step, join);
  if (joined >= 0) session.keep_join(number, step.text, joined);
  return joined;
}

std::int64_t subset(Session& session, std::int64_t number, const Step& step) {
  const View* view = working_view(session, number, step);
  if (view == nullptr) return dbINVALID;
  return added(session, subset_view(*view, step.rest.c_str(), session.is_kept(number)));
}

std::int64_t sort(Session& session, std::int64_t number, const Step& step) {
  const SortStep sort = parse_sort(step);
  if (sort.keys.empty()) return fail(step, "expected keys");
  const View* view = working_view(session, number, step);
  if (view == nullptr) return dbINVALID;
  return added(session, sort_view(*view, sort.keys, sort.is_unique ? EqualRecords::first : EqualRecords::all));
}

}  // namespace

std::int64_t apply_step(Session& session, std::int64_t view, const Step& step) {
  if (step.verb == "dbopen") return open_table(session, step);
  if (step.verb == "dbjoin") return join_once(session, view, step);
  if (step.verb == "dbsubset") return subset(session, view, step);
  if (step.verb == "dbsort") return sort(session, view, step);
  return fail(step, "there is no such operation");
}

}  // namespace triglub
