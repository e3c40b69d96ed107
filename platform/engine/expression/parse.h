// The first step of a compilation: a text to its tree.
#ifndef TRIGLUB_ENGINE_EXPRESSION_PARSE_H
#define TRIGLUB_ENGINE_EXPRESSION_PARSE_H

#include <string_view>

#include "engine/expression/tree.h"

namespace triglub::expression {

// The tree of the expression, its names not looked up. The text must outlive it. Throws CompileError.
Tree parse(std::string_view text);

}  // namespace triglub::expression

#endif
