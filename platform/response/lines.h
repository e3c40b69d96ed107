// The lines of a response file that carry data, and the words of a line.
#ifndef TRIGLUB_RESPONSE_LINES_H
#define TRIGLUB_RESPONSE_LINES_H

#include <algorithm>
#include <string_view>

#include "platform/text.h"

namespace triglub {

// Walks the lines that hold more than a comment. The text must outlive the walk.
class ResponseLines {
 public:
  explicit ResponseLines(std::string_view text) : rest_(text) { advance(); }

  bool at_end() const { return line_.empty(); }
  // The current line without comment and white space at both ends; empty at the end.
  std::string_view line() const { return line_; }
  // The number of the current line in the file, from 1; at the end that of the last line.
  long number() const { return number_; }

  void advance() {
    line_ = {};
    while (line_.empty() && !rest_.empty()) {
      const std::size_t end = rest_.find('\n');
      const std::string_view whole = rest_.substr(0, end);
      rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
      ++number_;
      line_ = trimmed(whole.substr(0, whole.find('#')));
    }
  }

 private:
  std::string_view rest_;
  std::string_view line_;
  long number_ = 0;
};

// Takes the first word off `line`, which must not begin with white space; what is left begins with a word again.
inline std::string_view take_word(std::string_view* line) {
  constexpr std::string_view kWhiteSpace = " \t\v\f\r";
  const std::string_view word = line->substr(0, line->find_first_of(kWhiteSpace));
  line->remove_prefix(word.size());
  line->remove_prefix(std::min(line->find_first_not_of(kWhiteSpace), line->size()));
  return word;
}

}  // namespace triglub

#endif
