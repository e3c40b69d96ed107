// The nearest record at which a condition holds. FIELD =~ /pattern/ is decided by the field's distinct texts: the
// records near the start are looked at one by one, and when none of them matches, the field's runs tell where the next
// one is. So a search costs no more than the distance to its result, nor more than a few steps for each distinct text;
// a pattern that only one text matches is looked up.
#include <algorithm>

#include "engine/session/compile.h"

namespace triglub {

namespace {

constexpr std::int64_t DOES_NOT_COMPILE = -1;
constexpr std::int64_t NO_MATCH = -2;
constexpr std::int64_t NEAR = 256;  // records looked at before the runs are asked

struct Walk {
  std::int64_t from;  // the first record to look at
  std::int64_t step;  // 1 or -1
  std::int64_t past;  // where to stop: one beyond the last record, or -1

  std::int64_t left() const { return (past - from) * step; }
};

template <typename Condition>
std::int64_t walk(const Walk& walk, std::int64_t limit, Condition holds) {
  std::int64_t record = walk.from;
  for (std::int64_t seen = 0; record != walk.past && seen < limit; record += walk.step, ++seen) {
    if (holds(static_cast<std::uint32_t>(record))) return record;
  }
  return NO_MATCH;
}

std::int64_t nearest_of_code(const FieldRuns& runs, std::uint32_t code, const Walk& walk) {
  const std::int64_t found = walk.step > 0 ? runs.at_or_after(code, walk.from) : runs.at_or_before(code, walk.from);
  return found == FieldRuns::NONE ? NO_MATCH : found;
}

std::int64_t nearest_in_runs(const FieldRuns& runs, CodeCondition& condition, const Walk& walk) {
  if (condition.has_one_text()) {
    const auto code = condition.only_code();
    return code ? nearest_of_code(runs, *code, walk) : NO_MATCH;
  }
  std::int64_t best = NO_MATCH;
  for (std::uint32_t code = 0; code < condition.code_count(); ++code) {
    if (!condition.decide(code)) continue;
    const std::int64_t found = nearest_of_code(runs, code, walk);
    if (found == NO_MATCH) continue;
    if (best == NO_MATCH || (best - found) * walk.step > 0) best = found;
  }
  return best;
}

std::int64_t find_by_codes(const View& view, Expression& expression, const Walk& way) {
  CodeCondition condition(view, expression);
  const std::int64_t near = walk(way, NEAR, [&](std::uint32_t record) { return condition.is_true(record); });
  if (near != NO_MATCH || way.left() <= NEAR) return near;
  return nearest_in_runs(view.runs(condition.field()), condition, way);
}

std::int64_t find_by_evaluation(const View& view, const Expression& expression, const Walk& way) {
  ViewRecord at(view, 0);
  return walk(way, way.left(), [&](std::uint32_t record) {
    at.move_to(record);
    return expression.compiled->is_true(at);
  });
}

}  // namespace

}  // namespace triglub

std::int64_t dbfind(Dbptr db, const char* expression, int direction, Expression** hook) {
  using namespace triglub;
  const View* view = view_of(db);
  if (view == nullptr) return DOES_NOT_COMPILE;
  if (*hook == nullptr) *hook = compile_expression(*view, expression, dbINTEGER).release();
  if (*hook == nullptr) return DOES_NOT_COMPILE;
  const auto records = static_cast<std::int64_t>(view->record_count());
  const std::int64_t start = std::clamp<std::int64_t>(db.record, -1, records);
  const Walk way = direction == 0 ? Walk{start + 1, 1, records} : Walk{start - 1, -1, -1};
  if (way.left() <= 0) return NO_MATCH;
  return (*hook)->compiled->field_match() ? find_by_codes(*view, **hook, way) : find_by_evaluation(*view, **hook, way);
}

void dbfind_release(Expression** hook) {
  delete *hook;
  *hook = nullptr;
}
