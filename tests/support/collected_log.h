// Collects what is logged while the object lives, a line a message: "warning: TEXT", "debug: TEXT", "notify: TEXT".
//
//     CollectedLog log;
//     eval_epoch_expr(record, "1 +");
//     EXPECT_THAT(log.lines(), Contains("warning: failure compiling expr 1 +"));
#ifndef TRIGLUB_TESTS_SUPPORT_COLLECTED_LOG_H
#define TRIGLUB_TESTS_SUPPORT_COLLECTED_LOG_H

#include <algorithm>
#include <string>
#include <vector>

#include "platform/elog.h"

namespace triglub_test {

class CollectedLog {
 public:
  CollectedLog() { elog_set_sink(&CollectedLog::collect, this); }
  ~CollectedLog() { elog_set_sink(nullptr, nullptr); }
  CollectedLog(const CollectedLog&) = delete;
  CollectedLog& operator=(const CollectedLog&) = delete;

  const std::vector<std::string>& lines() const { return lines_; }

  // The lines that do not begin with `prefix`.
  std::vector<std::string> lines_without(const std::string& prefix) const {
    std::vector<std::string> kept;
    std::copy_if(lines_.begin(), lines_.end(), std::back_inserter(kept),
                 [&](const std::string& line) { return !line.starts_with(prefix); });
    return kept;
  }
  // The lines that begin with `prefix`.
  std::vector<std::string> lines_with(const std::string& prefix) const {
    std::vector<std::string> kept;
    std::copy_if(lines_.begin(), lines_.end(), std::back_inserter(kept),
                 [&](const std::string& line) { return line.starts_with(prefix); });
    return kept;
  }

 private:
  static void collect(ElogLevel level, const char* text, void* context) {
    static_cast<CollectedLog*>(context)->lines_.push_back(word_of(level) + text);
    // A fatal message ends the process, and a test of that looks at standard error.
    if (level == ElogLevel::fatal) elog_to_stderr(level, text);
  }
  static std::string word_of(ElogLevel level) {
    switch (level) {
      case ElogLevel::debug:
        return "debug: ";
      case ElogLevel::notify:
        return "notify: ";
      case ElogLevel::complain:
        return "warning: ";
      case ElogLevel::fatal:
        return "fatal: ";
    }
    return "";
  }

  std::vector<std::string> lines_;
};

}  // namespace triglub_test

#endif
