// Each list of rows is walked along once, and an epoch goes on until one of the rows that stand is another.
#include "epochs/channel_sweep.h"

#include <algorithm>

#include "epochs/borders.h"

namespace triglub {

namespace {

void append_borders(const HeldRows& rows, std::vector<Instant>* borders) {
  for (const HeldRow& row : rows) {
    borders->push_back(row.span.begin);
    borders->push_back(row.span.end);
  }
}

// Whether a span is a part of the first or the last day of a row that knows days only: no more was said.
bool is_part_of_a_day(const Span& span, const Span& row) {
  if (span.begin == kPast || span.end == kFuture || span.end - span.begin > kDay) return false;
  return span.begin == row.begin || span.end == row.end;
}

std::uint32_t row_of(const HeldRow* held) { return held == nullptr ? kAbsent : held->row; }

bool are_same(const Epoch& a, const Epoch& b) {
  return a.sitechan == b.sitechan && a.site == b.site && a.sensor == b.sensor && a.calibration == b.calibration;
}

}  // namespace

void ChannelRows::clear() {
  for (HeldRows* rows : {&sitechans, &sites, &sensors, &calibrations, &stages}) rows->clear();
}

ChannelSweep::ChannelSweep(const StationTables& tables, RowBudget* budget)
    : tables_(tables),
      budget_(*budget),
      chanids_(tables.sitechan.columns().integers("chanid")),
      null_chanid_(tables.sitechan.columns().null_integer("chanid")),
      null_sensor_chanid_(tables.sensor.columns().null_integer("chanid")) {}

std::optional<std::int64_t> ChannelSweep::chanid_of(std::uint32_t sitechan) const {
  const std::int64_t id = chanids_[sitechan];
  return id == null_chanid_ ? std::nullopt : std::optional(id);
}

void ChannelSweep::drop_those_that_never_hold(HeldRows* rows, Remark never) {
  std::erase_if(*rows, [&](const HeldRow& row) {
    if (!row.span.holds_ever()) list_->told.push_back({never, row.row, kAbsent, about_});
    return !row.span.holds_ever();
  });
}

// Puts the rows in order; what never holds goes.
void ChannelSweep::put_in_order(HeldRows* rows, Remark never) {
  drop_those_that_never_hold(rows, never);
  if (!std::is_sorted(rows->begin(), rows->end())) std::sort(rows->begin(), rows->end());
}

void ChannelSweep::prepare(HeldRows* rows, Remark never, Remark clash) {
  put_in_order(rows, never);
  find_contradictions(*rows, [&](const HeldRow& earlier, const HeldRow& later) {
    list_->told.push_back({clash, earlier.row, later.row, about_});
  });
}

void ChannelSweep::prepare_sensors() {
  put_in_order(&rows_->sensors, Remark::never_sensor);
  find_sensor_contradictions(rows_->sensors, null_sensor_chanid_, [&](const HeldRow& earlier, const HeldRow& later) {
    list_->told.push_back({Remark::clash_sensor, earlier.row, later.row, about_});
  });
}

// As the others, but rows of one number only can contradict each other.
void ChannelSweep::prepare_stages() {
  HeldRows& stages = rows_->stages;
  drop_those_that_never_hold(&stages, Remark::never_stage);
  const auto by_number = [](const HeldRow& a, const HeldRow& b) { return a.key != b.key ? a.key < b.key : a < b; };
  if (!std::is_sorted(stages.begin(), stages.end(), by_number)) std::sort(stages.begin(), stages.end(), by_number);
  for (auto first = stages.begin(); first != stages.end();) {
    const auto end = std::find_if(first, stages.end(), [first](const HeldRow& row) { return row.key != first->key; });
    find_contradictions({first, end}, [&](const HeldRow& earlier, const HeldRow& later) {
      list_->told.push_back({Remark::clash_stage, earlier.row, later.row, about_});
    });
    first = end;
  }
  if (!std::is_sorted(stages.begin(), stages.end())) std::sort(stages.begin(), stages.end());
}

void ChannelSweep::prepare() {
  sensor_begins_.clear();
  for (const HeldRow& sensor : rows_->sensors) sensor_begins_.push_back(sensor.span.begin);
  std::sort(sensor_begins_.begin(), sensor_begins_.end());
  const SensorBorders borders(sensor_begins_);
  meet_at_borders(tables_.sitechan, borders, &rows_->sitechans);
  meet_at_borders(tables_.site, borders, &rows_->sites);
  prepare_sensors();
  prepare(&rows_->calibrations, Remark::never_calibration, Remark::clash_calibration);
  prepare(&rows_->sitechans, Remark::never_sitechan, Remark::clash_sitechan);
  prepare_stages();
  std::erase_if(rows_->sites, [](const HeldRow& site) { return !site.span.holds_ever(); });  // told with the station
  std::sort(rows_->sites.begin(), rows_->sites.end());
}

// Where the rows that stand may be others than before.
void ChannelSweep::find_borders() {
  borders_.clear();
  for (const HeldRows* rows : {&rows_->sitechans, &rows_->sensors, &rows_->calibrations, &rows_->stages}) {
    append_borders(*rows, &borders_);
  }
  for (const Stretch& place : places_.stretches()) {
    borders_.insert(borders_.end(), {place.span.begin, place.span.end});
  }
  std::sort(borders_.begin(), borders_.end());
  borders_.erase(std::unique(borders_.begin(), borders_.end()), borders_.end());
}

void ChannelSweep::tell(Remark remark, const Present& present) {
  const std::uint32_t row = present.sitechan->row;
  const Told told{remark, row, present.place.site, row};
  const auto is_told = [&](const Told& other) {
    return other.remark == told.remark && other.row == told.row && other.other == told.other;
  };
  if (list_->told.empty() || !is_told(list_->told.back())) list_->told.push_back(told);
}

// Whether an epoch is there for a span between two borders.
bool ChannelSweep::find_present(const Span& span, Present* present) {
  const Instant instant = span.begin;
  present->place = {};
  present->sitechan = sitechan_.at(instant);
  if (present->sitechan == nullptr) return false;
  const std::optional<std::int64_t> chanid = chanid_of(present->sitechan->row);
  present->sensor = sensor_.at(instant, chanid);
  if (present->sensor == nullptr && sensor_.any_within(present->sitechan->span, chanid)) {
    if (!is_part_of_a_day(span, present->sitechan->span)) tell(Remark::gap, *present);
    return false;
  }
  present->place = places_.at(instant, *present->sitechan, present->sensor);
  if (present->place.site == kAbsent) {
    if (!places_.ends_with_station(present->sitechan->span)) tell(Remark::gap_of_site, *present);
    return false;
  }
  if (present->place.is_widened) tell(Remark::widened, *present);
  present->calibration = calibration_.at(instant);
  return true;
}

// Goes on with the latest epoch where nothing is new, else begins one.
void ChannelSweep::take(const Present& present, bool have_stages_changed, const Span& span) {
  Epoch epoch{span, present.sitechan->row, present.place.site, row_of(present.sensor), row_of(present.calibration)};
  if (list_->epochs.size() > first_epoch_ && !have_stages_changed) {
    Epoch& latest = list_->epochs.back();
    if (latest.span.end == span.begin && are_same(latest, epoch)) {
      latest.span.end = span.end;
      return;
    }
  }
  budget_.take(stages_.present_count(), [&] { return tables_.sitechan.columns().place(present.sitechan->row); });
  epoch.first_stage = static_cast<std::uint32_t>(list_->stages.size());
  stages_.append_rows(&list_->stages);
  epoch.stage_count = static_cast<std::uint32_t>(list_->stages.size()) - epoch.first_stage;
  list_->epochs.push_back(epoch);
}

// Stretches are in the order of time, and do not overlap.
bool ChannelSweep::has_place(const Span& span) const {
  const auto& stretches = places_.stretches();
  const auto first = std::partition_point(stretches.begin(), stretches.end(),
                                          [&](const Stretch& place) { return place.span.end <= span.begin; });
  return first != stretches.end() && first->span.meets(span);
}

// Rows of sitechan that are in no epoch.
void ChannelSweep::tell_left_out() {
  std::vector<std::uint32_t> written;
  for (std::size_t i = first_epoch_; i < list_->epochs.size(); ++i) written.push_back(list_->epochs[i].sitechan);
  std::sort(written.begin(), written.end());
  for (const HeldRow& row : rows_->sitechans) {
    if (std::binary_search(written.begin(), written.end(), row.row)) continue;
    list_->told.push_back(
        {has_place(row.span) ? Remark::left_out_covered : Remark::left_out_no_site, row.row, kAbsent, row.row});
  }
}

void ChannelSweep::sweep(ChannelRows* rows, EpochList* list) {
  rows_ = rows;
  list_ = list;
  first_epoch_ = list->epochs.size();
  about_ = rows->sitechans.front().row;
  prepare();
  places_.start(rows->sites);
  sitechan_.start(rows->sitechans);
  sensor_.start(rows->sensors, null_sensor_chanid_);
  calibration_.start(rows->calibrations);
  stages_.start(rows->stages);
  find_borders();
  Present present;
  for (std::size_t i = 0; i + 1 < borders_.size(); ++i) {
    const bool have_stages_changed = stages_.move_to(borders_[i]);
    const Span span = {borders_[i], borders_[i + 1]};
    if (find_present(span, &present)) take(present, have_stages_changed, span);
  }
  tell_left_out();
}

}  // namespace triglub
