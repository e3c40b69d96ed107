// The records of a document: for each row of all tables that stand together, its number.
#ifndef TRIGLUB_SRC_EPOCHS_RECORDS_H
#define TRIGLUB_SRC_EPOCHS_RECORDS_H

#include <array>
#include <cstdint>
#include <vector>

#include "epochs/channel_sweep.h"

namespace triglub {

// The tables of a record, in their order in the view.
enum RecordTable : std::uint8_t {
  kSitechan,
  kSnetsta,
  kSchanloc,
  kNetwork,
  kSite,
  kSensor,
  kInstrument,
  kCalibration,
  kStage,
  kEpoch,
  kStationEpoch,
  kNetworkEpoch,
  kChain,
  kRecordTables
};

// The name of each.
inline constexpr std::array<const char*, kRecordTables> kRecordTableNames = {
    "sitechan",    "snetsta", "schanloc", "network",       "site",          "sensor", "instrument",
    "calibration", "stage",   "epoch",    "station_epoch", "network_epoch", "chain"};

// By record: the row of each table, kAbsent for none.
struct RecordRows {
  std::array<std::vector<std::uint32_t>, kRecordTables> rows;

  std::size_t size() const { return rows[kSitechan].size(); }
};

// Rows of station_epoch and network_epoch, which are worked out.
struct StationEpoch {
  Span span;
  std::uint32_t channels = 0;
};
struct NetworkEpoch {
  Span span;
  bool has_span = false;  // false: no station of it has a place
  std::uint32_t stations = 0;
};

struct Records {
  RecordRows rows;
  std::vector<StationEpoch> station_epochs;
  std::vector<NetworkEpoch> network_epochs;
};

struct StationData;

// All records of the stations of `data`, in the order in which documents are written. Networks without stations come
// last, where they are wanted at all. Contradictions are added to data.told. Throws as RowBudget.
Records make_records(StationData& data, bool with_empty_networks);

// Whether two records are of the same epoch under the same code: the stages of such are one chain.
inline bool are_of_one_chain(const RecordRows& rows, std::size_t a, std::size_t b) {
  return rows.rows[kEpoch][a] == rows.rows[kEpoch][b] && rows.rows[kSnetsta][a] == rows.rows[kSnetsta][b];
}

// Gives each stage its place in its chain, from 0: its row of the table `chain`.
void number_stages(RecordRows* rows);

// Widens the spans of stations and networks to hold the epochs of their records.
void widen(const EpochList& epochs, Records* records);

}  // namespace triglub

#endif
