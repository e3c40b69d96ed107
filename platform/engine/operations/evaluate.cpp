// Evaluation at one record. Who goes through many records keeps a ViewRecord and moves it, as subset and find do.
#include "engine/operations/evaluate.h"

#include "engine/view/view_record.h"

namespace triglub {

bool evaluate_integer(const View& view, std::uint32_t record, Expression& expression, std::int64_t* result) {
  return expression.compiled->integer(ViewRecord(view, record), &expression.scratch, result);
}

bool evaluate_real(const View& view, std::uint32_t record, Expression& expression, double* result) {
  return expression.compiled->real(ViewRecord(view, record), &expression.scratch, result);
}

bool evaluate_text(const View& view, std::uint32_t record, Expression& expression, std::string* result) {
  return expression.compiled->text(ViewRecord(view, record), &expression.scratch, result);
}

}  // namespace triglub
