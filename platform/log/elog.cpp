// The error log: levels, the sink of the process, and texts made fit for a terminal.
//
// Threads may log at any time, also while another sets the sink: what a message needs of the log is copied under the
// lock, and the sink runs without it, so that it may log itself.
#include "platform/elog.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>
#include <vector>

#include "base/utf8.h"

namespace {

constexpr const char* kDefaultProgram = "triglub";

// Where messages go; standard error when there is no function.
struct Sink {
  ElogSink function = nullptr;
  void* context = nullptr;
};

// The log's process-wide state: the program's name and the sink.
class Log {
 public:
  void set_program(std::string program) {
    const std::lock_guard lock(mutex_);
    program_ = std::move(program);
  }
  void set_sink(const Sink& sink) {
    const std::lock_guard lock(mutex_);
    sink_ = sink;
  }
  std::string program() {
    const std::lock_guard lock(mutex_);
    return program_;
  }
  Sink sink() {
    const std::lock_guard lock(mutex_);
    return sink_;
  }

 private:
  std::mutex mutex_;
  std::string program_ = kDefaultProgram;
  Sink sink_;
};

Log& the_log() {
  // Never destroyed: exit handlers and static destructors may still have something to say.
  static Log* log = new Log;
  return *log;
}

thread_local Sink thread_sink;

const char* level_word(ElogLevel level) {
  switch (level) {
    case ElogLevel::debug:
      return "debug: ";
    case ElogLevel::notify:
      return "";
    case ElogLevel::complain:
      return "warning: ";
    case ElogLevel::fatal:
      return "fatal: ";
  }
  return "";
}

std::string formatted(const char* format, va_list args) {
  va_list again;
  va_copy(again, args);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): every caller has started it; the analyzer loses sight of that
  const int length = std::vsnprintf(nullptr, 0, format, args);
  std::string text;
  if (length > 0) {
    text.resize(static_cast<std::size_t>(length));
    std::vsnprintf(text.data(), text.size() + 1, format, again);
  }
  va_end(again);
  return text;
}

void report(ElogLevel level, const std::string& text) {
  const Sink sink = thread_sink.function != nullptr ? thread_sink : the_log().sink();
  if (sink.function != nullptr) {
    sink.function(level, text.c_str(), sink.context);
    return;
  }
  elog_to_stderr(level, text.c_str());
}

void append_escaped(std::string& out, std::string_view bytes) {
  for (const char byte : bytes) {
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "\\x%02x", static_cast<unsigned char>(byte));
    out += buffer;
  }
}

// Appends the first character of the text as a terminal may get it; returns the number of its bytes.
std::size_t append_printable(std::string& out, std::string_view text) {
  if (text[0] == '\n') {
    out += "\n    ";  // indented, so that a line inside a text cannot pass for a message of its own
    return 1;
  }
  if (text[0] == '\t') {
    out += ' ';
    return 1;
  }
  const std::size_t length = triglub::character_length(text);
  const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
  if (length == 0 || triglub::is_control(character)) {
    append_escaped(out, character);
  } else {
    out += character;
  }
  return character.size();
}

}  // namespace

void elog_init(const char* program) { the_log().set_program(program == nullptr ? kDefaultProgram : program); }

void elog_set_sink(ElogSink sink, void* context) { the_log().set_sink({sink, context}); }

void elog_set_thread_sink(ElogSink sink, void* context) { thread_sink = {sink, context}; }

std::string elog_printable(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (text.ends_with('\n')) text.remove_suffix(1);  // the message ends its line itself
  while (!text.empty()) text.remove_prefix(append_printable(out, text));
  return out;
}

void elog_to_stderr(ElogLevel level, const char* text) {
  // One write for the whole line, so that lines of several processes do not mix.
  const std::string line = the_log().program() + ": " + level_word(level) + elog_printable(text) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
}

void elog_die(int /*reserved*/, const char* format, ...) {
  va_list args;
  va_start(args, format);
  report(ElogLevel::fatal, formatted(format, args));
  va_end(args);
  std::fflush(nullptr);
  // std::exit must not be entered twice. A second thread waits for the end that the first one brings about, whose exit
  // handlers have their work to do; an exit handler that fails ends it all.
  static std::atomic_flag exiting;
  thread_local bool is_exiting = false;
  if (is_exiting) std::_Exit(1);
  is_exiting = true;
  while (exiting.test_and_set()) pause();
  std::exit(1);
}

void elog_complain(int /*reserved*/, const char* format, ...) {
  va_list args;
  va_start(args, format);
  report(ElogLevel::complain, formatted(format, args));
  va_end(args);
}

void elog_notify(int /*reserved*/, const char* format, ...) {
  va_list args;
  va_start(args, format);
  report(ElogLevel::notify, formatted(format, args));
  va_end(args);
}

void elog_debug(int /*reserved*/, const char* format, ...) {
  va_list args;
  va_start(args, format);
  report(ElogLevel::debug, formatted(format, args));
  va_end(args);
}
