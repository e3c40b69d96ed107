// A condition that looks at one small table is asked of its rows, instead of all records that have them.
#include "epochs/station_choice.h"

#include <array>
#include <cstddef>
#include <utility>

#include "epochs/record_view.h"
#include "platform/columns.h"

namespace triglub {

namespace {

constexpr std::uint32_t kCodes = 1U << kSnetsta | 1U << kNetwork;

// The stations of the rows of a table that meet a condition.
StationSet stations_of_rows(const LoadedTable& table, const KeyedRows& rows, const ChannelOrder& order,
                            const Condition& condition) {
  const Dbptr all = {table.handle().database, table.handle().table, dbALL, dbALL};
  const Dbptr chosen = subset_and_release(all, condition);  // a base table stays
  std::vector<bool> is_in(order.stations.size(), false);
  for (const std::uint32_t row : base_rows(chosen, table.name())) {
    const ChannelKey key = rows.key_of_row(row);
    if (key != kNoChannel) is_in[station_of(key)] = true;
  }
  release_view(chosen);
  return StationSet(std::move(is_in));
}

// The stations that meet a condition on codes of stations and networks.
StationSet stations_of_codes(Dbptr db, const StationTables& tables, const ChannelOrder& order, const Partners& partners,
                             const Condition& condition) {
  RecordRows rows;
  for (std::vector<std::uint32_t>& column : rows.rows) column.assign(partners.published().size(), kAbsent);
  for (std::size_t i = 0; i < partners.published().size(); ++i) {
    rows.rows[kSnetsta][i] = partners.published()[i].snetsta;
    rows.rows[kNetwork][i] = partners.published()[i].network;
  }
  const Dbptr chosen = subset_and_release(make_record_view_without_epochs(db, tables, std::move(rows)), condition);
  std::vector<bool> is_row_in(partners.snetsta_rows(), false);
  for (const std::uint32_t row : base_rows(chosen, "snetsta")) is_row_in[row] = true;
  release_view(chosen);
  std::vector<bool> is_in(order.stations.size(), false);
  for (const PublishedStation& station : partners.published()) {
    if (is_row_in[station.snetsta]) is_in[station.station] = true;
  }
  return StationSet(std::move(is_in));
}

}  // namespace

void StationSet::keep_those_of(const StationSet& other) {
  if (other.are_all_) return;
  if (are_all_) {
    *this = other;
    return;
  }
  for (std::size_t i = 0; i < is_in_.size(); ++i) is_in_[i] = is_in_[i] && other.is_in_[i];
}

StationSet possible_stations(Dbptr db, const StationTables& tables, const ChannelOrder& order, const Partners& partners,
                             const Conditions& conditions) {
  StationSet possible;
  for (const Condition& condition : conditions.all()) {
    if (condition.tables == 1U << kSitechan) {
      possible.keep_those_of(stations_of_rows(tables.sitechan, order.sitechan, order, condition));
    } else if (condition.tables == 1U << kSite) {
      possible.keep_those_of(stations_of_rows(tables.site, order.site, order, condition));
    } else if (condition.tables != 0 && (condition.tables & ~kCodes) == 0) {
      possible.keep_those_of(stations_of_codes(db, tables, order, partners, condition));
    }
  }
  return possible;
}

}  // namespace triglub
