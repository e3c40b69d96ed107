// An expression as a tree. The nodes stand in one list, operands before what uses them, so that a walk from its front
// to its end meets every operand first and nothing has to recurse; the last node is the whole expression.
#ifndef TRIGLUB_ENGINE_EXPRESSION_TREE_H
#define TRIGLUB_ENGINE_EXPRESSION_TREE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "engine/expression/expression.h"
#include "engine/expression/operators.h"

namespace triglub::expression {

struct Function;

enum class NodeType : std::uint8_t { integer, real, text, field, prefix, binary, match, conditional, call };

using NodeIndex = std::uint32_t;

struct Node {
  NodeType type = NodeType::integer;
  Operator oper{};          // of prefix, binary and match
  Kind kind{};              // of the value; of other than literals known when bound
  std::size_t begin = 0;    // byte offset of the first character, parentheses not counted
  std::string_view text{};  // a text; the name of a field or function; a pattern as written
  // Operands: one of prefix and match, two of binary, three of a conditional.
  NodeIndex a = 0;
  NodeIndex b = 0;
  NodeIndex c = 0;
  // Arguments of a call: where in Tree::arguments, and how many.
  std::uint32_t first_argument = 0;
  std::uint32_t argument_count = 0;
  std::int64_t integer = 0;
  double real = 0;
  std::size_t pattern_begin = 0;  // byte offset of a pattern's first slash
  // Known when bound.
  int field = 0;
  bool has_doubt = false;  // of a field
  const Function* function = nullptr;
  const Matcher* matcher = nullptr;
};

struct Tree {
  std::vector<Node> nodes;
  std::vector<NodeIndex> arguments;
  std::vector<std::unique_ptr<Matcher>> matchers;

  const Node& root() const { return nodes.back(); }
  std::span<const NodeIndex> arguments_of(const Node& call) const {
    return std::span(arguments).subspan(call.first_argument, call.argument_count);
  }
};

}  // namespace triglub::expression

#endif
