// The nearest record at which a condition holds. FIELD =~ /pattern/ is decided by the field's distinct texts: the
// records near the start are looked at one by one, and when none of them matches, the field's runs tell where the next
// match is. So a search costs no more than the distance to its result, and no more than a few steps for each distinct
// text; the text of a pattern without special characters is looked up.
#include "engine/operations/find.h"

#include <algorithm>

#include "engine/operations/code_condition.h"
#include "engine/view/view_record.h"

namespace triglub {

namespace {

constexpr std::int64_t kNoMatch = -1;
constexpr std::int64_t kNear = 256;  // records looked at before the runs are asked

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
  return kNoMatch;
}

std::int64_t nearest_of_code(const FieldRuns& runs, std::uint32_t code, const Walk& walk) {
  const std::int64_t found = walk.step > 0 ? runs.at_or_after(code, walk.from) : runs.at_or_before(code, walk.from);
  return found == FieldRuns::kNone ? kNoMatch : found;
}

std::int64_t nearest_in_runs(const FieldRuns& runs, CodeCondition& condition, const Walk& walk) {
  if (condition.has_one_text()) {
    const auto code = condition.only_code();
    return code ? nearest_of_code(runs, *code, walk) : kNoMatch;
  }
  std::int64_t best = kNoMatch;
  for (std::uint32_t code = 0; code < condition.code_count(); ++code) {
    if (!condition.decide(code)) continue;
    const std::int64_t found = nearest_of_code(runs, code, walk);
    if (found == kNoMatch) continue;
    if (best == kNoMatch || (best - found) * walk.step > 0) best = found;
  }
  return best;
}

std::int64_t find_by_codes(const View& view, Expression& expression, const Walk& way) {
  CodeCondition condition(view, expression);
  const std::int64_t near = walk(way, kNear, [&](std::uint32_t record) { return condition.is_true(record); });
  if (near != kNoMatch || way.left() <= kNear) return near;
  return nearest_in_runs(view.runs(condition.field()), condition, way);
}

std::int64_t find_by_evaluation(const View& view, Expression& expression, const Walk& way) {
  ViewRecord at(view, 0);
  return walk(way, way.left(), [&](std::uint32_t record) {
    at.move_to(record);
    return expression.compiled->is_true(at, &expression.scratch);
  });
}

Walk way_from(std::int64_t start, Direction direction, std::int64_t records) {
  const std::int64_t from = std::clamp<std::int64_t>(start, -1, records);
  return direction == Direction::forward ? Walk{from + 1, 1, records} : Walk{from - 1, -1, -1};
}

}  // namespace

std::optional<std::uint32_t> find_record(const View& view, Expression& condition, std::int64_t start,
                                         Direction direction) {
  const Walk way = way_from(start, direction, view.record_count());
  if (way.left() <= 0) return std::nullopt;
  const std::int64_t found = condition.compiled->field_match() ? find_by_codes(view, condition, way)
                                                               : find_by_evaluation(view, condition, way);
  if (found == kNoMatch) return std::nullopt;
  return static_cast<std::uint32_t>(found);
}

}  // namespace triglub
