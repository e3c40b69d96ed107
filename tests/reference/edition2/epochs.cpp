#include "reference/edition2/epochs.h"

#include <algorithm>
#include <set>
#include <utility>

namespace triglub_reference::edition2 {

namespace {

const Row* row_of(const Held* held) { return held == nullptr ? nullptr : held->row; }

bool overlap(const Span& a, const Span& b) { return a.begin < b.end && b.begin < a.end; }

// A sensor that names another channel row is not this one's.
HeldRows own_sensors(const HeldRows& sensors, const Row* sitechan) {
  const auto chanid = number_in(sitechan, SITECHAN, "chanid");
  HeldRows own;
  for (const Held& sensor : sensors) {
    const auto named = number_in(sensor.row, SENSOR, "chanid");
    if (!chanid || !named || *chanid == *named) own.push_back(sensor);
  }
  return own;
}

// The time around an instant at which no row holds during which none does.
Span vacancy(const HeldRows& rows, Instant t) {
  Span vacant;
  for (const Held& held : rows) {
    if (held.span.end <= t) vacant.begin = std::max(vacant.begin, held.span.end);
    if (held.span.begin > t) vacant.end = std::min(vacant.end, held.span.begin);
  }
  return vacant;
}

// The place to which a span belongs that reaches from a place into a vacancy: the one before where the span ends in the
// vacancy, the one behind where it begins there.
const Row* place_beside(const HeldRows& sites, const Span& vacant, const Span& span) {
  constexpr Instant shortest_time = 1;
  const bool is_tail = span.begin < vacant.begin && span.end < kForever && span.end <= vacant.end;
  if (is_tail) return row_of(standing(sites, SITE, vacant.begin - shortest_time));
  const bool is_head = span.end > vacant.end && span.begin > -kForever && span.begin >= vacant.begin;
  return is_head ? row_of(standing(sites, SITE, vacant.end)) : nullptr;
}

const Row* place_at(const HeldRows& sites, Instant t, const Held* sitechan, const Held* sensor) {
  if (const Held* site = standing(sites, SITE, t)) return site->row;
  const Span vacant = vacancy(sites, t);
  for (const Held* held : {sitechan, sensor}) {
    if (held == nullptr) continue;
    if (const Row* place = place_beside(sites, vacant, held->span)) return place;
  }
  return nullptr;
}

void add_cuts(const HeldRows& rows, std::set<Instant>& cuts) {
  for (const Held& held : rows) cuts.insert({held.span.begin, held.span.end});
}

void add_epoch(Epoch epoch, std::vector<Epoch>& epochs) {
  const bool goes_on =
      !epochs.empty() && epochs.back().span.end == epoch.span.begin && epochs.back().rows == epoch.rows;
  if (goes_on) {
    epochs.back().span.end = epoch.span.end;
  } else {
    epochs.push_back(std::move(epoch));
  }
}

}  // namespace

Channel::Channel(const Tables& tables, std::string sta, std::string chan)
    : sta_(std::move(sta)), chan_(std::move(chan)) {
  const Key key = {{"sta", sta_}, {"chan", chan_}};
  const RowList sensors = rows_with(tables, SENSOR, key);
  const Border border = border_of_sensors(sensors);
  sitechans_ = held_by_days(rows_with(tables, SITECHAN, key), SITECHAN, border);
  sites_ = held_by_days(rows_with(tables, SITE, {{"sta", sta_}}), SITE, border);
  sensors_ = held_by_instants(sensors, SENSOR);
  calibrations_ = held_by_instants(rows_with(tables, CALIBRATION, key), CALIBRATION);
  for (const Held& stage : held_by_instants(rows_with(tables, STAGE, key), STAGE)) {
    stages_[number_in(stage.row, STAGE, "stageid").value_or(-kForever)].push_back(stage);
  }
}

std::vector<Instant> Channel::cuts() const {
  std::set<Instant> cuts = {-kForever};
  for (const HeldRows* rows : {&sitechans_, &sites_, &sensors_, &calibrations_}) add_cuts(*rows, cuts);
  for (const auto& [stageid, rows] : stages_) add_cuts(rows, cuts);
  cuts.erase(kForever);
  return {cuts.begin(), cuts.end()};
}

std::optional<Standing> Channel::at(Instant t) const {
  const Held* sitechan = standing(sitechans_, SITECHAN, t);
  if (sitechan == nullptr) return std::nullopt;
  const HeldRows sensors = own_sensors(sensors_, sitechan->row);
  const Held* sensor = standing(sensors, SENSOR, t);
  const auto is_of_span = [&](const Held& held) { return overlap(held.span, sitechan->span); };
  if (sensor == nullptr && std::any_of(sensors.begin(), sensors.end(), is_of_span)) return std::nullopt;
  const Row* place = place_at(sites_, t, sitechan, sensor);
  if (place == nullptr) return std::nullopt;
  Standing rows = {sitechan->row, place, row_of(sensor), row_of(standing(calibrations_, CALIBRATION, t)), {}};
  for (const auto& [stageid, stages] : stages_) {
    if (const Held* stage = standing(stages, STAGE, t)) rows.stages.push_back(stage->row);
  }
  return rows;
}

std::vector<Epoch> Channel::epochs() const {
  std::vector<Epoch> epochs;
  const std::vector<Instant> all = cuts();
  for (std::size_t i = 0; i < all.size(); ++i) {
    const auto rows = at(all[i]);
    const Instant end = i + 1 < all.size() ? all[i + 1] : kForever;
    if (rows) add_epoch({sta_, chan_, {all[i], end}, *rows}, epochs);
  }
  return epochs;
}

std::vector<Epoch> channel_epochs(const Tables& tables) {
  std::set<std::pair<std::string, std::string>> channels;
  for (const Row& row : rows_of(tables, SITECHAN)) {
    const auto sta = text_in(&row, SITECHAN, "sta");
    const auto chan = text_in(&row, SITECHAN, "chan");
    if (sta && chan) channels.emplace(*sta, *chan);
  }
  std::vector<Epoch> epochs;
  for (const auto& [sta, chan] : channels) {
    for (const Epoch& epoch : Channel(tables, sta, chan).epochs()) epochs.push_back(epoch);
  }
  return epochs;
}

}  // namespace triglub_reference::edition2
