// The cells of a column as they were read, by row: the digits of numbers, which their values do not tell.
#ifndef TRIGLUB_ENGINE_TABLE_KEPT_CELLS_H
#define TRIGLUB_ENGINE_TABLE_KEPT_CELLS_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace triglub {

// Rows of equal cells can share one. The const members are safe for concurrent use.
class KeptCells {
 public:
  // Cells of so many bytes, at least 1.
  explicit KeptCells(std::size_t width) : width_(width) {}

  void reserve(std::uint64_t rows) { numbers_.reserve(rows); }
  // Appends the cell of a row. The bytes are copied; to a shorter cell blanks are added.
  void add(std::string_view cell);
  // Appends the cell of an earlier row.
  void repeat(std::uint32_t row) { numbers_.push_back(numbers_[row]); }
  // Brings the rows up to `rows`: those that it lacks have the cell of the last one, which there must be.
  void fill(std::uint64_t rows) {
    if (numbers_.size() < rows) numbers_.resize(rows, numbers_.back());
  }
  // Appends the rows of another, of as wide cells, which is emptied.
  void append(KeptCells&& other);

  // The cell of a row. Valid as long as the object, and when it is moved.
  std::string_view operator[](std::uint32_t row) const { return cell(numbers_[row]); }
  // The number of a row's cell, below number_count(): rows of one number have one cell.
  std::uint32_t number(std::uint32_t row) const { return numbers_[row]; }
  std::uint32_t number_count() const { return static_cast<std::uint32_t>(blocks_.size() << kBlockBits); }

  // The cells of chosen rows.
  KeptCells of_rows(const std::vector<std::uint32_t>& rows) const;

 private:
  static constexpr int kBlockBits = 10;
  static constexpr std::uint32_t kBlockCells = 1u << kBlockBits;

  std::string_view cell(std::uint32_t number) const {
    return {blocks_[number >> kBlockBits].get() + (number & (kBlockCells - 1)) * width_, width_};
  }

  std::size_t width_;
  std::vector<std::unique_ptr<char[]>> blocks_;  // of cells; they never move
  std::uint32_t in_last_ = kBlockCells;          // cells in the last block
  std::vector<std::uint32_t> numbers_;           // by row
};

}  // namespace triglub

#endif
