// A window moves over the file: what stands in it behind its last line end is kept for the next part. It is small, so
// that what was read is looked at while it is in the processor's cache.
#include "engine/source/flat/file_parts.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace triglub {

namespace {

constexpr std::size_t kStep = std::size_t{1} << 18;  // bytes read at once

class Window {
 public:
  Window(const SteadyFile& file, FileRange range)
      : file_(file),
        rest_(range),
        bytes_(std::make_unique_for_overwrite<char[]>(std::min(kMaxLineBytes + kStep, range.end - range.begin))) {}

  bool at_end() const { return rest_.begin == rest_.end; }

  // Takes in more of the file. False when it cannot be read.
  bool read_on() {
    drop_used();
    const std::size_t more = std::min(kStep, rest_.end - rest_.begin);
    if (!file_.read(rest_.begin, rest_.begin + more, bytes_.get() + size_)) return false;
    rest_.begin += more;
    size_ += more;
    if (is_in_long_line_) leave_long_line();
    return true;
  }

  // The lines that are whole by now, or what tells that a line is too long. Valid until more is read.
  std::string_view take() {
    const std::string_view bytes(bytes_.get() + used_, size_ - used_);
    const std::size_t whole = at_end() ? bytes.size() : bytes.rfind('\n') + 1;  // npos + 1 is 0
    is_in_long_line_ = is_in_long_line_ || (whole == 0 && bytes.size() > kMaxLineBytes);
    const std::size_t taken = whole == 0 && is_in_long_line_ ? bytes.size() : whole;
    used_ += taken;
    return bytes.substr(0, taken);
  }

 private:
  void drop_used() {
    size_ -= used_;
    std::memmove(bytes_.get(), bytes_.get() + used_, size_);
    used_ = 0;
  }

  void leave_long_line() {
    const std::size_t newline = std::string_view(bytes_.get(), size_).find('\n');
    is_in_long_line_ = newline == std::string_view::npos;
    used_ = is_in_long_line_ ? size_ : newline + 1;
  }

  const SteadyFile& file_;
  FileRange rest_;
  // What is kept of a line that is not whole has no more than kMaxLineBytes, and a small file needs less.
  std::unique_ptr<char[]> bytes_;
  std::size_t size_ = 0;
  std::size_t used_ = 0;          // of these bytes, from the first on
  bool is_in_long_line_ = false;  // its beginning has been taken, its end has not been met
};

}  // namespace

bool for_each_part(const SteadyFile& file, FileRange range, const std::function<bool(std::string_view lines)>& work) {
  Window window(file, range);
  while (!window.at_end()) {
    if (!window.read_on()) return false;
    const std::string_view lines = window.take();
    if (!lines.empty() && !work(lines)) return false;
  }
  return true;
}

}  // namespace triglub
