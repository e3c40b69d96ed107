// Compiles an expression for a view and tells the log why one does not compile.
#include "engine/operations/expression.h"

#include "platform/elog.h"

namespace triglub {

std::unique_ptr<Expression> compile_expression(const View& view, const char* text, int type) {
  expression::Fault fault{};
  auto compiled = expression::Compiled::compile(text, view, type, &fault);
  if (compiled == nullptr) {
    elog_complain(0, "%s", fault.text.c_str());
    return nullptr;
  }
  auto made = std::make_unique<Expression>();
  made->compiled = std::move(compiled);
  made->type = type;
  return made;
}

}  // namespace triglub
