// The last step of a compilation: a bound tree to the program that computes it.
#ifndef TRIGLUB_ENGINE_EXPRESSION_EMIT_H
#define TRIGLUB_ENGINE_EXPRESSION_EMIT_H

#include "engine/expression/program.h"
#include "engine/expression/tree.h"

namespace triglub::expression {

// The program that computes a bound tree, as a value of the tree's own kind. It refers to the tree's matchers and to
// the text of the expression, which must outlive it.
Program emit(const Tree& tree, Nulls nulls);

}  // namespace triglub::expression

#endif
