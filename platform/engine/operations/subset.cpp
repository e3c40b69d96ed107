// The records at which a condition holds, in order.
#include "engine/session/compile.h"

namespace triglub {

namespace {

template <typename Condition>
std::vector<std::uint32_t> records_where(const View& view, Condition holds) {
  std::vector<std::uint32_t> records;
  for (std::uint32_t record = 0; record < view.record_count(); ++record) {
    if (holds(record)) records.push_back(record);
  }
  return records;
}

// In a view that stays, the runs of the one text that matches are found once for all conditions on the field.
std::vector<std::uint32_t> records_of_text(const View& view, const CodeCondition& condition) {
  const auto code = condition.only_code();
  return code ? view.runs(condition.field()).records(*code) : std::vector<std::uint32_t>();
}

std::vector<std::uint32_t> matching_records(const View& view, Expression& expression, bool view_is_kept) {
  if (expression.compiled->field_match()) {
    CodeCondition condition(view, expression);
    if (view_is_kept && condition.has_one_text()) return records_of_text(view, condition);
    return records_where(view, [&](std::uint32_t record) { return condition.is_true(record); });
  }
  ViewRecord at(view, 0);
  return records_where(view, [&](std::uint32_t record) {
    at.move_to(record);
    return expression.compiled->is_true(at);
  });
}

}  // namespace

}  // namespace triglub

Dbptr dbsubset(Dbptr view, const char* expression, const char* name) {
  using namespace triglub;
  const View* from = view_of(view);
  if (from == nullptr) return INVALID_HANDLE;
  const auto compiled = compile_expression(*from, expression, dbINTEGER);
  if (compiled == nullptr) return INVALID_HANDLE;
  Database& database = *database_of(view);
  return selected_records(database, *from, matching_records(*from, *compiled, database.is_kept(view.table)),
                          "dbsubset " + std::string(expression), name);
}
