// Reads a table from a flat file: one line a row, fields at fixed widths.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_FLAT_FILE_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_FLAT_FILE_H

#include <memory>
#include <string>

#include "engine/table/row_conditions.h"
#include "engine/table/table.h"

namespace triglub {

// The table of the rows that meet the conditions, or null after complaints (the first 20 faults with file, line, field
// and what was expected, then their number) when the file cannot be read or any of its rows does not fit the schema.
std::unique_ptr<const Table> load_flat_file(const TableSchema& schema, const std::string& path,
                                            const std::string& directory, const RowConditions& conditions);

}  // namespace triglub

#endif
