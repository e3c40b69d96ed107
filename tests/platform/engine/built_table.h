// Tables built from cells, without a source.
#ifndef TRIGLUB_TESTS_DATABASE_BUILT_TABLE_H
#define TRIGLUB_TESTS_DATABASE_BUILT_TABLE_H

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "engine/table/table_builder.h"

namespace triglub_test {

inline const triglub::TableSchema& builtin_table(const std::string& name) {
  const triglub::Schema& schema = *triglub::Schema::builtin();
  return schema.tables().at(static_cast<std::size_t>(schema.find(name)));
}

inline std::size_t field_index(const triglub::TableSchema& table, const std::string& field) {
  return static_cast<std::size_t>(table.find(field));
}

// Adds a row whose cells are given in the schema's order; std::runtime_error when one has a fault.
inline void add_cells(triglub::TableBuilder* rows, const std::vector<std::string>& cells) {
  if (!rows->begin_row()) throw std::runtime_error("the table is full");
  for (std::size_t i = 0; i < rows->column_count(); ++i) {
    if (!rows->column(i).add(cells.at(i))) throw std::runtime_error("a cell has a fault: " + cells[i]);
  }
}

// A table of `affiliation` (net, sta, lddate).
inline std::unique_ptr<const triglub::Table> affiliation_of(const std::vector<std::vector<std::string>>& rows) {
  triglub::TableBuilder builder(builtin_table("affiliation"));
  for (const auto& cells : rows) add_cells(&builder, cells);
  return std::move(builder).build(".", "row ", triglub::shortest_texts(), {});
}

// The texts of a field, row by row.
inline std::vector<std::string> column_texts(const triglub::Table& table, const std::string& field) {
  std::vector<std::string> texts;
  for (std::uint32_t row = 0; row < table.row_count(); ++row) {
    texts.emplace_back(table.text(field_index(table.schema(), field), row));
  }
  return texts;
}

}  // namespace triglub_test

#endif
