// Keys are compared as numbers; the texts were compared once.
#include "epochs/partners.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace triglub {

namespace {

// The one of two rows of one key that counts; the other is told.
std::uint32_t later_of(const LoadedTable& table, std::uint32_t a, std::uint32_t b, Remark clash, ToldList* told) {
  if (a == kAbsent) return b;
  told->push_back({clash, std::min(a, b), std::max(a, b)});
  const bool is_b_later = std::pair(table.load_date(b), b) > std::pair(table.load_date(a), a);
  return is_b_later ? b : a;
}

TextNumbers numbers_of_nets(const StationTables& tables) {
  const TextColumn published = tables.snetsta.columns().texts("snet");
  const TextColumn known = tables.network.columns().texts("net");
  return TextNumbers({&published, &known});
}

TextNumbers numbers_of(const TextColumn& column) { return TextNumbers({&column}); }

auto key_of(const PublishedStation& station) { return std::tuple(station.net, station.code, station.station); }

}  // namespace

Partners::Partners(const StationTables& tables, const ChannelOrder& order, ToldList* told)
    : tables_(tables),
      nets_(numbers_of_nets(tables)),
      codes_(numbers_of(tables.snetsta.columns().texts("fsta"))),
      instrument_ids_(tables.sensor.columns().integers("inid")) {
  find_networks(told);
  find_published(order, told);
  find_instruments(told);
}

void Partners::find_networks(ToldList* told) {
  const TextColumn codes = tables_.network.columns().texts("net");
  const std::vector<std::uint32_t> numbers = nets_.by_code(codes);
  std::vector<std::uint32_t> rows(nets_.size(), kAbsent);
  for (std::uint32_t row = 0; row < tables_.network.row_count(); ++row) {
    const std::uint32_t net = numbers[codes.codes()[row]];
    if (net != TextNumbers::kNone) rows[net] = later_of(tables_.network, rows[net], row, Remark::clash_network, told);
  }
  for (std::uint32_t net = 0; net < rows.size(); ++net) {
    if (rows[net] != kAbsent) networks_.emplace_back(rows[net], net);
  }
}

void Partners::find_published(const ChannelOrder& order, ToldList* told) {
  const TextColumn nets = tables_.snetsta.columns().texts("snet");
  const TextColumn codes = tables_.snetsta.columns().texts("fsta");
  const TextColumn stations = tables_.snetsta.columns().texts("sta");
  const std::vector<std::uint32_t> net_numbers = nets_.by_code(nets);
  const std::vector<std::uint32_t> code_numbers = codes_.by_code(codes);
  const std::vector<std::uint32_t> station_numbers = order.stations.by_code(stations);
  std::vector<std::uint32_t> network_of_net(nets_.size(), kAbsent);
  for (const auto& [row, net] : networks_) network_of_net[net] = row;
  std::vector<PublishedStation> all;
  for (std::uint32_t row = 0; row < tables_.snetsta.row_count(); ++row) {
    const std::uint32_t net = net_numbers[nets.codes()[row]];
    const std::uint32_t code = code_numbers[codes.codes()[row]];
    const std::uint32_t station = station_numbers[stations.codes()[row]];
    if (net == TextNumbers::kNone || code == TextNumbers::kNone || station == TextNumbers::kNone) continue;
    all.push_back({row, network_of_net[net], net, code, station});
  }
  std::stable_sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return key_of(a) < key_of(b); });
  for (const PublishedStation& station : all) {
    if (published_.empty() || key_of(published_.back()) != key_of(station)) {
      published_.push_back(station);
    } else {
      std::uint32_t& row = published_.back().snetsta;
      row = later_of(tables_.snetsta, row, station.snetsta, Remark::clash_snetsta, told);
    }
  }
}

void Partners::find_instruments(ToldList* told) {
  const std::span<const std::int64_t> ids = tables_.instrument.columns().integers("inid");
  const std::int64_t null = tables_.instrument.columns().null_integer("inid");
  instruments_.reserve(ids.size());
  for (std::uint32_t row = 0; row < ids.size(); ++row) {
    if (ids[row] == null) continue;
    std::uint32_t& known = instruments_.try_emplace(ids[row], kAbsent).first->second;
    known = later_of(tables_.instrument, known, row, Remark::clash_instrument, told);
  }
}

std::uint32_t Partners::instrument_of(std::uint32_t sensor) const {
  if (sensor == kAbsent) return kAbsent;
  const auto found = instruments_.find(instrument_ids_[sensor]);
  return found == instruments_.end() ? kAbsent : found->second;
}

ChannelCodes::ChannelCodes(const StationTables& tables, const ChannelOrder& order)
    : table_(tables.schanloc),
      rows_(tables.schanloc.row_count(), RowKeys(tables.schanloc.columns(), order.stations, order.channels)),
      cursor_(rows_, 0) {}

std::uint32_t ChannelCodes::row_of(ChannelKey key, ToldList* told) {
  if (key == key_) return row_;
  key_ = key;
  row_ = kAbsent;
  cursor_.visit(key, [&](std::uint32_t row) { row_ = later_of(table_, row_, row, Remark::clash_schanloc, told); });
  return row_;
}

}  // namespace triglub
