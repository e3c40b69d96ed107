// A fault as people see it: a window of the expression with a caret under the place.
#include "engine/expression/fault.h"

#include <algorithm>
#include <vector>

#include "base/characters.h"
#include "base/utf8.h"

namespace triglub::expression {

namespace {

constexpr std::size_t kWindow = 80;  // columns of a long expression that are shown
constexpr std::string_view kCut = "...";

// A character of the expression that takes one column whatever it is.
std::string_view shown(std::string_view character) {
  if (character.size() == 1 && is_white_space(character.front())) return " ";
  const bool is_malformed = character_length(character) == 0;
  return is_malformed || is_control(character) ? "?" : character;
}

// The expression by columns, and the column of the place.
struct Columns {
  std::vector<std::string_view> cells;
  std::size_t place = 0;
};

Columns columns_of(std::string_view expression, std::size_t position) {
  Columns columns;
  for (std::size_t at = 0; at < expression.size();) {
    const std::size_t length = std::max<std::size_t>(1, character_length(expression.substr(at)));
    if (at < position) columns.place = columns.cells.size() + 1;
    columns.cells.push_back(shown(expression.substr(at, length)));
    at += length;
  }
  return columns;
}

}  // namespace

Fault describe(const CompileError& error, std::string_view expression) {
  // A few columns beyond the place are all that can show; an endless expression is not walked to its end.
  const Columns columns = columns_of(expression.substr(0, error.position + 4 * kWindow), error.position);
  const std::size_t count = columns.cells.size();
  const std::size_t last_begin = count > kWindow ? count - kWindow : 0;
  const std::size_t begin = std::min(columns.place > kWindow / 2 ? columns.place - kWindow / 2 : 0, last_begin);
  const std::size_t end = std::min(begin + kWindow, count);

  std::string text = error.expected + "\n";
  if (begin > 0) text += kCut;
  for (std::size_t i = begin; i < end; ++i) text += columns.cells[i];
  if (end < count) text += kCut;
  text += "\n" + std::string(columns.place - begin + (begin > 0 ? kCut.size() : 0), ' ') + "^";
  return {text, error.position};
}

}  // namespace triglub::expression
