// Reads rows of a flat file: each line is checked against the row's layout and its cells go into columns. Nothing is
// guessed: a row that does not fit is a fault.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_ROW_READER_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_ROW_READER_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/table/table.h"

namespace triglub {

// Consecutive rows of a file.
struct Rows {
  std::vector<Column> columns;
  std::uint64_t count = 0;
  // Where lines begin in the file: line i of these at begin + i * stride when all are of one length, else at
  // offsets[i].
  std::uint64_t begin = 0;
  std::uint64_t stride = 0;
  std::vector<std::uint64_t> offsets;
};

// Reads the lines of `file` from byte `begin`, where a line begins, to before `end`, where one has ended. The columns
// are given room for what that many bytes hold: `room`. False at the first fault.
bool read_rows(const TableSchema& schema, std::string_view file, std::size_t begin, std::size_t end, std::size_t room,
               Rows* rows);

// Finds the faults of a file that read_rows has refused: hands each to `tell`, with the number of its line (from 1) and
// the name of its field (empty for the whole row).
using FaultTeller = std::function<void(std::uint64_t line, const std::string& field, const std::string& fault)>;
void tell_faults(const TableSchema& schema, std::string_view file, const FaultTeller& tell);

}  // namespace triglub

#endif
