// Conditions on the texts of one field are decided by their codes, the others record by record.
#include "engine/operations/subset.h"

#include <string>

#include "engine/operations/code_condition.h"
#include "engine/operations/expression.h"
#include "engine/operations/select.h"
#include "engine/view/view_record.h"
#include "platform/database.h"

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

std::vector<std::uint32_t> matching_records(const View& view, Expression& expression, bool is_kept) {
  if (expression.compiled->field_match()) {
    CodeCondition condition(view, expression);
    if (is_kept && condition.has_one_text()) return records_of_text(view, condition);
    return records_where(view, [&](std::uint32_t record) { return condition.is_true(record); });
  }
  ViewRecord at(view, 0);
  return records_where(view, [&](std::uint32_t record) {
    at.move_to(record);
    return expression.compiled->is_true(at, &expression.scratch);
  });
}

}  // namespace

std::unique_ptr<const View> subset_view(const View& view, const char* condition, bool is_kept) {
  const auto compiled = compile_expression(view, condition, dbINTEGER);
  if (compiled == nullptr) return nullptr;
  return select_records(view, matching_records(view, *compiled, is_kept), std::string("dbsubset ") + condition);
}

}  // namespace triglub
