// The rows of tables by station and channel, in an order that all tables share.
#ifndef TRIGLUB_SRC_EPOCHS_KEYED_ROWS_H
#define TRIGLUB_SRC_EPOCHS_KEYED_ROWS_H

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "platform/columns.h"

namespace triglub {

// The distinct texts of some columns, numbered in ascending byte order. Null is none of them.
class TextNumbers {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFFu;

  explicit TextNumbers(std::initializer_list<const TextColumn*> columns);

  std::uint32_t size() const { return static_cast<std::uint32_t>(texts_.size()); }
  std::string_view text(std::uint32_t number) const { return texts_[number]; }
  // kNone for a text that is not there.
  std::uint32_t find(std::string_view text) const;
  // By code of a column: the number of its text; kNone for null and for what is not there.
  std::vector<std::uint32_t> by_code(const TextColumn& column) const;

 private:
  std::vector<std::string_view> texts_;
};

// One number for a station and a channel. The greatest stands for rows that are of none.
using ChannelKey = std::uint64_t;
inline constexpr ChannelKey kNoChannel = ~ChannelKey{0};

// The key of each row of a table. One of stations only has 0 for the channel.
class RowKeys {
 public:
  RowKeys(const TableColumns& table, const TextNumbers& stations, const TextNumbers& channels);
  RowKeys(const TableColumns& table, const TextNumbers& stations);

  ChannelKey operator[](std::uint32_t row) const {
    const std::uint32_t station = station_by_code_[stations_.codes()[row]];
    const std::uint32_t channel = channel_by_code_.empty() ? 0 : channel_by_code_[channels_.codes()[row]];
    if (station == TextNumbers::kNone || channel == TextNumbers::kNone) return kNoChannel;
    return ChannelKey{station} << 32 | channel;
  }

 private:
  TextColumn stations_;
  TextColumn channels_;
  std::vector<std::uint32_t> station_by_code_;
  std::vector<std::uint32_t> channel_by_code_;  // empty: none
};

// The rows of a table in the order of their keys; rows of one key in table order.
class KeyedRows {
 public:
  KeyedRows(std::uint32_t row_count, RowKeys keys);

  std::uint32_t size() const { return size_; }
  std::uint32_t row(std::uint32_t place) const { return order_.empty() ? place : order_[place]; }
  ChannelKey key(std::uint32_t place) const { return keys_[row(place)]; }
  ChannelKey key_of_row(std::uint32_t row) const { return keys_[row]; }
  // The first place with that key or one behind it; the second looks from a place on, and is fast where it is near.
  std::uint32_t find(ChannelKey key) const { return find_between(0, size_, key); }
  std::uint32_t find_from(std::uint32_t place, ChannelKey key) const;

 private:
  std::uint32_t find_between(std::uint32_t begin, std::uint32_t end, ChannelKey key) const;

  RowKeys keys_;
  std::uint32_t size_;
  std::vector<std::uint32_t> order_;  // empty where the table is in order, as most are
};

// Goes through the rows key by key.
class KeyCursor {
 public:
  // At the first place with that key or one behind it.
  KeyCursor(const KeyedRows& rows, ChannelKey first) : rows_(&rows), place_(rows.find(first)) {}

  // visit(row) for each row of the key. REQUIRES: keys are asked for in ascending order.
  template <typename Visit>
  void visit(ChannelKey key, const Visit& visit) {
    place_ = rows_->find_from(place_, key);
    while (place_ < rows_->size() && rows_->key(place_) == key) visit(rows_->row(place_++));
  }

 private:
  const KeyedRows* rows_;
  std::uint32_t place_;
};

}  // namespace triglub

#endif
