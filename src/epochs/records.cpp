// Records are made station by station, as they are published; what the stations of a network share is made with the
// first of them.
#include "epochs/records.h"

#include <algorithm>
#include <limits>
#include <map>
#include <span>
#include <tuple>
#include <vector>

#include "epochs/row_budget.h"
#include "epochs/station_data.h"

namespace triglub {

namespace {

using Row = std::array<std::uint32_t, kRecordTables>;

constexpr Row nothing() {
  Row row{};
  row.fill(kAbsent);
  return row;
}

class RecordMaker {
 public:
  RecordMaker(const StationData& data, Records* records)
      : data_(data), epochs_(data.epochs), places_(data.places), partners_(data.partners), records_(*records) {}

  void make(const std::vector<std::uint32_t>& codes);
  void make_empty_networks();

 private:
  // A channel's epoch at a place, or a place without channels.
  struct Item {
    std::int64_t first_day = 0;  // of the place
    bool is_epoch = false;
    std::uint32_t number = 0;  // of the epoch, or the row of site
  };

  void check_count() const;
  std::uint64_t count_of(std::uint32_t station) const;
  void find_items(const PublishedStation& published);
  void drop_items_outside_membership(std::uint32_t snetsta);
  bool has_place(const PublishedStation& station) const;
  void make_station(const PublishedStation& station);
  void add_epoch(const Row& base, std::uint32_t number);
  void add(const Row& row);
  void begin_network(const PublishedStation& station);
  std::uint32_t station_epoch_of(std::uint32_t site);
  std::int64_t first_day_of(std::uint32_t site) const;

  const StationData& data_;
  const EpochList& epochs_;
  const StationPlaces& places_;
  const Partners& partners_;
  Records& records_;
  const std::vector<std::uint32_t>* codes_ = nullptr;  // row of schanloc by epoch

  std::vector<Item> items_;                                // of the station at hand
  std::map<std::uint32_t, std::uint32_t> station_epochs_;  // of the station at hand, by row of site
  std::uint32_t net_ = TextNumbers::kNone;                 // of the network at hand
  std::uint32_t code_ = TextNumbers::kNone;                // the latest station code of it
};

// Null comes first.
std::int64_t RecordMaker::first_day_of(std::uint32_t site) const {
  const std::int64_t day = data_.tables.site.first_day(site);
  return day == data_.tables.site.null_day() ? std::numeric_limits<std::int64_t>::min() : day;
}

void RecordMaker::drop_items_outside_membership(std::uint32_t snetsta) {
  if (!data_.memberships.are_limited()) return;
  std::erase_if(items_, [&](const Item& item) {
    const Span& span = item.is_epoch ? epochs_.epochs[item.number].span : places_.of_site(item.number).span;
    return !data_.memberships.hold(snetsta, span);
  });
}

// Whether the station is at a place while it is in the network.
bool RecordMaker::has_place(const PublishedStation& station) const {
  const auto places = places_.of(station.station);
  return std::any_of(places.begin(), places.end(), [&](const StationPlace& place) {
    return place.stands && data_.memberships.hold(station.snetsta, place.span);
  });
}

void RecordMaker::find_items(const PublishedStation& published) {
  const std::uint32_t station = published.station;
  items_.clear();
  if (!data_.stations.has(station)) return;
  const std::span<const Epoch> epochs = places_.epochs_of(station);
  for (const StationPlace& place : places_.of(station)) {
    if (place.stands && place.channels == 0) items_.push_back({first_day_of(place.site), false, place.site});
  }
  for (const Epoch& epoch : epochs) {
    const auto number = static_cast<std::uint32_t>(&epoch - epochs_.epochs.data());
    items_.push_back({first_day_of(epoch.site), true, number});
  }
  drop_items_outside_membership(published.snetsta);
  const auto before = [](const Item& a, const Item& b) {
    return std::tuple(a.first_day, a.is_epoch) < std::tuple(b.first_day, b.is_epoch);
  };
  if (!std::is_sorted(items_.begin(), items_.end(), before)) std::stable_sort(items_.begin(), items_.end(), before);
}

void RecordMaker::add(const Row& row) {
  for (std::size_t t = 0; t < row.size(); ++t) records_.rows.rows[t].push_back(row[t]);
}

void RecordMaker::add_epoch(const Row& base, std::uint32_t number) {
  const Epoch& epoch = epochs_.epochs[number];
  Row row = base;
  row[kSitechan] = epoch.sitechan;
  row[kSchanloc] = (*codes_)[number];
  row[kSite] = epoch.site;
  row[kSensor] = epoch.sensor;
  row[kInstrument] = partners_.instrument_of(epoch.sensor);
  row[kCalibration] = epoch.calibration;
  row[kEpoch] = number;
  row[kStationEpoch] = station_epoch_of(epoch.site);
  for (std::uint32_t i = 0; i < epoch.stage_count; ++i) {
    row[kStage] = epochs_.stages[epoch.first_stage + i];
    add(row);
  }
  if (epoch.stage_count == 0) add(row);
}

std::uint32_t RecordMaker::station_epoch_of(std::uint32_t site) {
  const auto [entry, is_new] =
      station_epochs_.try_emplace(site, static_cast<std::uint32_t>(records_.station_epochs.size()));
  if (!is_new) return entry->second;
  const StationPlace& place = places_.of_site(site);
  records_.station_epochs.push_back({place.span, place.channels});
  return entry->second;
}

void RecordMaker::begin_network(const PublishedStation& station) {
  if (station.net != net_) {
    net_ = station.net;
    code_ = TextNumbers::kNone;
    records_.network_epochs.push_back({{kFuture, kPast}, false, 0});
  }
  NetworkEpoch& network = records_.network_epochs.back();
  const bool has_records = !items_.empty() || (!data_.stations.has(station.station) && has_place(station));
  if (has_records && station.code != code_) {
    code_ = station.code;
    ++network.stations;
  }
  for (const StationPlace& place : places_.of(station.station)) {
    if (!place.span.holds_ever() || !data_.memberships.hold(station.snetsta, place.span)) continue;
    network.span.include(place.span);
    network.has_span = true;
  }
}

void RecordMaker::make_station(const PublishedStation& station) {
  find_items(station);
  begin_network(station);
  station_epochs_.clear();
  Row base = nothing();
  base[kSnetsta] = station.snetsta;
  base[kNetwork] = station.network;
  base[kNetworkEpoch] = static_cast<std::uint32_t>(records_.network_epochs.size()) - 1;
  for (const Item& item : items_) {
    if (item.is_epoch) {
      add_epoch(base, item.number);
    } else {
      Row row = base;
      row[kSite] = item.number;
      row[kStationEpoch] = station_epoch_of(item.number);
      add(row);
    }
  }
}

// Of records and places that are looked at for each of its codes.
std::uint64_t RecordMaker::count_of(std::uint32_t station) const {
  std::uint64_t count = places_.of(station).size();
  if (!data_.stations.has(station)) return count;
  for (const Epoch& epoch : places_.epochs_of(station)) count += std::max(epoch.stage_count, 1U);
  return count;
}

// What a station has is there once for each code that it is published under.
void RecordMaker::check_count() const {
  RowBudget budget;
  std::map<std::uint32_t, std::uint64_t> counts;  // by station
  for (const PublishedStation& published : partners_.published()) {
    const auto [count, is_new] = counts.try_emplace(published.station);
    if (is_new) count->second = count_of(published.station);
    budget.take(count->second, [&] { return data_.tables.snetsta.columns().place(published.snetsta); });
  }
}

void RecordMaker::make(const std::vector<std::uint32_t>& codes) {
  check_count();
  codes_ = &codes;
  for (auto& rows : records_.rows.rows) rows.reserve(epochs_.stages.size());
  for (const PublishedStation& station : partners_.published()) make_station(station);
}

void RecordMaker::make_empty_networks() {
  std::vector<bool> has_stations(partners_.nets().size(), false);
  std::uint32_t net = TextNumbers::kNone;
  std::size_t number = 0;
  for (const PublishedStation& station : partners_.published()) {
    if (station.net != net) ++number;
    net = station.net;
    has_stations[net] = records_.network_epochs[number - 1].stations > 0;
  }
  for (const auto& [row, code] : partners_.networks()) {
    if (has_stations[code]) continue;
    Row record = nothing();
    record[kNetwork] = row;
    record[kNetworkEpoch] = static_cast<std::uint32_t>(records_.network_epochs.size());
    records_.network_epochs.push_back({{kFuture, kPast}, false, 0});
    add(record);
  }
}

std::vector<std::uint32_t> codes_of(StationData& data) {
  ChannelCodes codes(data.tables, data.order);
  std::vector<std::uint32_t> rows;
  rows.reserve(data.epochs.epochs.size());
  for (const Epoch& epoch : data.epochs.epochs) {
    rows.push_back(codes.row_of(data.order.sitechan.key_of_row(epoch.sitechan), &data.told));
  }
  return rows;
}

}  // namespace

Records make_records(StationData& data, bool with_empty_networks) {
  Records records;
  RecordMaker maker(data, &records);
  maker.make(codes_of(data));
  if (with_empty_networks) maker.make_empty_networks();
  number_stages(&records.rows);
  return records;
}

void number_stages(RecordRows* rows) {
  std::vector<std::uint32_t>& places = rows->rows[kChain];
  for (std::size_t i = 0; i < rows->size(); ++i) {
    const bool goes_on = i > 0 && places[i - 1] != kAbsent && are_of_one_chain(*rows, i - 1, i);
    places[i] = rows->rows[kStage][i] == kAbsent ? kAbsent : goes_on ? places[i - 1] + 1 : 0;
  }
}

void widen(const EpochList& epochs, Records* records) {
  const RecordRows& rows = records->rows;
  std::uint32_t latest = kAbsent;
  std::uint32_t latest_station = kAbsent;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::uint32_t epoch = rows.rows[kEpoch][i];
    const std::uint32_t station = rows.rows[kStationEpoch][i];
    if (epoch == kAbsent || (epoch == latest && station == latest_station)) continue;
    latest = epoch;
    latest_station = station;
    const Span& span = epochs.epochs[epoch].span;
    NetworkEpoch& network = records->network_epochs[rows.rows[kNetworkEpoch][i]];
    records->station_epochs[station].span.include(span);
    network.span.include(span);
    network.has_span = true;
  }
}

}  // namespace triglub
