#ifndef TRIGLUB_TESTS_EXPRESSION_TREE_TEXT_H
#define TRIGLUB_TESTS_EXPRESSION_TREE_TEXT_H

#include <string>
#include <string_view>

namespace triglub::expression {

// The tree of an expression on one line: (&& (=~ f:sta /A/) (< f:lat 4)); the error's "expected ..." when there is
// none.
std::string tree_text(std::string_view expression);

}  // namespace triglub::expression

#endif
