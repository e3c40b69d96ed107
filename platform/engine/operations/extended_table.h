// Tables with rows that a program worked out.
#ifndef TRIGLUB_ENGINE_OPERATIONS_EXTENDED_TABLE_H
#define TRIGLUB_ENGINE_OPERATIONS_EXTENDED_TABLE_H

#include <memory>

#include "engine/table/table.h"
#include "platform/columns.h"

namespace triglub {

// The rows of a table and behind them others, whose places are those of rows of `made_of`. Both tables must outlive it.
// Throws std::logic_error for a column that the table does not have, or one of another length.
std::shared_ptr<const Table> extended_table(const Table& table, const AddedRows& rows, const Table& made_of);

}  // namespace triglub

#endif
