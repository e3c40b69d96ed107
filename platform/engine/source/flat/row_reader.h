// Reads rows of a flat file: each line is checked against the row's layout and its cells go into columns. A row that
// does not fit is a fault; nothing is assumed about it.
//
// It is fast because the rows of a table are much alike: only the cells that differ from the row above are looked at,
// and a cell whose bytes were read before is not parsed again. Columns and faults are those of the plain form, which
// reads every cell of every row.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_ROW_READER_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_ROW_READER_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/source/flat/row_layout.h"
#include "engine/source/unread_dates.h"
#include "engine/table/kept_cells.h"
#include "engine/table/table_builder.h"

namespace triglub {

// Rows that were read of a file.
class Rows {
 public:
  explicit Rows(const TableSchema& schema);

  // The columns get room for so many rows.
  void reserve(std::uint64_t rows);
  // Brings all columns up to the last row.
  void fill();
  // Appends the rows of another part of the same table, which is emptied. False, with nothing appended, when the table
  // cannot have as many.
  bool append(Rows&& rows);

  TableBuilder table;
  std::vector<KeptCells> cells;  // by field; only those of numbers and times have any
};

// Takes in lines, some at a time. What they were may be gone after each call.
class RowReader {
 public:
  // The layout and the rows, which are empty yet, must outlive the reader. When all lines are read, the rows have to
  // be filled.
  RowReader(const RowLayout& layout, Rows* rows);
  ~RowReader();
  RowReader(const RowReader&) = delete;
  RowReader& operator=(const RowReader&) = delete;

  // Reads whole lines. False at the first fault; the rows are of no use then.
  bool read(std::string_view lines);

 private:
  class Reading;
  std::unique_ptr<Reading> reading_;
};

// Finds the faults of lines of a file that a reader has refused: hands each to `tell`, with the number of its line
// (from 1) and the name of its field (empty for the whole row). `*line` is the number of the line before the first, and
// becomes that of the last one looked at. False when there is no use in further lines.
using FaultTeller = std::function<void(std::uint64_t line, const std::string& field, const std::string& fault)>;
bool tell_faults(const TableSchema& schema, const RowLayout& layout, std::string_view lines, std::uint64_t* line,
                 const FaultTeller& tell);

// Finds the cells of lines without faults that `dates` looks for. `*line` as above.
void find_unread_dates(const TableSchema& schema, const RowLayout& layout, std::string_view lines, std::uint64_t* line,
                       UnreadDates* dates);

}  // namespace triglub

#endif
