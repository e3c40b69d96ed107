// Words are separated by blanks and tabs; a flag counts only as the first word behind the verb.
#include "engine/session/step.h"

#include <algorithm>

#include "base/characters.h"
#include "base/words.h"
#include "platform/text.h"

namespace triglub {

namespace {

// The words, without the first when that is the flag.
std::vector<std::string> words_behind(const char* flag, const Step& step, bool* is_given) {
  *is_given = !step.words.empty() && step.words.front() == flag;
  return {step.words.begin() + (*is_given ? 1 : 0), step.words.end()};
}

// Where the key of the view ends and that of the table begins: a range has two colons, a pair of keys one (snet:net,
// ondate::offdate:time::endtime).
std::size_t single_colon(const std::string& key) {
  for (std::size_t at = key.find(':'); at != std::string::npos; at = key.find(':', at)) {
    const std::size_t after = std::min(key.find_first_not_of(':', at), key.size());
    if (after - at == 1) return at;
    at = after;
  }
  return std::string::npos;
}

JoinKeys parse_keys(const std::vector<std::string>& words) {
  JoinKeys keys;
  for (const std::string& word : words) {
    const std::size_t colon = single_colon(word);
    keys.of_view.push_back(word.substr(0, colon));
    keys.of_table.push_back(colon == std::string::npos ? word : word.substr(colon + 1));
  }
  return keys;
}

}  // namespace

Step parse_step(std::string_view text) {
  Step step;
  step.text = trimmed(text);
  std::string_view rest = step.text;
  step.verb = take_word(&rest, kBlanks);
  step.rest = trimmed(rest);
  for (std::string_view word = take_word(&rest, kBlanks); !word.empty(); word = take_word(&rest, kBlanks)) {
    step.words.emplace_back(word);
  }
  return step;
}

bool is_operation(const Step& step) {
  return step.verb == "dbopen" || step.verb == "dbjoin" || step.verb == "dbsubset" || step.verb == "dbsort";
}

JoinStep parse_join(const Step& step) {
  JoinStep join;
  std::vector<std::string> words = words_behind("-o", step, &join.is_outer);
  if (words.empty()) return join;
  join.table = words.front();
  words.erase(words.begin());
  if (!words.empty()) join.keys = parse_keys(words);
  return join;
}

SortStep parse_sort(const Step& step) {
  SortStep sort;
  sort.keys = words_behind("-u", step, &sort.is_unique);
  return sort;
}

}  // namespace triglub
