// The texts of the numbers are the shortest that read back to them: no format was ever settled for them.
#include "engine/operations/computed_table.h"

#include <array>
#include <charconv>
#include <string>
#include <utility>

#include "engine/table/column_builder.h"

namespace triglub {

namespace {

constexpr std::int64_t kNullInteger = -1;

// As the schemas of stations write it.
std::string null_text_of(const ComputedColumn& column) {
  if (!column.is_time) return std::to_string(kNullInteger);
  std::array<char, 400> text;
  char* const end =
      std::to_chars(text.data(), text.data() + text.size(), column.null_real, std::chars_format::fixed, 5).ptr;
  return std::string(text.data(), end);
}

FieldSchema field_for(const ComputedColumn& column) {
  FieldSchema field;
  field.name = column.name;
  field.type = column.is_time ? FieldType::time : FieldType::integer;
  field.width = column.is_time ? 17 : 8;
  field.format = column.is_time ? "%17.5f" : "%8ld";
  field.null_text = null_text_of(column);
  field.null_real = column.null_real;
  field.null_integer = kNullInteger;
  field.description = column.description;
  return field;
}

// A table and what it refers to, in one piece.
struct OwnTable {
  TableSchema schema;
  std::unique_ptr<const Table> table;
};

std::uint32_t row_count_of(const std::vector<ComputedColumn>& columns) {
  if (columns.empty()) return 0;
  return static_cast<std::uint32_t>(columns.front().is_time ? columns.front().reals.size()
                                                            : columns.front().integers.size());
}

}  // namespace

std::shared_ptr<const Table> computed_table(const std::string& name, std::vector<ComputedColumn> columns) {
  auto own = std::make_shared<OwnTable>();
  own->schema.name = name;
  TableContents contents;
  contents.row_count = row_count_of(columns);
  for (ComputedColumn& column : columns) {
    own->schema.fields.push_back(field_for(column));
    Column& held = contents.columns.emplace_back();
    held.reals = std::move(column.reals);
    held.integers = std::move(column.integers);
  }
  contents.number_texts = shortest_texts();
  contents.places.before_number = name + " row ";
  own->table = std::make_unique<const Table>(own->schema, "", std::move(contents));
  return {own, own->table.get()};
}

std::shared_ptr<const Table> table_without_rows(const TableSchema& schema) {
  TableContents contents;
  for (const FieldSchema& field : schema.fields) contents.columns.push_back(ColumnBuilder(field).take());
  contents.number_texts = shortest_texts();
  return std::make_shared<const Table>(schema, "", std::move(contents));
}

}  // namespace triglub
