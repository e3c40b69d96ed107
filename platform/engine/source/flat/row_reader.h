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
#include <string>
#include <string_view>

#include "engine/source/flat/line_begins.h"
#include "engine/source/flat/row_layout.h"
#include "engine/source/unread_dates.h"
#include "engine/table/table_builder.h"

namespace triglub {

// Consecutive rows of a file.
struct Rows {
  explicit Rows(const TableSchema& schema, std::uint64_t begin = 0) : table(schema), lines(begin) {}

  TableBuilder table;
  LineBegins lines;
};

// Appends the lines of `file` from byte `begin`, where a line begins, to before `end`, where one has ended, to rows
// that are empty yet. The columns are given room for what that many bytes hold: `room`. False at the first fault.
bool read_rows(const RowLayout& layout, std::string_view file, std::size_t begin, std::size_t end, std::size_t room,
               Rows* rows);

// Finds the faults of a file that read_rows has refused: hands each to `tell`, with the number of its line (from 1) and
// the name of its field (empty for the whole row).
using FaultTeller = std::function<void(std::uint64_t line, const std::string& field, const std::string& fault)>;
void tell_faults(const TableSchema& schema, const RowLayout& layout, std::string_view file, const FaultTeller& tell);

// Finds the cells of the rows of a file without faults that `dates` looks for.
void find_unread_dates(const TableSchema& schema, const RowLayout& layout, std::string_view file, UnreadDates* dates);

}  // namespace triglub

#endif
