// The value of an expression at one record. To go through many records, keep a ViewRecord and move it, as subset and
// find do.
#ifndef TRIGLUB_ENGINE_OPERATIONS_EVALUATE_H
#define TRIGLUB_ENGINE_OPERATIONS_EVALUATE_H

#include <cstdint>
#include <string>

#include "engine/operations/expression.h"
#include "engine/view/view.h"
#include "engine/view/view_record.h"

namespace triglub {

// The value as an integer, a real or a text, whatever type the expression was compiled for. False when the evaluation
// fails; the result is then untouched.
// REQUIRES: the expression was compiled for the view, and the record is one of the view's.
inline bool evaluate_integer(const View& view, std::uint32_t record, Expression& expression, std::int64_t* result) {
  return expression.compiled->integer(ViewRecord(view, record), &expression.scratch, result);
}

inline bool evaluate_real(const View& view, std::uint32_t record, Expression& expression, double* result) {
  return expression.compiled->real(ViewRecord(view, record), &expression.scratch, result);
}

inline bool evaluate_text(const View& view, std::uint32_t record, Expression& expression, std::string* result) {
  return expression.compiled->text(ViewRecord(view, record), &expression.scratch, result);
}

}  // namespace triglub

#endif
