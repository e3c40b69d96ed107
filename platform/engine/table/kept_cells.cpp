// Cells have numbers in the order in which they come, a thousand to a block; a column that is appended begins a block.
#include "engine/table/kept_cells.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace triglub {

void KeptCells::add(std::string_view cell) {
  if (in_last_ == kBlockCells) {
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(width_ * kBlockCells));
    in_last_ = 0;
  }
  char* const kept = blocks_.back().get() + in_last_ * width_;
  const std::size_t size = std::min(cell.size(), width_);
  if (size > 0) std::memcpy(kept, cell.data(), size);
  std::memset(kept + size, ' ', width_ - size);
  numbers_.push_back(number_count() - kBlockCells + in_last_++);
}

void KeptCells::append(KeptCells&& other) {
  const std::uint32_t before = number_count();
  std::move(other.blocks_.begin(), other.blocks_.end(), std::back_inserter(blocks_));
  numbers_.reserve(numbers_.size() + other.numbers_.size());
  for (const std::uint32_t number : other.numbers_) numbers_.push_back(before + number);
  if (!other.blocks_.empty()) in_last_ = other.in_last_;
  other = KeptCells(width_);
}

KeptCells KeptCells::of_rows(const std::vector<std::uint32_t>& rows) const {
  KeptCells chosen(width_);
  chosen.reserve(rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i > 0 && number(rows[i]) == number(rows[i - 1])) {
      chosen.repeat(static_cast<std::uint32_t>(i - 1));
    } else {
      chosen.add((*this)[rows[i]]);
    }
  }
  return chosen;
}

}  // namespace triglub
