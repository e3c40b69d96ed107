// Builds a table row by row: the one place where the values of cells become columns, whatever the source.
//
//     TableBuilder rows(schema);
//     while (...) {
//       if (!rows.begin_row()) ...                                     // the table is full
//       for (i ...) if (!rows.column(i).add(cell)) ...                 // cell_fault() tells what is wrong
//     }
//     auto table = std::move(rows).build(folder, {"memory:db.site row "}, shortest_texts(), conditions);
#ifndef TRIGLUB_ENGINE_TABLE_TABLE_BUILDER_H
#define TRIGLUB_ENGINE_TABLE_TABLE_BUILDER_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/table/column_builder.h"
#include "engine/table/row_conditions.h"
#include "engine/table/table.h"
#include "platform/limits.h"

namespace triglub {

class TableBuilder {
 public:
  // The schema must outlive the builder and the table.
  explicit TableBuilder(const TableSchema& schema, std::uint64_t max_rows = limit(Limit::table_rows));

  const TableSchema& schema() const { return *schema_; }
  std::uint64_t row_count() const { return row_count_; }
  std::size_t column_count() const { return columns_.size(); }
  ColumnBuilder& column(std::size_t field) { return columns_[field]; }

  // Whether load dates could not be read: see is_unread_load_date().
  bool has_unread_dates() const;

  void reserve(std::uint64_t rows);
  // Begins the next row, for which a value is then added to each column. Columns may lag behind where rows repeat the
  // value of the one above, until ColumnBuilder::fill brings them up. False when the table can have no more.
  bool begin_row() {
    if (row_count_ == max_rows_) return false;
    ++row_count_;
    return true;
  }
  // Brings all columns up to the last row.
  void fill();
  // Appends the rows of another part of the same table, which is emptied, column by column in as many threads as there
  // are. False, with nothing appended, when the table cannot have as many.
  bool append(TableBuilder&& rows);

  // The table of the rows that meet the conditions. Null, after a complaint, when a condition names no field.
  std::unique_ptr<const Table> build(std::string directory, std::string before_number,
                                     std::unique_ptr<const NumberTexts> number_texts,
                                     const RowConditions& conditions) &&;

 private:
  const TableSchema* schema_;
  std::uint64_t max_rows_;
  std::uint64_t row_count_ = 0;
  std::vector<ColumnBuilder> columns_;
};

}  // namespace triglub

#endif
