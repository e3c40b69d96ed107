// The expressions of the second edition, read by recursive descent and evaluated by walking over the tree.
//
// Known are fields, numbers, texts, + - * / % and their prefixes, comparisons, =~ and !~, && || !, ?:, is_null, assume,
// concat, xml, agreed, first, last, earliest, latest and count. A number is never compared with a text, and no integer
// overflows.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_EXPRESSION_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_EXPRESSION_H

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "reference/edition2/rows.h"

namespace triglub_reference::edition2 {

// Null, integer, real or text.
using Value = std::variant<std::monostate, long, double, std::string>;

inline bool is_null(const Value& value) { return std::holds_alternative<std::monostate>(value); }

// The number of one that is no text.
double number_of(const Value& value);

// Numbers by value, texts by bytes; of two values of one kind that are not null.
bool is_less(const Value& a, const Value& b);

struct Node {
  std::string what;  // "field", "literal", an operator or the name of a function
  Kind kind = Kind::integer;
  std::vector<Node> parts;
  std::string pattern;         // of =~
  std::optional<Field> field;  // of a field
  Value literal = {};
};

// std::runtime_error when it is not one of those above.
Node parsed(const std::string& expression);

// The value at a record of an element's records; an evaluation that fails gives null.
Value value_at(const Node& node, const Record& record, const RecordList& of_element);

// The same as a text: a bare number field as its file has it, other numbers with the digits that they have.
std::optional<std::string> text_at(const Node& node, const Record& record, const RecordList& of_element);

}  // namespace triglub_reference::edition2

#endif
