// Text to tokens, one at a time: only the parser knows whether a slash divides or opens a regular expression.
#ifndef TRIGLUB_ENGINE_EXPRESSION_LEX_H
#define TRIGLUB_ENGINE_EXPRESSION_LEX_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "engine/expression/operators.h"

namespace triglub::expression {

enum class TokenType : std::uint8_t { end, integer, real, text, name, oper, open, close, comma, question, colon };

struct Token {
  TokenType type = TokenType::end;
  Operator oper{};          // of an operator; a minus is always `subtract`
  std::size_t begin = 0;    // byte offset
  std::string_view text{};  // a name; a text or pattern without its quotes or slashes
  std::int64_t integer = 0;
  double real = 0;
};

class Lexer {
 public:
  // The text must outlive the lexer and its tokens.
  explicit Lexer(std::string_view text) : text_(text) {}

  // The next token; throws CompileError where there is none.
  Token next();

  // The regular expression that must come next, as written between its slashes.
  Token pattern();

 private:
  void skip_blanks();
  Token number();
  Token quoted();
  Token name();
  Token symbol();
  bool is_name_part(std::size_t at) const;

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace triglub::expression

#endif
