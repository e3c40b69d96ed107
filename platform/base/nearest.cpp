// The restricted edit distance, row by row: only the two rows above are ever looked at.
#include <algorithm>
#include <cstddef>

#include "base/characters.h"
#include "platform/text.h"

namespace triglub {

namespace {

using Row = std::vector<std::size_t>;  // by length of the start of the candidate: what it costs from the word's

// Of as many slips, those with fewer wrong letters cost less: a name of other letters was less likely meant.
constexpr std::size_t kSlip = std::size_t{1} << 16;
constexpr std::size_t kWrongLetter = kSlip + 1;

bool are_same(char a, char b) { return to_lower(a) == to_lower(b); }

bool are_swapped(std::string_view a, std::size_t i, std::string_view b, std::size_t j) {
  return i > 0 && j > 0 && are_same(a[i], b[j - 1]) && are_same(a[i - 1], b[j]);
}

std::size_t cost_between(std::string_view word, std::string_view candidate) {
  Row before(candidate.size() + 1);
  Row above(candidate.size() + 1);
  Row row(candidate.size() + 1);
  for (std::size_t j = 0; j < row.size(); ++j) row[j] = j * kSlip;
  for (std::size_t i = 0; i < word.size(); ++i) {
    before.swap(above);
    above.swap(row);
    row[0] = (i + 1) * kSlip;
    for (std::size_t j = 0; j < candidate.size(); ++j) {
      const std::size_t changed = above[j] + (are_same(word[i], candidate[j]) ? 0 : kWrongLetter);
      row[j + 1] = std::min({changed, above[j + 1] + kSlip, row[j] + kSlip});
      if (are_swapped(word, i, candidate, j)) row[j + 1] = std::min(row[j + 1], before[j - 1] + kSlip);
    }
  }
  return row.back();
}

std::size_t length_difference(std::string_view a, std::string_view b) {
  return std::max(a.size(), b.size()) - std::min(a.size(), b.size());
}

// The number of slips from which on a candidate is not near.
std::size_t first_refused(std::string_view word) {
  return std::min(std::max<std::size_t>(1, word.size() / 3) + 1, word.size());
}

}  // namespace

std::optional<std::string> nearest(std::string_view word, const std::vector<std::string>& candidates) {
  const std::string* best = nullptr;
  const std::size_t refused = first_refused(word);
  std::size_t limit = refused * kSlip;
  for (const std::string& candidate : candidates) {
    if (length_difference(word, candidate) >= refused) continue;
    const std::size_t cost = cost_between(word, candidate);
    if (cost >= limit) continue;
    best = &candidate;
    limit = cost;
  }
  return best == nullptr ? std::nullopt : std::optional(*best);
}

}  // namespace triglub
