// A base table: its rows as typed columns.
#ifndef TRIGLUB_ENGINE_TABLE_TABLE_H
#define TRIGLUB_ENGINE_TABLE_TABLE_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/once_map.h"
#include "engine/schema/schema.h"
#include "engine/table/column.h"
#include "engine/table/join_index.h"
#include "engine/table/number_texts.h"

namespace triglub {

class Table;

// Where the rows of a table are, for messages: "/net/aak/aak.site:" and the number of the row, which counts from 1.
struct RowPlaces {
  std::string before_number;
  std::vector<std::uint32_t> numbers;  // by row, from 0; empty where they are the table's own

  // Rows that were made of those of another table, which must stay: the rows from `first_made` on.
  const Table* made_of = nullptr;
  std::uint32_t first_made = 0;
  std::vector<std::uint32_t> made_of_rows;

  // REQUIRES: none was made of another table's.
  RowPlaces of_rows(const std::vector<std::uint32_t>& rows) const;
};

struct TableContents {
  std::vector<Column> columns;  // one a field
  std::uint32_t row_count = 0;
  std::unique_ptr<const NumberTexts> number_texts;
  RowPlaces places;
};

// A table does not change; what is derived from its values is made once, at the first request. All members are safe for
// concurrent use.
class Table {
 public:
  // `directory` is the folder to which the names of files in the rows are relative. The schema must outlive the table.
  Table(const TableSchema& schema, std::string directory, TableContents contents);
  // A table of chosen rows, ascending.
  std::unique_ptr<const Table> of_rows(const std::vector<std::uint32_t>& rows) const;

  const TableSchema& schema() const { return schema_; }
  const std::string& directory() const { return directory_; }
  std::uint32_t row_count() const { return row_count_; }
  const Column& column(std::size_t field) const { return columns_[field]; }
  const RowPlaces& places() const { return places_; }
  // Where a row is, for messages: the file and the line, or the like.
  std::string place_of(std::uint32_t row) const;

  std::int64_t integer(std::size_t field, std::uint32_t row) const { return columns_[field].integers[row]; }
  double real(std::size_t field, std::uint32_t row) const { return columns_[field].reals[row]; }
  // A number of either storage.
  double number(std::size_t field, std::uint32_t row) const {
    if (schema_.fields[field].storage() == Storage::integer) return static_cast<double>(integer(field, row));
    return real(field, row);
  }
  bool is_null(std::size_t field, std::uint32_t row) const {
    const FieldSchema& description = schema_.fields[field];
    const Column& column = columns_[field];
    switch (description.storage()) {
      case Storage::text:
        return column.codes[row] == kNullCode;
      case Storage::integer:
        return column.integers[row] == description.null_integer;
      case Storage::real:
        return column.reals[row] == description.null_real;
    }
    return false;
  }
  // The value's text: the null text of a null, else the text or, of a number, what NumberTexts gives. Valid as long as
  // the table.
  std::string_view text(std::size_t field, std::uint32_t row) const;

  // These are made when first asked for, and valid as long as the table.
  TextCodes text_codes(std::size_t field) const;
  // By code of a text column: the place of each text in ascending byte order.
  const std::vector<std::uint32_t>& text_ranks(std::size_t field) const;
  const JoinIndex& join_index(const std::vector<JoinColumn>& columns) const;
  // By code of another column's dictionary: the code of the same text in a text column of this table, kNoCode where it
  // does not have the text. `from` must live as long as the table.
  const std::vector<std::uint32_t>& dictionary_mapping(const Dictionary& from, std::size_t field) const;

 private:
  struct MadeOfField {
    Once<CodedTexts> number_texts;
    Once<std::vector<std::uint32_t>> text_ranks;
  };

  const TableSchema& schema_;
  std::string directory_;
  std::vector<Column> columns_;
  std::uint32_t row_count_;
  std::unique_ptr<const NumberTexts> number_texts_;
  RowPlaces places_;

  std::unique_ptr<MadeOfField[]> made_;  // by field
  OnceMap<std::vector<JoinColumn>, JoinIndex> join_indexes_;
  OnceMap<std::pair<const Dictionary*, std::size_t>, std::vector<std::uint32_t>> dictionary_mappings_;
};

}  // namespace triglub

#endif
