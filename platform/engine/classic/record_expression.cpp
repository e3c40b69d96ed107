// From a handle to the view that an expression is compiled for.
#include "engine/operations/record_expression.h"

#include "engine/classic/handle.h"

namespace triglub {

std::unique_ptr<RecordExpression> RecordExpression::compile(Dbptr db, std::string_view text, std::string* fault) {
  const View* view = view_of(db);
  if (view != nullptr) return RecordExpressionCompiler::compile(*view, text, fault);
  if (fault != nullptr) *fault = "an expression needs a view to be compiled for: " + std::string(text);
  return nullptr;
}

}  // namespace triglub
