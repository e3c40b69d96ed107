// The step between tree and program: what the names of an expression stand for.
#ifndef TRIGLUB_ENGINE_EXPRESSION_BIND_H
#define TRIGLUB_ENGINE_EXPRESSION_BIND_H

#include "engine/expression/tree.h"

namespace triglub::expression {

// Looks up the tree's names, compiles its patterns and gives every node its kind. Throws CompileError for a name that
// is unknown and a value of the wrong kind. Where nulls propagate, an unknown name is told with the one that was likely
// meant.
void bind(Tree* tree, const FieldNames& names, Nulls nulls);

}  // namespace triglub::expression

#endif
