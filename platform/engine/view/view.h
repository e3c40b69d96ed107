// A view: row numbers into base tables, and the fields those tables give it.
//
// A view does not change, so threads may share it. Its tables must outlive it, but for those that it owns.
#ifndef TRIGLUB_ENGINE_VIEW_VIEW_H
#define TRIGLUB_ENGINE_VIEW_VIEW_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/once_map.h"
#include "engine/expression/expression.h"
#include "engine/table/table.h"
#include "engine/view/field_runs.h"

namespace triglub {

using RowNumbers = std::shared_ptr<const std::vector<std::uint32_t>>;

// One base table of a view and the row behind each record; kNoRow where an outer join found none.
struct ViewTable {
  const Table* table = nullptr;
  RowNumbers rows;  // null: record i is row i
  // Keeps a table that no snapshot has; null for those that one has.
  std::shared_ptr<const Table> own = nullptr;
};

// A field of a view: which of its tables, which field of that.
struct ViewField {
  std::size_t table = 0;
  std::size_t field = 0;
};

class View final : public expression::FieldNames {
 public:
  View(std::vector<ViewTable> tables, std::uint32_t record_count, std::string operations);

  const std::vector<ViewTable>& tables() const { return tables_; }
  std::uint32_t record_count() const { return record_count_; }
  // The operations that made the view, one to a line.
  const std::string& operations() const { return operations_; }

  const std::vector<ViewField>& fields() const { return fields_; }
  const Table& table_of(const ViewField& field) const { return *tables_[field.table].table; }
  const FieldSchema& schema_of(const ViewField& field) const { return table_of(field).schema().fields[field.field]; }
  bool has_field(std::int64_t number) const { return number >= 0 && static_cast<std::size_t>(number) < fields_.size(); }
  // The index of a field by bare or qualified name; -1 when there is none.
  int find_field(std::string_view name) const;
  // The index of a table by name; -1 when there is none.
  int find_table(std::string_view name) const;

  // The base row of a record (from 0, below record_count).
  std::uint32_t row(std::size_t table, std::uint32_t record) const {
    const RowNumbers& rows = tables_[table].rows;
    return rows == nullptr ? record : (*rows)[record];
  }

  // Values by record; an absent row reads as null.
  std::int64_t integer(const ViewField& field, std::uint32_t record) const {
    const std::uint32_t row = this->row(field.table, record);
    return row == kNoRow ? schema_of(field).null_integer : table_of(field).integer(field.field, row);
  }
  double real(const ViewField& field, std::uint32_t record) const {
    const std::uint32_t row = this->row(field.table, record);
    return row == kNoRow ? schema_of(field).null_real : table_of(field).real(field.field, row);
  }
  std::string_view text(const ViewField& field, std::uint32_t record) const {
    const std::uint32_t row = this->row(field.table, record);
    return row == kNoRow ? std::string_view(schema_of(field).null_text) : table_of(field).text(field.field, row);
  }
  bool is_null(const ViewField& field, std::uint32_t record) const {
    const std::uint32_t row = this->row(field.table, record);
    return row == kNoRow || table_of(field).is_null(field.field, row);
  }
  // Of a real that is not null: half of its last place; 0 for one that is exact.
  double doubt(const ViewField& field, std::uint32_t record) const {
    return schema_of(field).last_place.half_at(real(field, record));
  }
  // A number of either storage.
  double number(const ViewField& field, std::uint32_t record) const {
    if (schema_of(field).storage() == Storage::integer) return static_cast<double>(integer(field, record));
    return real(field, record);
  }

  // For the expression compiler; ids are the indexes of fields().
  std::optional<expression::Field> find(std::string_view name) const override;

  // Where the runs of equal texts of a field lie; made when first asked for.
  const FieldRuns& runs(std::size_t field) const;

 private:
  std::vector<ViewTable> tables_;
  std::uint32_t record_count_;
  std::string operations_;
  std::vector<ViewField> fields_;
  std::unordered_map<std::string_view, int> field_by_bare_name_;  // the names are the schema's
  OnceMap<std::size_t, FieldRuns> runs_;
};

}  // namespace triglub

#endif
