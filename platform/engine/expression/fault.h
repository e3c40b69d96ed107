// What stops a compilation, and how it is shown.
#ifndef TRIGLUB_ENGINE_EXPRESSION_FAULT_H
#define TRIGLUB_ENGINE_EXPRESSION_FAULT_H

#include <cstddef>
#include <string>
#include <string_view>

#include "engine/expression/expression.h"

namespace triglub::expression {

// Thrown by the steps of a compilation, never beyond Compiled::compile.
struct CompileError {
  std::size_t position;  // byte offset of the place
  std::string expected;  // "expected ..."
};

// The error with the expression it was found in. Each character takes one column, so that the caret stands under its
// place: control characters show as a blank or a question mark. Of a long expression a window around the place shows.
Fault describe(const CompileError& error, std::string_view expression);

}  // namespace triglub::expression

#endif
