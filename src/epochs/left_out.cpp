// A row that is in no record has no code of a network to be chosen by, unless it is given one for the question.
#include "epochs/left_out.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "epochs/choice.h"
#include "epochs/remarks.h"
#include "platform/columns.h"

namespace triglub {

namespace {

// visit(place, key) for the rows of the stations of `data`, and those that are of none.
template <typename Visit>
void visit_rows(const StationData& data, const KeyedRows& rows, const Visit& visit) {
  for (std::uint32_t place = 0; place < rows.size(); ++place) {
    const ChannelKey key = rows.key(place);
    if (key == kNoChannel || data.stations.has(station_of(key))) {
      visit(place, key);
    } else {
      place = rows.find_from(place, first_key_of(station_of(key) + 1)) - 1;
    }
  }
}

void note_strays(const StationData& data, const KeyedRows& rows, Remark remark, ToldList* told) {
  KeyCursor channels(data.order.sitechan, 0);
  ChannelKey latest = kNoChannel;
  bool is_known = false;
  visit_rows(data, rows, [&](std::uint32_t place, ChannelKey key) {
    if (key != latest) {
      latest = key;
      is_known = false;
      channels.visit(key, [&](std::uint32_t) { is_known = key != kNoChannel; });
    }
    if (!is_known) told->push_back({remark, rows.row(place)});
  });
}

void note_unpublished(StationData* data) {
  std::vector<bool> is_published(data->order.stations.size(), false);
  for (const PublishedStation& station : data->partners.published()) is_published[station.station] = true;
  const auto note = [&](const KeyedRows& rows, bool are_channels) {
    visit_rows(*data, rows, [&](std::uint32_t place, ChannelKey key) {
      const std::uint32_t row = rows.row(place);
      if (key == kNoChannel) {
        if (are_channels) data->told.push_back({Remark::left_out_no_station, row, kAbsent, row});
      } else if (!is_published[station_of(key)]) {
        data->told.push_back(are_channels ? Told{Remark::left_out_no_network, row, kAbsent, row}
                                          : Told{Remark::site_without_network, row});
      }
    });
  };
  note(data->order.sitechan, true);
  note(data->order.site, false);
}

// What the records are about.
struct Chosen {
  std::unordered_set<ChannelKey> channels;
  std::unordered_set<std::uint32_t> nameless;  // rows of sitechan without a station or channel
  std::vector<bool> stations;

  Chosen(const StationData& data, const RecordRows& rows) : stations(data.order.stations.size(), false) {
    add(data, rows);
  }

  void add(const StationData& data, const RecordRows& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (i > 0 && rows.rows[kSitechan][i] == rows.rows[kSitechan][i - 1] &&
          rows.rows[kSite][i] == rows.rows[kSite][i - 1]) {
        continue;
      }
      if (rows.rows[kSitechan][i] != kAbsent) add_channel(data, rows.rows[kSitechan][i]);
      if (rows.rows[kSite][i] != kAbsent) stations[station_of(data.order.site.key_of_row(rows.rows[kSite][i]))] = true;
    }
  }

  void add_channel(const StationData& data, std::uint32_t sitechan) {
    const ChannelKey key = data.order.sitechan.key_of_row(sitechan);
    if (key == kNoChannel) {
      nameless.insert(sitechan);
      return;
    }
    channels.insert(key);
    stations[station_of(key)] = true;
  }

  bool has_channel_of(const StationData& data, std::uint32_t sitechan) const {
    const ChannelKey key = data.order.sitechan.key_of_row(sitechan);
    return key == kNoChannel ? nameless.contains(sitechan) : channels.contains(key);
  }
};

// The codes of each station, in the order of networks.
std::vector<std::vector<const PublishedStation*>> codes_by_station(const StationData& data) {
  std::vector<std::vector<const PublishedStation*>> codes(data.order.stations.size());
  for (const PublishedStation& station : data.partners.published()) codes[station.station].push_back(&station);
  return codes;
}

// The rows of sitechan that are told of, by station and channel.
std::vector<std::pair<ChannelKey, std::uint32_t>> channels_told_of(const StationData& data) {
  std::vector<std::pair<ChannelKey, std::uint32_t>> channels;
  for (const Told& told : data.told) {
    if (told.sitechan != kAbsent) channels.emplace_back(data.order.sitechan.key_of_row(told.sitechan), told.sitechan);
  }
  std::sort(channels.begin(), channels.end());
  channels.erase(std::unique(channels.begin(), channels.end()), channels.end());
  return channels;
}

void add(const std::array<std::uint32_t, kRecordTables>& record, RecordRows* rows) {
  for (std::size_t t = 0; t < record.size(); ++t) rows->rows[t].push_back(record[t]);
}

// Records of those rows, with no more than the codes.
RecordRows records_of_told(const StationData& data) {
  RecordRows rows;
  const auto stations = codes_by_station(data);
  ChannelCodes codes(data.tables, data.order);
  ToldList told_already;
  std::array<std::uint32_t, kRecordTables> record{};
  for (const auto& [key, sitechan] : channels_told_of(data)) {
    record.fill(kAbsent);
    record[kSitechan] = sitechan;
    if (key != kNoChannel) record[kSchanloc] = codes.row_of(key, &told_already);
    add(record, &rows);
    if (key == kNoChannel) continue;
    for (const PublishedStation* station : stations[station_of(key)]) {
      record[kSnetsta] = station->snetsta;
      record[kNetwork] = station->network;
      add(record, &rows);
    }
  }
  return rows;
}

const TableColumns& columns_of(const StationData& data, RecordTable table) {
  return table_of(data.tables, table).columns();
}

std::string place_of(const StationData& data, const Told& told) {
  const RemarkText& text = text_of(told.remark);
  std::string place = columns_of(data, text.table).place(told.row);
  if (told.other != kAbsent) place += " and " + columns_of(data, text.other).place(told.other);
  return place;
}

bool is_about(const StationData& data, const Told& told, const Chosen& chosen) {
  if (told.sitechan != kAbsent) return chosen.has_channel_of(data, told.sitechan);
  const RecordTable table = text_of(told.remark).table;
  if (table == kNetwork || table == kInstrument) return true;
  const TextColumn stations = columns_of(data, table).texts("sta");
  const std::uint32_t station = data.order.stations.find(stations.text(told.row));
  return station != TextNumbers::kNone && chosen.stations[station];
}

void tell(const StationData& data, const Told& told, Findings* findings) {
  findings->add(text_of(told.remark).rank, text_of(told.remark).text, place_of(data, told));
}

// What is at a time in none of the networks that its station is in at others.
void note_outside_memberships(StationData* data) {
  if (!data->memberships.are_limited()) return;
  const auto codes = codes_by_station(*data);
  for (std::uint32_t station = 0; station < codes.size(); ++station) {
    if (codes[station].empty() || !data->stations.has(station)) continue;
    const auto is_outside = [&](const Span& span) {
      return std::none_of(codes[station].begin(), codes[station].end(), [&](const PublishedStation* published) {
        return data->memberships.hold(published->snetsta, span);
      });
    };
    for (const StationPlace& place : data->places.of(station)) {
      if (!place.stands || place.channels > 0 || !is_outside(place.span)) continue;
      data->told.push_back({Remark::site_outside_memberships, place.site});
    }
    for (const Epoch& epoch : data->places.epochs_of(station)) {
      if (!is_outside(epoch.span)) continue;
      data->told.push_back({Remark::outside_memberships, epoch.sitechan, kAbsent, epoch.sitechan});
    }
  }
}

}  // namespace

void note_left_out(StationData* data) {
  note_outside_memberships(data);
  note_unpublished(data);
  note_strays(*data, data->order.sensor, Remark::stray_sensor, &data->told);
  note_strays(*data, data->order.calibration, Remark::stray_calibration, &data->told);
  note_strays(*data, data->order.stage, Remark::stray_stage, &data->told);
}

void tell(const StationData& data, const Conditions& conditions, const RecordRows& chosen, Findings* findings) {
  if (conditions.is_empty()) {
    for (const Told& told : data.told) tell(data, told, findings);
    return;
  }
  if (data.told.empty()) return;
  Chosen about(data, chosen);
  about.add(data, chosen_records(data, conditions, records_of_told(data)));
  for (const Told& told : data.told) {
    if (is_about(data, told, about)) tell(data, told, findings);
  }
}

}  // namespace triglub
