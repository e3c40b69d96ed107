// The messages of the error log while the object lives.
#ifndef TRIGLUB_TESTS_SUPPORT_LOG_COLLECTOR_H
#define TRIGLUB_TESTS_SUPPORT_LOG_COLLECTOR_H

#include <string>
#include <utility>
#include <vector>

#include "platform/elog.h"

namespace triglub_test {

class LogCollector {
 public:
  LogCollector() { elog_set_sink(collect, this); }
  LogCollector(const LogCollector&) = delete;
  LogCollector& operator=(const LogCollector&) = delete;
  ~LogCollector() { elog_set_sink(nullptr, nullptr); }

  std::vector<std::pair<ElogLevel, std::string>> messages;

 private:
  static void collect(ElogLevel level, const char* text, void* context) {
    static_cast<LogCollector*>(context)->messages.emplace_back(level, text);
  }
};

}  // namespace triglub_test

#endif
