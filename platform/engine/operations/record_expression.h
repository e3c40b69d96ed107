// What stands behind platform/record_expression.h: an expression in which nulls propagate, over the records of a view.
#ifndef TRIGLUB_ENGINE_OPERATIONS_RECORD_EXPRESSION_H
#define TRIGLUB_ENGINE_OPERATIONS_RECORD_EXPRESSION_H

#include <memory>
#include <string>
#include <string_view>

#include "engine/view/view.h"
#include "platform/record_expression.h"

namespace triglub {

class RecordExpressionCompiler {
 public:
  // The expression over the fields of the view, which must outlive it; null, and *fault unless that is null, when it
  // does not compile.
  static std::unique_ptr<RecordExpression> compile(const View& view, std::string_view text, std::string* fault);
};

}  // namespace triglub

#endif
