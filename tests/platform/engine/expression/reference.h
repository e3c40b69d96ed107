// A second evaluator, written for clearness alone: it reads the text from left to right and computes as it goes, with
// no tree, no kinds settled beforehand and no jumps. A part that has no value is carried along as such, and counts only
// where it is needed.
#ifndef TRIGLUB_TESTS_EXPRESSION_REFERENCE_H
#define TRIGLUB_TESTS_EXPRESSION_REFERENCE_H

#include <cstdint>
#include <string>

namespace triglub::expression {

// The value of an expression at the station as text; "fails" when it has none, "refused" when the text is no
// expression.
std::string reference_text(const std::string& expression);

// The same at a record of the element, where nulls propagate; "null" for one.
std::string reference_text_in_element(const std::string& expression, std::uint32_t record);

}  // namespace triglub::expression

#endif
