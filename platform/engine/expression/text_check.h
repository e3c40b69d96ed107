// What the text of every expression must be before it is read.
#ifndef TRIGLUB_ENGINE_EXPRESSION_TEXT_CHECK_H
#define TRIGLUB_ENGINE_EXPRESSION_TEXT_CHECK_H

#include <string_view>

namespace triglub::expression {

// Throws CompileError for a text of more than kMaxLength bytes, and for one that is not UTF-8.
void check_text(std::string_view text);

}  // namespace triglub::expression

#endif
