// The operators, their symbols and how tightly they bind.
#ifndef TRIGLUB_ENGINE_EXPRESSION_OPERATORS_H
#define TRIGLUB_ENGINE_EXPRESSION_OPERATORS_H

#include <array>
#include <cstdint>
#include <string_view>

namespace triglub::expression {

enum class Operator : std::uint8_t {
  negate,
  logical_not,
  multiply,
  divide,
  remainder,
  add,
  subtract,
  less,
  less_equal,
  greater,
  greater_equal,
  equal,
  not_equal,
  match,
  no_match,
  logical_and,
  logical_or,
};

inline constexpr int kPrefix = 0;  // the level of what stands before one operand only
inline constexpr int kLoosest = 1;

struct OperatorEntry {
  std::string_view symbol;
  int level;  // of operators between two operands; a higher level binds tighter
};

// By the number of the operator.
inline constexpr std::array<OperatorEntry, 17> kOperators = {{
    {"-", kPrefix},
    {"!", kPrefix},
    {"*", 7},
    {"/", 7},
    {"%", 7},
    {"+", 6},
    {"-", 6},
    {"<", 5},
    {"<=", 5},
    {">", 5},
    {">=", 5},
    {"==", 4},
    {"!=", 4},
    {"=~", 3},
    {"!~", 3},
    {"&&", 2},
    {"||", kLoosest},
}};

constexpr const OperatorEntry& entry_of(Operator oper) { return kOperators[static_cast<std::size_t>(oper)]; }

constexpr bool is_logical(Operator oper) { return oper == Operator::logical_and || oper == Operator::logical_or; }
constexpr bool is_match(Operator oper) { return oper == Operator::match || oper == Operator::no_match; }
constexpr bool is_comparison(Operator oper) { return oper >= Operator::less && oper <= Operator::not_equal; }

}  // namespace triglub::expression

#endif
