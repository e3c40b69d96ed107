// Tables that a database has by a schema of its own: each record has the row of such a table that its primary key
// names, and that holds when its epoch begins where the key has a range.
#ifndef TRIGLUB_SRC_EPOCHS_OWN_TABLES_H
#define TRIGLUB_SRC_EPOCHS_OWN_TABLES_H

#include <cstdint>
#include <string>
#include <vector>

#include "epochs/station_data.h"
#include "platform/database.h"

namespace triglub {

// The tables of the database's schema that records do not have by themselves.
std::vector<std::string> own_tables_of(Dbptr db);

// By record: the row of the table, kAbsent for none; of several the one that was written later, then the one further
// down. A record without an epoch takes what holds on the first day of its place. Throws FatalFailure for a key that
// records have no field for.
std::vector<std::uint32_t> own_table_rows(const StationData& data, const std::string& table, const RecordRows& rows);

}  // namespace triglub

#endif
