// Tables of numbers that a program worked out, for views that hold more than what a source has.
#ifndef TRIGLUB_ENGINE_OPERATIONS_COMPUTED_TABLE_H
#define TRIGLUB_ENGINE_OPERATIONS_COMPUTED_TABLE_H

#include <memory>
#include <string>
#include <vector>

#include "engine/table/table.h"
#include "platform/columns.h"

namespace triglub {

// The table, with a schema of its own that lives as long. REQUIRES: the columns are of equal length.
std::shared_ptr<const Table> computed_table(const std::string& name, std::vector<ComputedColumn> columns);

// A table of a schema, which must outlive it, that has no rows.
std::shared_ptr<const Table> table_without_rows(const TableSchema& schema);

}  // namespace triglub

#endif
