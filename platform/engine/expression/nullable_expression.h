// Expressions in which nulls propagate: a null field makes null what is computed of it, and functions over records see
// all the records of an element.
//
//     Fault fault;
//     auto expression = NullableExpression::compile("assume(lat, 0) + count(chan)", names, &fault);
//     if (expression == nullptr) elog_complain(0, "%s", fault.text.c_str());
//     Value value;
//     if (expression->evaluate(record, &records, &value) && !value.is_null()) ...
//
// The language, its limits and its failures are otherwise those of expression.h. An expression has memory of its own
// for what it makes: one thread at a time.
#ifndef TRIGLUB_ENGINE_EXPRESSION_NULLABLE_EXPRESSION_H
#define TRIGLUB_ENGINE_EXPRESSION_NULLABLE_EXPRESSION_H

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "engine/expression/expression.h"
#include "engine/expression/value.h"

namespace triglub::expression {

// The records of an element.
class Records {
 public:
  virtual ~Records() = default;
  virtual std::uint32_t count() const = 0;
  // One of them, below count(); valid until the next one is asked for.
  virtual const Record& record(std::uint32_t i) = 0;
};

class NullableExpression {
 public:
  // Null, and the fault, when the text is no expression over these names.
  static std::unique_ptr<NullableExpression> compile(std::string_view text, const FieldNames& names, Fault* fault);
  virtual ~NullableExpression() = default;

  // Of every value but null.
  virtual Kind kind() const = 0;
  // The field when the expression is nothing else, kNoField when it is more.
  virtual int bare_field() const = 0;
  virtual bool uses_records() const = 0;
  // The fields outside and inside functions over records, each once, ascending.
  virtual const std::vector<int>& own_fields() const = 0;
  virtual const std::vector<int>& fields_over_records() const = 0;

  // The value, or null; false when the evaluation fails. A text is valid until the next evaluation, or as long as the
  // record's table. *doubt, unless that is null, becomes what a real is in doubt by: 0 when it is exact.
  // REQUIRES: records->count() > 0 where uses_records(); they may be null where not.
  virtual bool evaluate(const Record& record, Records* records, Value* result, double* doubt) = 0;
  // How many times assume() took its second argument so far.
  virtual std::uint64_t assumed() const = 0;
};

}  // namespace triglub::expression

#endif
