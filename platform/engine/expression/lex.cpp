// Tokens are told apart by their first character; of the symbols the longest one that fits counts.
#include "engine/expression/lex.h"

#include <string>

#include "base/characters.h"
#include "base/number.h"
#include "engine/expression/fault.h"
#include "engine/expression/numbers.h"

namespace triglub::expression {

namespace {

bool begins_name(char c) { return is_letter(c) || c == '_'; }

struct Symbol {
  std::string_view text;
  TokenType type;
  Operator oper;
};

// The longer ones before those that they begin with.
constexpr Symbol kSymbols[] = {
    {"<=", TokenType::oper, Operator::less_equal},
    {">=", TokenType::oper, Operator::greater_equal},
    {"==", TokenType::oper, Operator::equal},
    {"!=", TokenType::oper, Operator::not_equal},
    {"=~", TokenType::oper, Operator::match},
    {"!~", TokenType::oper, Operator::no_match},
    {"&&", TokenType::oper, Operator::logical_and},
    {"||", TokenType::oper, Operator::logical_or},
    {"!", TokenType::oper, Operator::logical_not},
    {"*", TokenType::oper, Operator::multiply},
    {"/", TokenType::oper, Operator::divide},
    {"%", TokenType::oper, Operator::remainder},
    {"+", TokenType::oper, Operator::add},
    {"-", TokenType::oper, Operator::subtract},
    {"<", TokenType::oper, Operator::less},
    {">", TokenType::oper, Operator::greater},
    {"(", TokenType::open, {}},
    {")", TokenType::close, {}},
    {",", TokenType::comma, {}},
    {"?", TokenType::question, {}},
    {":", TokenType::colon, {}},
};

// What a character that begins no symbol was probably meant to begin.
const char* expected_instead(char c) {
  switch (c) {
    case '=':
      return "expected == or =~";
    case '&':
      return "expected &&";
    case '|':
      return "expected ||";
    default:
      return "expected a value or an operator";
  }
}

}  // namespace

void Lexer::skip_blanks() {
  while (at_ < text_.size() && is_white_space(text_[at_])) ++at_;
}

bool Lexer::is_name_part(std::size_t at) const { return at < text_.size() && is_word_character(text_[at]); }

Token Lexer::next() {
  skip_blanks();
  if (at_ == text_.size()) return {.begin = at_};
  const char first = text_[at_];
  const bool is_point_before_digit = first == '.' && at_ + 1 < text_.size() && is_digit(text_[at_ + 1]);
  if (is_digit(first) || is_point_before_digit) return number();
  if (first == '"' || first == '\'') return quoted();
  if (begins_name(first)) return name();
  return symbol();
}

Token Lexer::number() {
  Token token{.type = TokenType::real, .begin = at_};
  bool is_whole = false;
  const std::size_t length = number_length(text_.substr(at_), &is_whole);
  const std::string_view text = text_.substr(at_, length);
  at_ += length;
  if (is_name_part(at_) || (at_ < text_.size() && text_[at_] == '.')) {
    throw CompileError{at_, "expected the end of the number"};
  }
  if (is_whole) {
    token.type = TokenType::integer;
    if (!parse_integer(text, &token.integer))
      throw CompileError{token.begin, "expected an integer up to 9223372036854775807"};
    return token;
  }
  if (!parse_real(text, &token.real)) throw CompileError{token.begin, "expected a number within the range of reals"};
  return token;
}

Token Lexer::quoted() {
  Token token{.type = TokenType::text, .begin = at_};
  const char quote = text_[at_];
  const std::size_t end = text_.find(quote, at_ + 1);
  if (end == std::string_view::npos) throw CompileError{at_, std::string("expected a closing ") + quote};
  token.text = text_.substr(at_ + 1, end - at_ - 1);
  at_ = end + 1;
  return token;
}

Token Lexer::name() {
  Token token{.type = TokenType::name, .begin = at_};
  while (is_name_part(at_)) ++at_;
  if (at_ < text_.size() && text_[at_] == '.') {
    ++at_;
    if (at_ == text_.size() || !begins_name(text_[at_]))
      throw CompileError{at_, "expected a field name behind the point"};
    while (is_name_part(at_)) ++at_;
  }
  token.text = text_.substr(token.begin, at_ - token.begin);
  return token;
}

Token Lexer::symbol() {
  const std::string_view rest = text_.substr(at_);
  for (const Symbol& symbol : kSymbols) {
    if (!rest.starts_with(symbol.text)) continue;
    const Token token{.type = symbol.type, .oper = symbol.oper, .begin = at_};
    at_ += symbol.text.size();
    return token;
  }
  throw CompileError{at_, expected_instead(rest.front())};
}

Token Lexer::pattern() {
  skip_blanks();
  if (at_ == text_.size() || text_[at_] != '/') {
    throw CompileError{at_, "expected a regular expression between slashes"};
  }
  const std::size_t open = at_;
  std::size_t end = open + 1;
  while (end < text_.size() && text_[end] != '/') end += text_[end] == '\\' ? 2 : 1;
  if (end >= text_.size()) throw CompileError{open, "expected a closing /"};
  at_ = end + 1;
  return {.type = TokenType::text, .begin = open, .text = text_.substr(open + 1, end - open - 1)};
}

}  // namespace triglub::expression
