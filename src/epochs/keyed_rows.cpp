// Texts are compared once for each distinct one; rows by numbers.
#include "epochs/keyed_rows.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace triglub {

TextNumbers::TextNumbers(std::initializer_list<const TextColumn*> columns) {
  for (const TextColumn* column : columns) {
    for (std::uint32_t code = TextColumn::kNull + 1; code < column->code_count(); ++code) {
      texts_.push_back(column->text_of(code));
    }
  }
  std::sort(texts_.begin(), texts_.end());
  texts_.erase(std::unique(texts_.begin(), texts_.end()), texts_.end());
}

std::uint32_t TextNumbers::find(std::string_view text) const {
  const auto found = std::lower_bound(texts_.begin(), texts_.end(), text);
  return found == texts_.end() || *found != text ? kNone : static_cast<std::uint32_t>(found - texts_.begin());
}

std::vector<std::uint32_t> TextNumbers::by_code(const TextColumn& column) const {
  std::vector<std::uint32_t> numbers = {kNone};
  numbers.reserve(column.code_count());
  for (std::uint32_t code = TextColumn::kNull + 1; code < column.code_count(); ++code) {
    numbers.push_back(find(column.text_of(code)));
  }
  return numbers;
}

RowKeys::RowKeys(const TableColumns& table, const TextNumbers& stations, const TextNumbers& channels)
    : stations_(table.texts("sta")),
      channels_(table.texts("chan")),
      station_by_code_(stations.by_code(stations_)),
      channel_by_code_(channels.by_code(channels_)) {}

RowKeys::RowKeys(const TableColumns& table, const TextNumbers& stations)
    : stations_(table.texts("sta")), station_by_code_(stations.by_code(stations_)) {}

KeyedRows::KeyedRows(std::uint32_t row_count, RowKeys keys) : keys_(std::move(keys)), size_(row_count) {
  bool is_sorted = true;
  for (std::uint32_t row = 1; row < row_count && is_sorted; ++row) is_sorted = keys_[row - 1] <= keys_[row];
  if (is_sorted) return;
  std::vector<std::pair<ChannelKey, std::uint32_t>> pairs;
  pairs.reserve(row_count);
  for (std::uint32_t row = 0; row < row_count; ++row) pairs.emplace_back(keys_[row], row);
  std::sort(pairs.begin(), pairs.end());
  order_.reserve(row_count);
  for (const auto& [key, row] : pairs) order_.push_back(row);
}

std::uint32_t KeyedRows::find_between(std::uint32_t begin, std::uint32_t end, ChannelKey key) const {
  while (begin < end) {
    const std::uint32_t middle = begin + (end - begin) / 2;
    if (this->key(middle) < key) {
      begin = middle + 1;
    } else {
      end = middle;
    }
  }
  return begin;
}

// In steps that double until they are beyond the key.
std::uint32_t KeyedRows::find_from(std::uint32_t place, ChannelKey key) const {
  std::uint32_t step = 1;
  while (place < size_ && this->key(place) < key) {
    const std::uint32_t next = step < size_ - place ? place + step : size_;
    if (next == size_ || this->key(next) >= key) return find_between(place + 1, next, key);
    place = next;
    step *= 2;
  }
  return place;
}

}  // namespace triglub
