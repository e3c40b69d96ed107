// Builds a column value by value.
#ifndef TRIGLUB_ENGINE_TABLE_COLUMN_BUILDER_H
#define TRIGLUB_ENGINE_TABLE_COLUMN_BUILDER_H

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/schema/schema.h"
#include "engine/table/column.h"

namespace triglub {

class ColumnBuilder {
 public:
  // The field must outlive the builder.
  explicit ColumnBuilder(const FieldSchema& field);

  void reserve(std::uint64_t rows) {
    with_values([rows](auto& values) { values.reserve(rows); });
  }

  // Appends the value of a cell. False, with nothing appended, when it has a fault: see cell_fault().
  bool add(std::string_view cell);
  // Appends the value of an earlier row, which needs no look at its cell.
  void repeat(std::uint32_t row) {
    with_values([row](auto& values) { values.push_back(values[row]); });
  }
  // Brings the column up to `rows` rows: those that it lacks have the value of the last one, which there must be.
  void fill(std::uint64_t rows) {
    with_values([rows](auto& values) {
      if (values.size() < rows) values.resize(rows, values.back());
    });
  }
  // Whether load dates could not be read and were taken as null: see is_unread_load_date().
  bool has_unread() const { return has_unread_; }
  // Appends all values of another column of the same field.
  void append(const ColumnBuilder& other);

  // The column; the builder is of no use afterwards.
  Column take() { return std::move(column_); }

 private:
  // Calls `work` with the values, whatever they are.
  template <typename Work>
  void with_values(const Work& work) {
    switch (storage_) {
      case Storage::text:
        return work(column_.codes);
      case Storage::integer:
        return work(column_.integers);
      case Storage::real:
        return work(column_.reals);
    }
  }

  bool add_text(std::string_view cell);
  bool add_real(std::string_view cell);

  const FieldSchema* field_;
  Storage storage_;
  bool has_unread_ = false;
  Column column_;
};

// The values of chosen rows. The dictionary has their texts only.
Column column_of_rows(const FieldSchema& field, const Column& column, const std::vector<std::uint32_t>& rows);

// The values of one column and behind them those of another of the same field. Codes of the first one stay.
Column joined(const Column& first, const Column& second);

}  // namespace triglub

#endif
