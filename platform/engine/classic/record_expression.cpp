// From a handle to the view that an expression is compiled for.
#include "engine/operations/record_expression.h"

#include "engine/classic/handle.h"

namespace triglub {

std::unique_ptr<RecordExpression> RecordExpression::compile(Dbptr view, std::string_view text, std::string* fault) {
  const View* seen = view_of(view);
  if (seen != nullptr) return RecordExpressionCompiler::compile(*seen, text, fault);
  if (fault != nullptr) *fault = "an expression needs a view to be compiled for: " + std::string(text);
  return nullptr;
}

}  // namespace triglub
