// The computed tables of the view have a row for each epoch, station at a place, network, and place in a chain.
#include "epochs/station_data.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "epochs/made_calibrations.h"
#include "epochs/made_stages.h"
#include "epochs/own_tables.h"
#include "epochs/record_view.h"
#include "platform/columns.h"

namespace triglub {

namespace {

constexpr double kNullTime = -9999999999.999;
constexpr double kNullEndTime = 9999999999.999;
constexpr const char* kOperation = "records of epochs";

std::vector<ComputedColumn> span_columns(const std::string& of) {
  return {{"time", "begin of the " + of, true, kNullTime}, {"endtime", "end of the " + of, true, kNullEndTime}};
}

void append_span(const Span& span, std::vector<ComputedColumn>* columns) {
  (*columns)[0].reals.push_back(seconds_of(span.begin, kNullTime));
  (*columns)[1].reals.push_back(seconds_of(span.end, kNullEndTime));
}

std::vector<ComputedColumn> epoch_columns(const std::vector<Epoch>& epochs) {
  std::vector<ComputedColumn> columns = span_columns("epoch of the channel");
  for (ComputedColumn& column : columns) column.reals.reserve(epochs.size());
  for (const Epoch& epoch : epochs) append_span(epoch.span, &columns);
  return columns;
}

std::vector<ComputedColumn> station_columns(const std::vector<StationEpoch>& stations) {
  std::vector<ComputedColumn> columns = span_columns("time of the station at the place");
  columns.push_back({"channels", "number of channels of the station at the place"});
  for (const StationEpoch& station : stations) {
    append_span(station.span, &columns);
    columns[2].integers.push_back(station.channels);
  }
  return columns;
}

std::vector<ComputedColumn> network_columns(const std::vector<NetworkEpoch>& networks) {
  std::vector<ComputedColumn> columns = span_columns("time of the network");
  columns.push_back({"stations", "number of stations of the network"});
  for (const NetworkEpoch& network : networks) {
    append_span(network.has_span ? network.span : Span{}, &columns);
    columns[2].integers.push_back(network.stations);
  }
  return columns;
}

std::vector<ComputedColumn> chain_columns(const std::vector<std::uint32_t>& places) {
  std::int64_t length = 0;
  for (const std::uint32_t place : places) {
    if (place != kAbsent) length = std::max(length, std::int64_t{place} + 1);
  }
  ComputedColumn number{"number", "place of the stage in its chain, from 1"};
  for (std::int64_t i = 1; i <= length; ++i) number.integers.push_back(i);
  return {number};
}

std::vector<ViewPart> named_parts() {
  std::vector<ViewPart> parts(kRecordTables);
  for (std::size_t t = 0; t < parts.size(); ++t) parts[t].name = kRecordTableNames[t];
  return parts;
}

// The tables of records, without rows.
std::vector<ViewPart> table_parts(const StationTables& tables) {
  std::vector<ViewPart> parts = named_parts();
  for (std::size_t t = 0; t < kEpoch; ++t) {
    parts[t].table = table_of(tables, static_cast<RecordTable>(t)).handle();
    parts[t].name.clear();
  }
  return parts;
}

void add_columns(const std::vector<Epoch>& epochs, const Records& records, std::vector<ViewPart>* parts) {
  (*parts)[kEpoch].columns = epoch_columns(epochs);
  (*parts)[kStationEpoch].columns = station_columns(records.station_epochs);
  (*parts)[kNetworkEpoch].columns = network_columns(records.network_epochs);
  (*parts)[kChain].columns = chain_columns((*parts)[kChain].rows);
}

}  // namespace

StationData::StationData(Dbptr db, const Conditions& conditions, const RecordChoice& choice,
                         std::vector<std::string> own_tables)
    : db(db),
      own_tables(std::move(own_tables)),
      tables(db),
      order(tables),
      memberships(db, &tables, order),
      partners(tables, order, &told),
      places(tables, order, &told),
      stations(possible_stations(db, tables, order, partners, conditions)) {
  if (!stations.are_all()) {
    for (std::uint32_t station = 0; station < order.stations.size(); ++station) {
      if (places.need_epochs_of(station)) stations.add(station);
    }
  }
  epochs = find_epochs(tables, order, stations);
  told.insert(told.end(), epochs.told.begin(), epochs.told.end());
  epochs.told = {};
  complete_calibrations(partners, choice.calibration_units, &tables, &epochs);
  instrument_stages = complete_stages(partners, choice.reach, &tables, &epochs);
  places.take(epochs);
  records = make_records(*this, choice.with_empty_networks);
  epochs.stages = {};  // millions of numbers, which the records have by now
}

StationData::~StationData() { release_view(tables.snetsta.handle()); }

const LoadedTable& table_of(const StationTables& tables, RecordTable table) {
  const std::array<const LoadedTable*, kEpoch> all = {&tables.sitechan,   &tables.snetsta,     &tables.schanloc,
                                                      &tables.network,    &tables.site,        &tables.sensor,
                                                      &tables.instrument, &tables.calibration, &tables.stage};
  return *all[table];
}

Dbptr view_of_records(const StationData& data, RecordRows rows, const Records& spans) {
  std::vector<ViewPart> parts = table_parts(data.tables);
  for (const std::string& table : data.own_tables) {
    ViewPart& own = parts.emplace_back();
    own.table = open_table(data.db, table.c_str());
    own.rows = own_table_rows(data, table, rows);
  }
  for (std::size_t t = 0; t < kRecordTables; ++t) parts[t].rows = std::move(rows.rows[t]);
  add_columns(data.epochs.epochs, spans, &parts);
  return put_together(data.db, std::move(parts), kOperation);
}

Dbptr make_record_view_without_epochs(Dbptr db, const StationTables& tables, RecordRows rows) {
  std::vector<ViewPart> parts = table_parts(tables);
  for (std::size_t t = 0; t < parts.size(); ++t) parts[t].rows = std::move(rows.rows[t]);
  add_columns({}, {}, &parts);
  return put_together(db, std::move(parts), kOperation);
}

Dbptr make_empty_record_view(Dbptr db) {
  std::vector<ViewPart> parts = named_parts();
  for (const std::string& table : own_tables_of(db)) parts.emplace_back().name = table;
  add_columns({}, {}, &parts);
  return put_together(db, std::move(parts), kOperation);
}

}  // namespace triglub
