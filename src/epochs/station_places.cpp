// Borders are looked for only where rows of a station meet.
#include "epochs/station_places.h"

#include <algorithm>
#include <map>

#include "epochs/borders.h"

namespace triglub {

namespace {

// The earliest border of several channels.
class EarliestBorders final : public DayBorders {
 public:
  void include(Instant day, Instant border) {
    const auto known = borders_.try_emplace(day, border).first;
    known->second = std::min(known->second, border);
  }
  Instant border(Instant day) const override {
    const auto known = borders_.find(day);
    return known == borders_.end() ? day : known->second;
  }

 private:
  std::map<Instant, Instant> borders_;
};

}  // namespace

StationPlaces::StationPlaces(const StationTables& tables, const ChannelOrder& order, ToldList* told)
    : tables_(tables), order_(order), place_of_site_(tables.site.row_count(), kAbsent) {
  KeyCursor sites(order.site, 0);
  for (std::uint32_t station = 0; station < order.stations.size(); ++station) {
    first_place_.push_back(static_cast<std::uint32_t>(places_.size()));
    find_places(station, &sites, told);
  }
  first_place_.push_back(static_cast<std::uint32_t>(places_.size()));
}

void StationPlaces::take(const EpochList& epochs) {
  epochs_ = &epochs;
  find_epochs();
  count_channels();
}

bool StationPlaces::any_stands(std::uint32_t station) const {
  const std::span<const StationPlace> places = of(station);
  return std::any_of(places.begin(), places.end(), [](const StationPlace& place) { return place.stands; });
}

// Cuts rows that meet on a day at the earliest border of the station's channels there are on that day: one that began
// later or ended before says nothing of when people moved.
void StationPlaces::meet(std::uint32_t station, HeldRows* rows) {
  const std::vector<Instant> days = meeting_days(tables_.site, *rows);
  if (days.empty()) return;
  EarliestBorders earliest;
  KeyCursor sensors(order_.sensor, first_key_of(station));
  std::vector<Instant> begins;
  ChannelKey latest = kNoChannel;
  for (std::uint32_t place = order_.sitechan.find(first_key_of(station)); place < order_.sitechan.size(); ++place) {
    const ChannelKey key = order_.sitechan.key(place);
    if (station_of(key) != station) break;
    if (key != latest) {
      latest = key;
      begins.clear();
      sensors.visit(key, [&](std::uint32_t row) { begins.push_back(tables_.sensor.held(row).span.begin); });
      std::sort(begins.begin(), begins.end());
    }
    const Span span = tables_.sitechan.held(order_.sitechan.row(place)).span;
    const auto first = std::upper_bound(days.begin(), days.end(), span.begin,
                                        [](Instant begin, Instant day) { return begin < day + kDay; });
    const auto end = std::lower_bound(first, days.end(), span.end);
    budget_.take(static_cast<std::uint64_t>(end - first),
                 [&] { return tables_.sitechan.columns().place(order_.sitechan.row(place)); });
    for (auto day = first; day != end; ++day) earliest.include(*day, SensorBorders(begins).border(*day));
  }
  meet_at_borders(tables_.site, earliest, rows);
}

void StationPlaces::find_places(std::uint32_t station, KeyCursor* sites, ToldList* told) {
  HeldRows rows;
  sites->visit(first_key_of(station), [&](std::uint32_t row) { rows.push_back(tables_.site.held(row)); });
  if (rows.size() > 1) meet(station, &rows);
  for (const HeldRow& row : rows) {
    place_of_site_[row.row] = static_cast<std::uint32_t>(places_.size());
    places_.push_back({row.row, row.span});
    if (!row.span.holds_ever()) told->push_back({Remark::never_site, row.row});
  }
  std::erase_if(rows, [](const HeldRow& row) { return !row.span.holds_ever(); });
  std::sort(rows.begin(), rows.end());
  find_contradictions(rows, [&](const HeldRow& earlier, const HeldRow& later) {
    told->push_back({Remark::clash_site, earlier.row, later.row});
  });
  std::vector<Stretch> stretches;
  if (!rows.empty()) find_stretches(rows, &stretches);
  for (const Stretch& stretch : stretches) places_[place_of_site_[stretch.row]].stands = true;
}

void StationPlaces::find_epochs() {
  first_epoch_.assign(order_.stations.size() + 1, 0);
  for (const Epoch& epoch : epochs_->epochs) {
    ++first_epoch_[station_of(order_.sitechan.key_of_row(epoch.sitechan)) + 1];
  }
  for (std::size_t i = 1; i < first_epoch_.size(); ++i) first_epoch_[i] += first_epoch_[i - 1];
}

void StationPlaces::count_channels() {
  std::vector<ChannelKey> latest(places_.size(), kNoChannel);
  for (const Epoch& epoch : epochs_->epochs) {
    const std::uint32_t place = place_of_site_[epoch.site];
    const ChannelKey key = order_.sitechan.key_of_row(epoch.sitechan);
    if (latest[place] == key) continue;
    latest[place] = key;
    ++places_[place].channels;
  }
}

std::span<const StationPlace> StationPlaces::of(std::uint32_t station) const {
  return std::span(places_).subspan(first_place_[station], first_place_[station + 1] - first_place_[station]);
}

std::span<const Epoch> StationPlaces::epochs_of(std::uint32_t station) const {
  return std::span(epochs_->epochs).subspan(first_epoch_[station], first_epoch_[station + 1] - first_epoch_[station]);
}

const StationPlace& StationPlaces::of_site(std::uint32_t site) const { return places_[place_of_site_[site]]; }

}  // namespace triglub
