// Texts become a table through the same builder as the cells of a file, at each load.
#include "engine/source/memory/memory_source.h"

#include <stdexcept>

#include "engine/source/table_faults.h"
#include "engine/source/unread_dates.h"
#include "engine/table/cell.h"
#include "engine/table/table_builder.h"
#include "platform/limits.h"

namespace triglub {

namespace {

void check_fields(const TableSchema& table, const MemorySource::Row& row) {
  for (const auto& [field, text] : row) {
    if (table.find(field) < 0) throw std::invalid_argument("table " + table.name + " has no field " + field);
  }
}

void check_tables(const Schema& schema, const MemorySource::Tables& tables) {
  for (const auto& [name, rows] : tables) {
    const int index = schema.find(name);
    if (index < 0) throw std::invalid_argument("the schema has no table " + name);
    for (const MemorySource::Row& row : rows) check_fields(schema.tables()[static_cast<std::size_t>(index)], row);
  }
}

// The rows of one table.
class RowLoader {
 public:
  RowLoader(const TableSchema& schema, const std::string& place)
      : schema_(schema),
        before_number_(place + " row "),
        rows_(schema),
        faults_(schema.name, place),
        dates_(schema.name, before_number_) {}

  void add(const MemorySource::Row& row) {
    ++count_;
    if (!rows_.begin_row()) return faults_.tell(place(), "", beyond(Limit::table_rows));
    for (std::size_t i = 0; i < schema_.fields.size(); ++i) {
      const auto given = row.find(schema_.fields[i].name);
      add_cell(i, given == row.end() ? "" : given->second);
    }
  }

  // Null after complaints.
  std::unique_ptr<const Table> table(std::string folder, std::unique_ptr<const NumberTexts> number_texts,
                                     const RowConditions& conditions) && {
    if (!faults_.any()) {
      dates_.conclude();
      return std::move(rows_).build(std::move(folder), before_number_, std::move(number_texts), conditions);
    }
    faults_.conclude();
    return nullptr;
  }

 private:
  std::string place() const { return before_number_ + std::to_string(count_); }

  void add_cell(std::size_t i, const std::string& cell) {
    if (rows_.column(i).add(cell)) return dates_.look_at(schema_.fields[i], count_, cell);
    faults_.tell(place(), schema_.fields[i].name, cell_fault(schema_.fields[i], cell, 1));
    rows_.column(i).add("");  // so that the columns stay in step
  }

  const TableSchema& schema_;
  std::string before_number_;
  TableBuilder rows_;
  std::uint64_t count_ = 0;  // rows that were to be added
  TableFaults faults_;
  UnreadDates dates_;
};

}  // namespace

MemorySource::MemorySource(std::string name, Tables tables, Numbers numbers, std::shared_ptr<const Schema> schema,
                           std::string response_folder)
    : name_(std::move(name)),
      tables_(std::move(tables)),
      numbers_(numbers),
      schema_(std::move(schema)),
      response_folder_(std::move(response_folder)) {
  check_tables(*schema_, tables_);
}

std::string MemorySource::table_place(const TableSchema& table) const {
  return tables_.contains(table.name) ? "memory:" + name_ + "." + table.name : "";
}

std::unique_ptr<const Table> MemorySource::load(const TableSchema& table, const RowConditions& conditions) const {
  RowLoader loader(table, table_place(table));
  const auto rows = tables_.find(table.name);
  if (rows != tables_.end()) {
    for (const Row& row : rows->second) loader.add(row);
  }
  auto texts = numbers_ == Numbers::shortest ? shortest_texts() : texts_by_format(table);
  return std::move(loader).table(response_folder_, std::move(texts), conditions);
}

}  // namespace triglub
