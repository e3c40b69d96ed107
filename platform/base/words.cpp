// Words and parts are views of the text they are taken from.
#include "base/words.h"

#include <algorithm>

namespace triglub {

namespace {

void skip(std::string_view separators, std::string_view* rest) {
  rest->remove_prefix(std::min(rest->find_first_not_of(separators), rest->size()));
}

}  // namespace

std::string_view take_word(std::string_view* rest, std::string_view separators) {
  skip(separators, rest);
  const std::string_view word = rest->substr(0, rest->find_first_of(separators));
  rest->remove_prefix(word.size());
  skip(separators, rest);
  return word;
}

std::string_view take_part(std::string_view* rest, char separator) {
  const std::string_view part = rest->substr(0, rest->find(separator));
  rest->remove_prefix(std::min(part.size() + 1, rest->size()));
  return part;
}

}  // namespace triglub
