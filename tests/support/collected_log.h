// What is logged while the object lives as lines, a line a message: "warning: TEXT", "debug: TEXT", "notify: TEXT".
//
//     CollectedLog log;
//     eval_epoch_expr(record, "1 +");
//     EXPECT_THAT(log.lines(), Contains("warning: failure compiling expr 1 +"));
#ifndef TRIGLUB_TESTS_SUPPORT_COLLECTED_LOG_H
#define TRIGLUB_TESTS_SUPPORT_COLLECTED_LOG_H

#include <string>
#include <utility>
#include <vector>

#include "platform/elog.h"

namespace triglub_test {

class CollectedLog {
 public:
  CollectedLog() { elog_set_sink(collect, this); }
  CollectedLog(const CollectedLog&) = delete;
  CollectedLog& operator=(const CollectedLog&) = delete;
  ~CollectedLog() { elog_set_sink(nullptr, nullptr); }

  std::vector<std::string> lines() const {
    std::vector<std::string> lines;
    for (const auto& [level, text] : messages_) lines.push_back(word_of(level) + text);
    return lines;
  }
  // The lines that begin with `prefix`, and the others.
  std::vector<std::string> lines_with(const std::string& prefix) const { return chosen(prefix, true); }
  std::vector<std::string> lines_without(const std::string& prefix) const { return chosen(prefix, false); }

 private:
  std::vector<std::string> chosen(const std::string& prefix, bool with) const {
    std::vector<std::string> kept = lines();
    std::erase_if(kept, [&](const std::string& line) { return line.starts_with(prefix) != with; });
    return kept;
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

  static void collect(ElogLevel level, const char* text, void* context) {
    static_cast<CollectedLog*>(context)->messages_.emplace_back(level, text);
  }

  std::vector<std::pair<ElogLevel, std::string>> messages_;
};

}  // namespace triglub_test

#endif
