// The view that documents of edition 2 are written over: one record for each stage of each epoch of each channel, under
// each code by which its station is published.
#ifndef TRIGLUB_SRC_EPOCHS_RECORD_VIEW_H
#define TRIGLUB_SRC_EPOCHS_RECORD_VIEW_H

#include <cstdint>
#include <functional>
#include <string>

#include "epochs/records.h"
#include "epochs/response_tables.h"
#include "epochs/station_tables.h"
#include "findings.h"
#include "platform/containers.h"
#include "platform/database.h"

namespace triglub {

// What is wanted of a database.
struct RecordChoice {
  rbtree* conditions = nullptr;  // as for db2stationxml: expressions to patterns; null: none
  bool with_empty_networks = false;
  // The tables of the view without records that are looked at, a bit each by position: own tables that are not among
  // them, nor looked at by a condition, are not in the view.
  std::uint32_t tables = 0;
  // The unit of ground motion of calibrations that are worked out, where the instrument does not tell.
  std::string calibration_units = "m";
  // Which response files rows may name.
  ResponseReach reach = ResponseReach::anywhere;
  // Changes the chosen rows before the view is made of them.
  std::function<void(const ResponseTables& tables, RecordRows* rows)> amend = nullptr;
};

// Ends with release().
struct RecordView {
  Dbptr view{};
  ResponseTables tables;
};

// The view of the records that meet the conditions, in the order in which documents have them; a view of the session.
// What there is to tell of what was chosen goes to *findings. Throws FatalFailure where a table refuses to load, days
// are no dates, or a condition does not compile.
RecordView make_record_view(Dbptr db, const RecordChoice& choice, Findings* findings);

// Releases the view and those of its tables that were made for it.
void release(const RecordView& view);

// The same view without any record and with all own tables (own_tables_of()), for those who need its names: no table is
// loaded for it.
Dbptr make_empty_record_view(Dbptr db);

// The view of records of which no epoch, station at a place or network is known.
Dbptr make_record_view_without_epochs(Dbptr db, const StationTables& tables, RecordRows rows);

}  // namespace triglub

#endif
