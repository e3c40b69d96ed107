// While all lines are of one length they are only counted; the first that differs makes a list of where each begins.
#include "engine/source/flat/line_begins.h"

namespace triglub {

void LineBegins::name_each() {
  std::vector<std::uint64_t> begins;
  begins.reserve(count_ + 1);
  for (std::uint64_t line = 0; line < count_; ++line) begins.push_back((*this)[line]);
  begins_ = std::move(begins);
}

void LineBegins::append(const LineBegins& later) {
  const bool is_even =
      begins_.empty() && later.begins_.empty() && length_ == later.length_ && later.begin_ == begin_ + count_ * length_;
  if (!is_even) {
    if (begins_.empty()) name_each();
    begins_.reserve(count_ + later.count_);
    for (std::uint64_t line = 0; line < later.count_; ++line) begins_.push_back(later[line]);
  }
  count_ += later.count_;
}

LineBegins LineBegins::of_lines(const std::vector<std::uint32_t>& lines) const {
  LineBegins chosen;
  for (const std::uint32_t line : lines) chosen.begins_.push_back((*this)[line]);
  chosen.count_ = lines.size();
  return chosen;
}

}  // namespace triglub
