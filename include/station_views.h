// The views that a document is written over, step by step: for programs that look at the same tables in the same way,
// to tell which channel epochs the document will not have.
//
// Each takes and gives a view as the engine's operations do: an invalid handle gives an invalid one.
#ifndef TRIGLUB_STATION_VIEWS_H
#define TRIGLUB_STATION_VIEWS_H

#include "platform/containers.h"
#include "platform/database.h"
#include "platform/export.h"

namespace triglub {

// Whether records without a partner are left out, as the document leaves them out, or stay with nulls.
enum class Partners { required, optional };

// Channel epochs with their station and channel codes (snetsta, schanloc), restricted by `subset`, field names or
// expressions mapped to regular expressions between slashes. Starts from `sitechan`, a view of that table, or from the
// whole table where `sitechan` is the handle of a database. `traced`: the engine tells its steps to the debug log.
TRIGLUB_API Dbptr coded_channels(Dbptr sitechan, Partners partners, rbtree* subset, bool traced);

// Coded channels with the row of `network` that their network code names, as the view `name` (null: without a name).
TRIGLUB_API Dbptr with_networks(Dbptr coded, Partners partners, const char* name);

// Those with their rows of site, sensor and calibration, and with that of instrument where there is one. `traced` as
// above.
TRIGLUB_API Dbptr with_station_tables(Dbptr view, Partners partners, bool traced);

}  // namespace triglub

#endif
