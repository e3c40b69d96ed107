// An expression compiled for a view, with what its evaluation needs.
#ifndef TRIGLUB_ENGINE_OPERATIONS_EXPRESSION_H
#define TRIGLUB_ENGINE_OPERATIONS_EXPRESSION_H

#include <memory>
#include <vector>

#include "engine/expression/expression.h"
#include "engine/view/view.h"

// For one thread at a time: the compiled form could be shared, scratch and memo could not.
struct Expression {
  std::unique_ptr<const triglub::expression::Compiled> compiled;
  int type = 0;  // dbINTEGER ... dbSTRING
  triglub::expression::Scratch scratch;
  // The answers of the condition `FIELD =~ /pattern/` so far, by text code: 0 not asked yet, 1 no, 2 yes.
  std::vector<char> memo;
};

namespace triglub {

// The expression over the fields of the view, for that view alone; null after a complaint that shows the expression
// with a caret under the fault.
std::unique_ptr<Expression> compile_expression(const View& view, const char* text, int type);

}  // namespace triglub

#endif
