// Where the lines of a file begin.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_LINE_BEGINS_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_LINE_BEGINS_H

#include <cstdint>
#include <vector>

namespace triglub {

// Consecutive lines. While all are of one length, as they mostly are, only that length is kept.
class LineBegins {
 public:
  // `begin` is the byte where the first line begins.
  explicit LineBegins(std::uint64_t begin = 0) : begin_(begin) {}

  // The byte of the file where a line (from 0) begins.
  std::uint64_t operator[](std::uint64_t line) const {
    return begins_.empty() ? begin_ + line * length_ : begins_[line];
  }
  // Adds the next line; its length is counted with its end.
  void add(std::uint64_t begin, std::uint64_t length) {
    if (count_ == 0) length_ = length;
    if (begins_.empty() && begin != (*this)[count_]) name_each();
    if (!begins_.empty()) begins_.push_back(begin);
    ++count_;
  }
  // Adds the lines of a later part of the file.
  void append(const LineBegins& later);
  // Chosen lines.
  LineBegins of_lines(const std::vector<std::uint32_t>& lines) const;

 private:
  void name_each();

  std::uint64_t begin_;
  std::uint64_t length_ = 0;
  std::uint64_t count_ = 0;
  std::vector<std::uint64_t> begins_;  // by line; empty while all are of one length
};

}  // namespace triglub

#endif
