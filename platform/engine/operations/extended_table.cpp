// The columns of both are put together, so that all that reads a table reads this one as fast. The texts of numbers
// stay those that the rows of the table have; of the others they are the shortest, for a format might not have all
// digits.
#include "engine/operations/extended_table.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/table/column_builder.h"

namespace triglub {

namespace {

class JoinedTexts final : public NumberTexts {
 public:
  JoinedTexts(const Table& first, std::unique_ptr<const Table> second) : first_(first), second_(std::move(second)) {}

  std::string_view text(const Table& /*table*/, std::size_t field, std::uint32_t row) const override {
    const std::uint32_t count = first_.row_count();
    return row < count ? first_.text(field, row) : second_->text(field, row - count);
  }

  CodedTexts texts(const Table& table, std::size_t field) const override {
    CodedTexts made;
    made.dictionary.intern(table.schema().fields[field].null_text);
    for (const Table* part : {&first_, second_.get()}) append(part->text_codes(field), &made);
    return made;
  }

  // Rows are chosen where tables are loaded, and these never are.
  std::unique_ptr<const NumberTexts> of_rows(const std::vector<std::uint32_t>& /*rows*/) const override {
    return shortest_texts();
  }

 private:
  static void append(const TextCodes& part, CodedTexts* all) {
    std::vector<std::uint32_t> codes;
    codes.reserve(part.dictionary->size());
    for (std::uint32_t code = 0; code < part.dictionary->size(); ++code) {
      codes.push_back(all->dictionary.intern((*part.dictionary)[code]));
    }
    for (const std::uint32_t code : *part.codes) all->codes.push_back(codes[code]);
  }

  const Table& first_;
  std::unique_ptr<const Table> second_;
};

template <typename Columns>
const typename Columns::mapped_type* find(const Columns& columns, const std::string& name, std::uint32_t count) {
  const auto found = columns.find(name);
  if (found == columns.end()) return nullptr;
  if (found->second.size() != count) throw std::logic_error("a column of another length: " + name);
  return &found->second;
}

template <typename T>
std::vector<T> values_or_null(const std::vector<T>* values, T null, std::uint32_t count) {
  return values == nullptr ? std::vector<T>(count, null) : *values;
}

Column column_of(const FieldSchema& field, const AddedRows& rows) {
  Column column;
  if (field.storage() == Storage::integer) {
    column.integers = values_or_null(find(rows.integers, field.name, rows.count), field.null_integer, rows.count);
  } else if (field.storage() == Storage::real) {
    column.reals = values_or_null(find(rows.reals, field.name, rows.count), field.null_real, rows.count);
  } else {
    column.dictionary.intern(field.null_text);
    const std::vector<std::string_view>* texts = find(rows.texts, field.name, rows.count);
    for (std::uint32_t row = 0; row < rows.count; ++row) {
      const std::string_view text = texts == nullptr ? std::string_view() : (*texts)[row];
      column.codes.push_back(text.empty() ? kNullCode : column.dictionary.intern(text));
    }
  }
  return column;
}

void check(const TableSchema& schema, const std::string& name, Storage storage) {
  const int field = schema.find(name);
  if (field >= 0 && schema.fields[static_cast<std::size_t>(field)].storage() == storage) return;
  throw std::logic_error("no such column: " + schema.name + "." + name);
}

std::unique_ptr<const Table> table_of(const Table& like, const AddedRows& rows) {
  for (const auto& [name, values] : rows.texts) check(like.schema(), name, Storage::text);
  for (const auto& [name, values] : rows.integers) check(like.schema(), name, Storage::integer);
  for (const auto& [name, values] : rows.reals) check(like.schema(), name, Storage::real);
  TableContents contents;
  for (const FieldSchema& field : like.schema().fields) contents.columns.push_back(column_of(field, rows));
  contents.row_count = rows.count;
  contents.number_texts = shortest_texts();
  return std::make_unique<const Table>(like.schema(), like.directory(), std::move(contents));
}

}  // namespace

std::shared_ptr<const Table> extended_table(const Table& table, const AddedRows& rows, const Table& made_of) {
  auto added = table_of(table, rows);
  TableContents contents;
  for (std::size_t field = 0; field < table.schema().fields.size(); ++field) {
    contents.columns.push_back(joined(table.column(field), added->column(field)));
  }
  contents.row_count = table.row_count() + rows.count;
  contents.places = table.places();
  contents.places.made_of = &made_of;
  contents.places.first_made = table.row_count();
  contents.places.made_of_rows = rows.made_of_rows;
  contents.number_texts = std::make_unique<JoinedTexts>(table, std::move(added));
  return std::make_shared<const Table>(table.schema(), table.directory(), std::move(contents));
}

}  // namespace triglub
