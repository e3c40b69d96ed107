// Columns are handed out as they are held; a view that is put together refers to the tables of the session.
#include "platform/columns.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "engine/classic/handle.h"
#include "engine/operations/computed_table.h"
#include "engine/operations/extended_table.h"
#include "platform/elog.h"
#include "platform/limits.h"
#include "platform/sources.h"

namespace triglub {

std::string_view TextColumn::text_of(std::uint32_t code) const { return (*dictionary_)[code]; }

std::uint32_t TextColumn::code_count() const { return dictionary_->size(); }

double HalfPlaces::half_place(std::uint32_t row) const {
  return reals_[row] == null_ ? 0 : last_place_->half_at(reals_[row]);
}

namespace {

// The one table that a base table's view has, without rows; of any other handle none.
ViewTable base_part_of(Dbptr db) {
  const View* view = view_of(db);
  if (view == nullptr || view->tables().size() != 1 || view->tables().front().rows != nullptr) return {};
  return view->tables().front();
}

const Table* base_table_of(Dbptr db) { return base_part_of(db).table; }

char letter_of(Storage storage) {
  if (storage == Storage::text) return 't';
  return storage == Storage::integer ? 'i' : 'r';
}

std::uint32_t rows_in(const ViewTable& part) { return part.table->row_count(); }

bool are_rows_of(const std::vector<std::uint32_t>& rows, std::uint32_t count) {
  return std::all_of(rows.begin(), rows.end(), [count](std::uint32_t row) { return row < count || row == kNoRow; });
}

const TableSchema* schema_of(Dbptr db, const std::string& table) {
  const Session* session = session_of(db);
  if (session == nullptr) return nullptr;
  const Schema& schema = session->snapshot()->schema();
  const int index = schema.find(table);
  return index < 0 ? nullptr : &schema.tables()[static_cast<std::size_t>(index)];
}

// Its table is null when the part names none.
ViewTable table_for(Dbptr db, ViewPart& part) {
  ViewTable made;
  const TableSchema* schema = part.columns.empty() ? schema_of(db, part.name) : nullptr;
  if (part.name.empty()) return base_part_of(part.table);
  made.own = schema == nullptr ? computed_table(part.name, std::move(part.columns)) : table_without_rows(*schema);
  made.table = made.own.get();
  return made;
}

}  // namespace

TableColumns::TableColumns(Dbptr table) : table_(base_table_of(table)) {
  if (table_ == nullptr) throw std::logic_error("columns are read from a base table");
}

std::uint32_t TableColumns::row_count() const { return table_->row_count(); }

bool TableColumns::has(std::string_view field) const { return table_->schema().find(field) >= 0; }

std::size_t TableColumns::field_of(std::string_view name, char storage) const {
  const int field = table_->schema().find(name);
  if (field < 0 || letter_of(table_->schema().fields[static_cast<std::size_t>(field)].storage()) != storage) {
    throw std::logic_error("no such column: " + table_->schema().name + "." + std::string(name));
  }
  return static_cast<std::size_t>(field);
}

std::span<const std::int64_t> TableColumns::integers(std::string_view field) const {
  return table_->column(field_of(field, 'i')).integers;
}

std::span<const double> TableColumns::reals(std::string_view field) const {
  return table_->column(field_of(field, 'r')).reals;
}

TextColumn TableColumns::texts(std::string_view field) const {
  const Column& column = table_->column(field_of(field, 't'));
  TextColumn texts;
  texts.dictionary_ = &column.dictionary;
  texts.codes_ = column.codes;
  return texts;
}

HalfPlaces TableColumns::half_places(std::string_view field) const {
  const FieldSchema& schema = table_->schema().fields[field_of(field, 'r')];
  HalfPlaces places;
  places.last_place_ = &schema.last_place;
  places.reals_ = reals(field);
  places.null_ = schema.null_real;
  return places;
}

std::int64_t TableColumns::null_integer(std::string_view field) const {
  return table_->schema().fields[field_of(field, 'i')].null_integer;
}

double TableColumns::null_real(std::string_view field) const {
  return table_->schema().fields[field_of(field, 'r')].null_real;
}

std::string TableColumns::place(std::uint32_t row) const { return table_->place_of(row); }

Dbptr with_added_rows(Dbptr table, const AddedRows& rows) {
  if (rows.count == 0) return table;
  const Table* const base = base_table_of(table);
  const Table* const made_of = base_table_of(rows.made_of);
  if (base == nullptr || made_of == nullptr || rows.made_of_rows.size() != rows.count) return kInvalidHandle;
  if (std::uint64_t{base->row_count()} + rows.count > limit(Limit::table_rows)) {
    elog_complain(0, "%s with rows added: %s", base->schema().name.c_str(), beyond(Limit::table_rows).c_str());
    return kInvalidHandle;
  }
  auto extended = extended_table(*base, rows, *made_of);
  const std::uint32_t count = extended->row_count();
  ViewTable part;
  part.table = extended.get();
  part.own = std::move(extended);
  return handle_of_result(
      table, std::make_unique<const View>(std::vector<ViewTable>{std::move(part)}, count, "rows added"), nullptr);
}

Dbptr put_together(Dbptr db, std::vector<ViewPart> parts, const std::string& operation) {
  std::vector<ViewTable> tables;
  const std::size_t records = parts.empty() ? 0 : parts.front().rows.size();
  for (ViewPart& part : parts) {
    ViewTable table = table_for(db, part);
    if (table.table == nullptr || part.rows.size() != records || !are_rows_of(part.rows, rows_in(table))) {
      return kInvalidHandle;
    }
    table.rows = std::make_shared<const std::vector<std::uint32_t>>(std::move(part.rows));
    tables.push_back(std::move(table));
  }
  if (records > kMaxRows) return kInvalidHandle;
  auto view = std::make_unique<const View>(std::move(tables), static_cast<std::uint32_t>(records), operation);
  return handle_of_result(db, std::move(view), nullptr);
}

std::vector<std::string> primary_key(Dbptr db, const std::string& table) {
  std::vector<std::string> fields;
  const TableSchema* schema = schema_of(db, table);
  if (schema == nullptr) return fields;
  for (const KeyField& key : schema->primary) fields.push_back(key.is_range() ? key.name + "::" + key.end : key.name);
  return fields;
}

std::string row_place(Dbptr view, std::size_t table, std::uint32_t record) {
  const View* of = view_of(view);
  if (of == nullptr || table >= of->tables().size() || record >= of->record_count()) return "";
  const std::uint32_t row = of->row(table, record);
  return row == kNoRow ? "" : of->tables()[table].table->place_of(row);
}

std::span<const std::uint32_t> rows_of(Dbptr view, std::size_t table) {
  const View* of = view_of(view);
  if (of == nullptr || table >= of->tables().size() || of->tables()[table].rows == nullptr) return {};
  return *of->tables()[table].rows;
}

}  // namespace triglub
