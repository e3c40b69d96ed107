// All that is worked out of a database before anything is chosen of it.
#ifndef TRIGLUB_SRC_EPOCHS_STATION_DATA_H
#define TRIGLUB_SRC_EPOCHS_STATION_DATA_H

#include <string>
#include <vector>

#include "epochs/all_epochs.h"
#include "epochs/conditions.h"
#include "epochs/memberships.h"
#include "epochs/partners.h"
#include "epochs/records.h"
#include "epochs/response_tables.h"
#include "epochs/station_choice.h"
#include "epochs/station_places.h"
#include "epochs/station_tables.h"
#include "epochs/told.h"

namespace triglub {

struct RecordChoice;

struct StationData {
  // Of the stations that the conditions can choose from; networks are whole all the same. Throws as StationTables and
  // read_file.
  StationData(Dbptr db, const Conditions& conditions, const RecordChoice& choice, std::vector<std::string> own_tables);
  // Releases what records do not need: tables that were given rows, but for those of responses.
  ~StationData();
  StationData(const StationData&) = delete;
  StationData& operator=(const StationData&) = delete;

  Dbptr db;
  std::vector<std::string> own_tables;  // of the database's own schema, that the view is to have
  StationTables tables;
  ChannelOrder order;
  ToldList told;
  Memberships memberships;
  Partners partners;
  StationPlaces places;
  StationSet stations;
  EpochList epochs;
  std::vector<InstrumentStage> instrument_stages;  // the last rows of tables.stage
  Records records;
};

// One of the tables by its place in records. REQUIRES: a source has it.
const LoadedTable& table_of(const StationTables& tables, RecordTable table);

// The view of some records; those of `spans` give the times of stations and networks. A view of the session of `data`.
Dbptr view_of_records(const StationData& data, RecordRows rows, const Records& spans);

}  // namespace triglub

#endif
