#include "tree_text.h"

#include "engine/expression/fault.h"
#include "engine/expression/numbers.h"
#include "engine/expression/parse.h"

namespace triglub::expression {

namespace {

std::string text_of_node(const Tree& tree, NodeIndex index) {
  const Node& node = tree.nodes[index];
  const auto child = [&](NodeIndex operand) { return text_of_node(tree, operand); };
  const std::string symbol(entry_of(node.oper).symbol);
  NumberBuffer buffer;
  switch (node.type) {
    case NodeType::integer:
      return std::to_string(node.integer);
    case NodeType::real:
      return "r:" + std::string(text_of(node.real, &buffer));
    case NodeType::text:
      return "\"" + std::string(node.text) + "\"";
    case NodeType::field:
      return "f:" + std::string(node.text);
    case NodeType::prefix:
      return "(" + symbol + " " + child(node.a) + ")";
    case NodeType::binary:
      return "(" + symbol + " " + child(node.a) + " " + child(node.b) + ")";
    case NodeType::match:
      return "(" + symbol + " " + child(node.a) + " /" + std::string(node.text) + "/)";
    case NodeType::conditional:
      return "(? " + child(node.a) + " " + child(node.b) + " " + child(node.c) + ")";
    case NodeType::call:
      break;
  }
  std::string call = "(" + std::string(node.text);
  for (const NodeIndex argument : tree.arguments_of(node)) call += " " + child(argument);
  return call + ")";
}

}  // namespace

std::string tree_text(std::string_view expression) {
  try {
    const Tree tree = parse(expression);
    return text_of_node(tree, static_cast<NodeIndex>(tree.nodes.size() - 1));
  } catch (const CompileError& error) {
    return std::to_string(error.position) + ": " + error.expected;
  }
}

}  // namespace triglub::expression
