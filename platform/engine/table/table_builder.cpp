// Parts of a table are put together column by column, side by side; conditions are applied to the finished table.
#include "engine/table/table_builder.h"

#include <algorithm>

#include "base/threads.h"

namespace triglub {

TableBuilder::TableBuilder(const TableSchema& schema, std::uint64_t max_rows) : schema_(&schema), max_rows_(max_rows) {
  columns_.reserve(schema.fields.size());
  for (const FieldSchema& field : schema.fields) columns_.emplace_back(field);
}

bool TableBuilder::has_unread_dates() const {
  return std::any_of(columns_.begin(), columns_.end(), [](const ColumnBuilder& column) { return column.has_unread(); });
}

void TableBuilder::reserve(std::uint64_t rows) {
  for (ColumnBuilder& column : columns_) column.reserve(rows);
}

void TableBuilder::fill() {
  if (row_count_ == 0) return;
  for (ColumnBuilder& column : columns_) column.fill(row_count_);
}

bool TableBuilder::append(TableBuilder&& rows) {
  if (row_count_ + rows.row_count_ > max_rows_) return false;
  run_side_by_side(columns_.size(), [&](std::size_t i) { columns_[i].append(rows.columns_[i]); });
  row_count_ += rows.row_count_;
  rows = TableBuilder(*schema_, max_rows_);
  return true;
}

std::unique_ptr<const Table> TableBuilder::build(std::string directory, std::string before_number,
                                                 std::unique_ptr<const NumberTexts> number_texts,
                                                 const RowConditions& conditions) && {
  TableContents contents;
  for (ColumnBuilder& column : columns_) contents.columns.push_back(column.take());
  contents.row_count = static_cast<std::uint32_t>(row_count_);
  contents.number_texts = std::move(number_texts);
  contents.places.before_number = std::move(before_number);
  auto all = std::make_unique<const Table>(*schema_, std::move(directory), std::move(contents));
  if (conditions.empty()) return all;
  const auto rows = rows_meeting(*all, conditions);
  return rows ? all->of_rows(*rows) : nullptr;
}

}  // namespace triglub
