// Schemas: the tables of whatever is taken for one can be read, and their nulls are nulls.
#include "engine/schema/schema.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "engine/source/flat/row_reader.h"
#include "support/expect.h"

namespace {

using triglub::Table;
using triglub::TableSchema;
using triglub_fuzz::expect;

std::string padded(std::string text, const triglub::FieldSchema& field) {
  text.resize(static_cast<std::size_t>(field.width), ' ');
  return text;
}

bool has_room_for_nulls(const TableSchema& schema) {
  return std::all_of(schema.fields.begin(), schema.fields.end(), [](const triglub::FieldSchema& field) {
    return field.null_text.size() <= static_cast<std::size_t>(field.width);
  });
}

// A line of nulls, and one of ones, which any type can be read from.
std::string two_lines(const TableSchema& schema) {
  std::string nulls;
  std::string ones;
  for (const triglub::FieldSchema& field : schema.fields) {
    nulls += padded(field.null_text, field) + " ";
    ones += padded("1", field) + " ";
  }
  return nulls + "\n" + ones + "\n";
}

std::unique_ptr<const Table> read_table(const TableSchema& schema, std::unique_ptr<const triglub::NumberTexts> texts) {
  const triglub::RowLayout layout(schema);
  const std::string file = two_lines(schema);
  triglub::Rows rows(schema);
  expect(triglub::RowReader(layout, &rows).read(file), "nulls and ones are read", file);
  rows.fill();
  return std::move(rows.table).build(".", "row ", std::move(texts), {});
}

void look_at_rows(const TableSchema& schema, const Table& table) {
  for (std::size_t field = 0; field < schema.fields.size(); ++field) {
    expect(table.is_null(field, 0), "a null is read as null", schema.fields[field].name);
    triglub_fuzz::expect_same(schema.fields[field].null_text, table.text(field, 0), "the text of a null");
    expect(!table.text(field, 1).empty(), "a number has a text", schema.fields[field].name);
  }
}

void look_at(const TableSchema& schema) {
  for (std::size_t field = 0; field < schema.fields.size(); ++field) {
    expect(schema.find(schema.fields[field].name) == static_cast<int>(field), "a field is found by its name");
    schema.fields[field].type_code();
  }
  if (!has_room_for_nulls(schema)) return;
  look_at_rows(schema, *read_table(schema, triglub::shortest_texts()));
  look_at_rows(schema, *read_table(schema, triglub::texts_by_format(schema)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Pf* pf = nullptr;
  if (pfparse({reinterpret_cast<const char*>(data), size}, "input", &pf) != 0) return 0;
  const auto schema = triglub::Schema::from(pf);
  pffree(pf);
  if (schema == nullptr) return 0;
  for (const TableSchema& table : schema->tables()) {
    expect(schema->find(table.name) >= 0, "a table is found by its name", table.name);
    look_at(table);
  }
  return 0;
}
