// The lines of a response file that carry data.
#ifndef TRIGLUB_RESPONSE_LINES_H
#define TRIGLUB_RESPONSE_LINES_H

#include <string_view>

#include "base/words.h"
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
      const std::string_view whole = take_part(&rest_, '\n');
      ++number_;
      line_ = trimmed(whole.substr(0, whole.find('#')));
    }
  }

 private:
  std::string_view rest_;
  std::string_view line_;
  long number_ = 0;
};

}  // namespace triglub

#endif
