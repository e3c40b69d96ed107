// Precedence climbing: operators of one level chain to the left in a loop, so that the depth of recursion is bounded by
// the levels of nesting (parentheses, arguments, ?: and prefix operators), which are limited.
#include "engine/expression/parse.h"

#include <string>
#include <utility>

#include "engine/expression/fault.h"
#include "engine/expression/lex.h"

namespace triglub::expression {

namespace {

class Parser {
 public:
  explicit Parser(std::string_view text) : lexer_(text), token_(lexer_.next()) { tree_.nodes.reserve(8); }

  Tree whole() {
    conditional();
    if (token_.type != TokenType::end) throw CompileError{token_.begin, "expected an operator or the end"};
    return std::move(tree_);
  }

 private:
  // Counts a level of nesting as long as it lives.
  class Level {
   public:
    Level(int* levels, std::size_t place) : levels_(levels) {
      if (*levels_ == kMaxNesting) {
        throw CompileError{place, "expected at most " + std::to_string(kMaxNesting) + " levels of nesting"};
      }
      ++*levels_;
    }
    ~Level() { --*levels_; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

   private:
    int* levels_;
  };

  void advance() { token_ = lexer_.next(); }

  void expect(TokenType type, const char* expected) {
    if (token_.type != type) throw CompileError{token_.begin, expected};
    advance();
  }

  NodeIndex add(const Node& node) {
    tree_.nodes.push_back(node);
    return static_cast<NodeIndex>(tree_.nodes.size() - 1);
  }

  std::size_t begin_of(NodeIndex node) const { return tree_.nodes[node].begin; }

  NodeIndex conditional();
  NodeIndex binary(int loosest);
  NodeIndex matched(NodeIndex left);
  NodeIndex prefixed();
  NodeIndex primary();
  NodeIndex parenthesized();
  NodeIndex named();
  NodeIndex call(const Token& name);

  Lexer lexer_;
  Token token_;
  int levels_ = 0;
  Tree tree_;
};

NodeIndex Parser::conditional() {
  const NodeIndex condition = binary(kLoosest);
  if (token_.type != TokenType::question) return condition;
  const Level level(&levels_, token_.begin);
  advance();
  const NodeIndex yes = conditional();
  expect(TokenType::colon, "expected an operator or :");
  const NodeIndex no = conditional();
  return add({.type = NodeType::conditional, .begin = begin_of(condition), .a = condition, .b = yes, .c = no});
}

// The chain of operators from here that bind at least as tightly as `loosest`.
NodeIndex Parser::binary(int loosest) {
  NodeIndex left = prefixed();
  while (token_.type == TokenType::oper && entry_of(token_.oper).level >= loosest) {
    const Operator oper = token_.oper;
    if (is_match(oper)) {
      left = matched(left);
      continue;
    }
    advance();
    const NodeIndex right = binary(entry_of(oper).level + 1);
    left = add({.type = NodeType::binary, .oper = oper, .begin = begin_of(left), .a = left, .b = right});
  }
  return left;
}

NodeIndex Parser::matched(NodeIndex left) {
  const Operator oper = token_.oper;
  const Token pattern = lexer_.pattern();
  advance();
  // A pattern is no operand that a tighter operator could take for itself.
  if (token_.type == TokenType::oper && entry_of(token_.oper).level > entry_of(oper).level) {
    throw CompileError{token_.begin,
                       "expected parentheses around the match before " + std::string(entry_of(token_.oper).symbol)};
  }
  return add({.type = NodeType::match,
              .oper = oper,
              .begin = begin_of(left),
              .text = pattern.text,
              .a = left,
              .pattern_begin = pattern.begin});
}

NodeIndex Parser::prefixed() {
  const Token token = token_;
  const bool is_minus = token.type == TokenType::oper && token.oper == Operator::subtract;
  const bool is_not = token.type == TokenType::oper && token.oper == Operator::logical_not;
  if (!is_minus && !is_not) return primary();
  const Level level(&levels_, token.begin);
  advance();
  const NodeIndex operand = prefixed();
  const Operator oper = is_minus ? Operator::negate : Operator::logical_not;
  return add({.type = NodeType::prefix, .oper = oper, .begin = token.begin, .a = operand});
}

NodeIndex Parser::primary() {
  const Token token = token_;
  switch (token.type) {
    case TokenType::integer:
      advance();
      return add({.type = NodeType::integer, .kind = Kind::integer, .begin = token.begin, .integer = token.integer});
    case TokenType::real:
      advance();
      return add({.type = NodeType::real, .kind = Kind::real, .begin = token.begin, .real = token.real});
    case TokenType::text:
      advance();
      return add({.type = NodeType::text, .kind = Kind::text, .begin = token.begin, .text = token.text});
    case TokenType::name:
      return named();
    case TokenType::open:
      return parenthesized();
    default:
      throw CompileError{token.begin, "expected a value"};
  }
}

NodeIndex Parser::parenthesized() {
  const Level level(&levels_, token_.begin);
  advance();
  const NodeIndex inside = conditional();
  expect(TokenType::close, "expected an operator or )");
  return inside;
}

NodeIndex Parser::named() {
  const Token name = token_;
  advance();
  if (token_.type == TokenType::open) return call(name);
  return add({.type = NodeType::field, .begin = name.begin, .text = name.text});
}

NodeIndex Parser::call(const Token& name) {
  const Level level(&levels_, token_.begin);
  advance();
  std::vector<NodeIndex> arguments;
  if (token_.type != TokenType::close) {
    arguments.push_back(conditional());
    while (token_.type == TokenType::comma) {
      advance();
      arguments.push_back(conditional());
    }
  }
  expect(TokenType::close, "expected an operator, a comma or )");
  const auto first = static_cast<std::uint32_t>(tree_.arguments.size());
  tree_.arguments.insert(tree_.arguments.end(), arguments.begin(), arguments.end());
  return add({.type = NodeType::call,
              .begin = name.begin,
              .text = name.text,
              .first_argument = first,
              .argument_count = static_cast<std::uint32_t>(arguments.size())});
}

}  // namespace

Tree parse(std::string_view text) { return Parser(text).whole(); }

}  // namespace triglub::expression
