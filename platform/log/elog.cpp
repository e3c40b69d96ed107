// The error log: levels, the sink of the process, and texts made fit for a terminal.
//
// Threads may log at any time, also while another sets the sink: what a message needs of the log is copied under the
// lock, and the sink runs without it, so that it may log itself.
#include "platform/elog.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <new>
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
  // Never destroyed: exit handlers and static destructors may still have something to say. In a place of its own, as
  // there may be no other memory left.
  alignas(Log) static std::byte place[sizeof(Log)];
  static Log* log = new (place) Log;
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

// A message. When there is no memory for a long one, its beginning.
class Message {
 public:
  Message(const char* format, va_list args) {
    va_list again;
    va_copy(again, args);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): every caller has started it; the analyzer loses sight of
    // that
    const int length = std::vsnprintf(start_, sizeof start_, format, args);
    if (length >= static_cast<int>(sizeof start_)) write_whole(static_cast<std::size_t>(length), format, again);
    va_end(again);
  }

  const char* text() const { return whole_.empty() ? start_ : whole_.c_str(); }

 private:
  void write_whole(std::size_t length, const char* format, va_list args) {
    try {
      whole_.resize(length);
      std::vsnprintf(whole_.data(), whole_.size() + 1, format, args);
    } catch (const std::bad_alloc&) {
      whole_.clear();
    }
  }

  char start_[1024] = "";
  std::string whole_;
};

void report(ElogLevel level, const char* text) {
  const Sink sink = thread_sink.function != nullptr ? thread_sink : the_log().sink();
  if (sink.function != nullptr) {
    sink.function(level, text, sink.context);
    return;
  }
  elog_to_stderr(level, text);
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

// A message that there is no memory left to make printable: what is not plain is a question mark.
void write_without_memory(ElogLevel level, const char* text) {
  std::fputs(kDefaultProgram, stderr);
  std::fputs(": ", stderr);
  std::fputs(level_word(level), stderr);
  for (; *text != '\0'; ++text) std::fputc(*text >= ' ' && *text <= '~' ? *text : '?', stderr);
  std::fputc('\n', stderr);
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
  try {
    // One write for the whole line, so that lines of several processes do not mix.
    const std::string line = the_log().program() + ": " + level_word(level) + elog_printable(text) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
  } catch (const std::bad_alloc&) {
    write_without_memory(level, text);
  }
  std::fflush(stderr);
}

void elog_die(int /*reserved*/, const char* format, ...) {
  va_list args;
  va_start(args, format);
  report(ElogLevel::fatal, Message(format, args).text());
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
  report(ElogLevel::complain, Message(format, args).text());
  va_end(args);
}

void elog_notify(int /*reserved*/, const char* format, ...) {
  va_list args;
  va_start(args, format);
  report(ElogLevel::notify, Message(format, args).text());
  va_end(args);
}

void elog_debug(int /*reserved*/, const char* format, ...) {
  va_list args;
  va_start(args, format);
  report(ElogLevel::debug, Message(format, args).text());
  va_end(args);
}
