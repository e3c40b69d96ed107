// A base table: its rows as typed columns.
#ifndef TRIGLUB_ENGINE_TABLE_TABLE_H
#define TRIGLUB_ENGINE_TABLE_TABLE_H

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/mapped_file.h"
#include "engine/schema/schema.h"
#include "engine/table/dictionary.h"
#include "engine/table/join_index.h"

namespace triglub {

inline constexpr std::uint32_t MAX_ROWS = 1u << 31;
inline constexpr std::uint32_t NO_CODE = 0xFFFFFFFFu;

// The values of one field, by row. One of the vectors is filled, as the field's storage says. A null is held as the
// field's null value; the null of a text has code 0.
struct Column {
  Dictionary dictionary;
  std::vector<std::uint32_t> codes;
  std::vector<std::int64_t> integers;
  std::vector<double> reals;
};

// The distinct texts of a column as dbget gives them, for any storage.
struct TextCodes {
  const Dictionary* dictionary;
  const std::vector<std::uint32_t>* codes;  // by row
};

class Table {
 public:
  // A table without rows. `directory` is where its file is, or would be.
  Table(const TableSchema& schema, std::string directory);

  const TableSchema& schema() const { return schema_; }
  const std::string& directory() const { return directory_; }
  const std::string& path() const { return path_; }  // empty when there is no file
  std::uint32_t row_count() const { return row_count_; }
  const Column& column(std::size_t field) const { return columns_[field]; }

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
        return column.codes[row] == 0;
      case Storage::integer:
        return column.integers[row] == description.null_integer;
      case Storage::real:
        return column.reals[row] == description.null_real;
    }
    return false;
  }
  // The value's text: the null text of a null, else the file's own characters, trimmed. Valid as long as the table.
  std::string_view text(std::size_t field, std::uint32_t row) const;

  // Made when first asked for; valid as long as the table.
  TextCodes text_codes(std::size_t field) const;
  const JoinIndex& join_index(const std::vector<JoinColumn>& columns) const;
  // By code of another column's dictionary: the code of the same text in a text column of this table, NO_CODE where it
  // does not have the text. `from` must live as long as the table.
  const std::vector<std::uint32_t>& translation(const Dictionary& from, std::size_t field) const;

 private:
  friend class FlatFileLoader;

  std::string_view raw(std::size_t field, std::uint32_t row) const;

  const TableSchema& schema_;
  std::string directory_;
  std::string path_;
  std::uint32_t row_count_ = 0;
  std::vector<Column> columns_;

  std::unique_ptr<MappedFile> file_;
  // Where lines begin: line `row` at row * stride_ when all are of one length, else at offsets_[row].
  std::uint64_t stride_ = 0;
  std::vector<std::uint64_t> offsets_;

  struct NumberTexts {
    Dictionary dictionary;
    std::vector<std::uint32_t> codes;
  };
  mutable std::map<std::size_t, NumberTexts> number_texts_;
  mutable std::map<std::vector<JoinColumn>, JoinIndex> join_indexes_;
  mutable std::map<std::pair<const Dictionary*, std::size_t>, std::vector<std::uint32_t>> translations_;
};

}  // namespace triglub

#endif
