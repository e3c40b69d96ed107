// A text in quotes ends at the same quote, without escapes, and parentheses within it are none.
#include "tool/value_words.h"

#include <algorithm>

#include "base/characters.h"

namespace triglub::tool {

namespace {

bool is_quote(char c) { return c == '"' || c == '\''; }
bool is_in_word(char c) { return is_word_character(c) || c == '.'; }

// The end of the text in quotes at the start of `rest`, quotes included.
std::size_t end_of_text(std::string_view rest) {
  const std::size_t end = rest.find(rest.front(), 1);
  return end == std::string_view::npos ? rest.size() : end + 1;
}

std::size_t end_of_word(std::string_view rest) {
  const auto* const end = std::find_if_not(rest.begin(), rest.end(), is_in_word);
  return static_cast<std::size_t>(end - rest.begin());
}

// Behind the parenthesis that closes the one at the start of `rest`.
std::size_t end_of_arguments(std::string_view rest) {
  std::size_t open = 0;
  for (std::size_t at = 0; at < rest.size(); ++at) {
    if (is_quote(rest[at])) at += end_of_text(rest.substr(at)) - 1;
    if (rest[at] == '(') ++open;
    if (rest[at] == ')' && --open == 0) return at + 1;
  }
  return rest.size();
}

std::string_view without_blanks_before(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

}  // namespace

void ValueWords::add_words(std::string_view expression) {
  while (!expression.empty()) {
    const std::size_t length = std::max<std::size_t>(end_of_word(expression), 1);
    words_.emplace(expression.substr(0, length));
    expression.remove_prefix(length);
  }
}

void ValueWords::add(std::string_view expression) {
  if (expression.find('~') != std::string_view::npos) {
    are_unclear_ = true;
    texts_.emplace_back(expression);
    return add_words(expression);
  }
  while (!expression.empty()) {
    std::size_t length = 1;
    if (is_quote(expression.front())) {
      length = end_of_text(expression);
      texts_.emplace_back(expression.substr(1, std::max<std::size_t>(length, 2) - 2));
    } else if (is_in_word(expression.front())) {
      length = end_of_word(expression);
      const std::string_view word = expression.substr(0, length);
      const std::string_view rest = without_blanks_before(expression.substr(length));
      const bool is_safe = (word == "xml" || word == "is_null") && rest.starts_with('(');
      if (is_safe) length = expression.size() - rest.size() + end_of_arguments(rest);
      if (!is_safe) words_.emplace(word);
    }
    expression.remove_prefix(length);
  }
}

bool ValueWords::has(const std::string& table, const std::string& field) const {
  return has(field) || has(table + "." + field);
}

}  // namespace triglub::tool
