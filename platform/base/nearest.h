// The known name that a misspelt one was likely meant to be, for "did you mean" in messages.
#ifndef TRIGLUB_BASE_NEAREST_H
#define TRIGLUB_BASE_NEAREST_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace triglub {

// The candidate with the fewest slips from `word`, of those with the fewest wrong letters, of those the first; nothing
// when none is near. A slip is a letter too many, a letter missing, a wrong letter, or two neighbours in the wrong
// order; large and small ASCII letters are the same. One slip is allowed, one more for each three bytes from the sixth
// on, and fewer than the word has bytes.
std::optional<std::string> nearest(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace triglub

#endif
