// Rows are compared, not values: equal rows have equal values, and most records have the row of the one before.
#include "document/record_set.h"

#include <algorithm>
#include <bit>

#include "epochs/records.h"
#include "platform/columns.h"

namespace triglub {

TableMask mask_of(const std::vector<std::size_t>& tables) {
  TableMask mask = 0;
  for (const std::size_t table : tables) mask |= mask_of(table);
  return mask;
}

RecordSet::RecordSet(Dbptr view, std::size_t tables) : view_(view), size_(0) {
  for (std::size_t table = 0; table < tables; ++table) rows_.push_back(rows_of(view, table));
  size_ = static_cast<std::uint32_t>(rows_.front().size());
}

bool RecordSet::is_constant(std::size_t table, const RecordList& records) const {
  const std::span<const std::uint32_t> rows = rows_[table];
  const std::uint32_t row = rows[records[0]];
  if (records.numbers == nullptr) {
    const auto own = rows.subspan(records.first, records.count);
    return std::all_of(own.begin(), own.end(), [row](std::uint32_t other) { return other == row; });
  }
  return std::all_of(records.numbers, records.numbers + records.count,
                     [&](std::uint32_t record) { return rows[record] == row; });
}

TableMask RecordSet::constant_tables(TableMask tables, const RecordList& records) const {
  TableMask constant = 0;
  for (TableMask rest = tables; rest != 0; rest &= rest - 1) {
    const auto table = static_cast<std::size_t>(std::countr_zero(rest));
    if (records.count <= 1 || is_constant(table, records)) constant |= mask_of(table);
  }
  return constant;
}

bool RecordSet::are_same(TableMask tables, std::uint32_t a, std::uint32_t b) const {
  for (TableMask rest = tables; rest != 0; rest &= rest - 1) {
    const std::span<const std::uint32_t> rows = rows_[static_cast<std::size_t>(std::countr_zero(rest))];
    if (rows[a] != rows[b]) return false;
  }
  return true;
}

std::string RecordSet::place(std::uint32_t record, TableMask tables) const {
  constexpr TableMask kOfFiles = mask_of(kEpoch) - 1;  // rows that were worked out are nowhere to be looked up
  for (TableMask rest = tables & kOfFiles; rest != 0; rest &= rest - 1) {
    const std::string place = row_place(view_, static_cast<std::size_t>(std::countr_zero(rest)), record);
    if (!place.empty()) return place;
  }
  for (std::size_t table = 0; table < rows_.size(); ++table) {
    const std::string place = row_place(view_, table, record);
    if (!place.empty()) return place;
  }
  return "";
}

}  // namespace triglub
