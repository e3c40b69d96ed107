// Bulk reading: whole columns of a table at once, and views put together from row numbers. For programs that work out
// for themselves which rows belong together.
//
//     const TableColumns site(dblookup(db, nullptr, "site", nullptr, nullptr));
//     const TextColumn sta = site.texts("sta");
//     const std::span<const double> lat = site.reals("lat");
//     for (std::uint32_t row = 0; row < site.row_count(); ++row) ... sta.text(row), lat[row] ...
//
// What is read belongs to the database and does not change: it stays until the last session of the database is closed,
// and any number of threads may read it.
#ifndef TRIGLUB_PLATFORM_COLUMNS_H
#define TRIGLUB_PLATFORM_COLUMNS_H

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/export.h"

namespace triglub {

class Dictionary;
class LastPlace;
class Table;
class View;

// The texts of a column, each distinct one with a code from 0.
class TRIGLUB_API TextColumn {
 public:
  // The code of null.
  static constexpr std::uint32_t kNull = 0;

  // By row.
  std::span<const std::uint32_t> codes() const { return codes_; }
  bool is_null(std::uint32_t row) const { return codes_[row] == kNull; }
  std::string_view text(std::uint32_t row) const { return text_of(codes_[row]); }
  // Trimmed; of kNull the null text.
  std::string_view text_of(std::uint32_t code) const;
  std::uint32_t code_count() const;

 private:
  friend class TableColumns;
  const Dictionary* dictionary_ = nullptr;
  std::span<const std::uint32_t> codes_;
};

// How far the numbers of a column of reals may be from what was measured.
class TRIGLUB_API HalfPlaces {
 public:
  // By row: half of the last place of the number as its format writes it ("%9.4f": 0.00005), or of its own shortest
  // text when that is finer. 0 where nothing is in doubt: of a null, of a time, and when the schema's format says
  // nothing.
  double half_place(std::uint32_t row) const;

 private:
  friend class TableColumns;
  const LastPlace* last_place_ = nullptr;
  std::span<const double> reals_;
  double null_ = 0;
};

// The columns of a base table.
class TRIGLUB_API TableColumns {
 public:
  // REQUIRES: the handle names a base table that was opened (dblookup), which is valid.
  explicit TableColumns(Dbptr table);

  std::uint32_t row_count() const;
  bool has(std::string_view field) const;
  // Columns by row. A null is the field's null value. Throws std::logic_error where the table has no such field, or one
  // that is held as another type: integers and dates as integers, reals and times as reals.
  std::span<const std::int64_t> integers(std::string_view field) const;
  std::span<const double> reals(std::string_view field) const;
  TextColumn texts(std::string_view field) const;
  HalfPlaces half_places(std::string_view field) const;  // of reals
  double half_place(std::string_view field, std::uint32_t row) const { return half_places(field).half_place(row); }
  // The null value of such a field.
  std::int64_t null_integer(std::string_view field) const;
  double null_real(std::string_view field) const;
  // Where a row is, for messages: "/net/aak/aak.site:12".
  std::string place(std::uint32_t row) const;

 private:
  std::size_t field_of(std::string_view name, char storage) const;
  const Table* table_;
};

// A column of numbers that the program worked out.
struct ComputedColumn {
  std::string name;
  std::string description;  // one line
  bool is_time = false;     // epoch seconds, in `reals`; else whole numbers, in `integers`
  double null_real = 0;     // what stands for null in `reals`; `integers` have -1
  std::vector<double> reals{};
  std::vector<std::int64_t> integers{};
};

// One table of a view that is put together: a base table, or one by name.
struct ViewPart {
  Dbptr table{};       // a base table; not used where there is a name
  std::string name{};  // of a table of computed columns; without columns, of the schema's table of that name, which is
                       // not loaded and has no rows
  std::vector<ComputedColumn> columns{};  // of equal length
  std::vector<std::uint32_t> rows{};      // by record; NO_BASE_ROW: absent, reads as null in every field
};

// Rows that a program worked out, in the form of a base table's: columns by the names of fields, all of `count` rows. A
// field without a column is null, and so is an empty text.
struct AddedRows {
  std::uint32_t count = 0;
  std::map<std::string, std::vector<std::string_view>> texts{};  // trimmed
  std::map<std::string, std::vector<std::int64_t>> integers{};
  std::map<std::string, std::vector<double>> reals{};
  Dbptr made_of{};                            // the base table whose rows they were made of: messages name those
  std::vector<std::uint32_t> made_of_rows{};  // by row
};

// A base table with further rows behind its own; it can do all that other base tables can. It belongs to the session
// until it is released (release_view), and views that are put together of it keep it. Without added rows the table
// itself. Invalid when a handle names no base table, or, after a complaint, when there are more rows than a table can
// have (Limit::table_rows). Throws std::logic_error for columns that the table does not have.
TRIGLUB_API Dbptr with_added_rows(Dbptr table, const AddedRows& rows);

// The fields of a table's primary key, a range as "begin::end". Empty where the schema has no such table.
TRIGLUB_API std::vector<std::string> primary_key(Dbptr db, const std::string& table);

// The view with these tables, in their order, and rows; it can do all that other views can. `operation` is the line
// that tells how it was made. Invalid when a handle names no base table of the session, or a row is beyond its table's
// end. The rows of all parts are as many.
TRIGLUB_API Dbptr put_together(Dbptr db, std::vector<ViewPart> parts, const std::string& operation);

// The place of the row of one table (by position in the view) behind a record, as row_place(); empty when absent.
TRIGLUB_API std::string row_place(Dbptr view, std::size_t table, std::uint32_t record);

// The rows of a table of the view by record, without a copy; NO_BASE_ROW: absent. Valid as long as the view. Empty for
// a table whose rows are the records themselves.
TRIGLUB_API std::span<const std::uint32_t> rows_of(Dbptr view, std::size_t table);

}  // namespace triglub

#endif
