// Channels have nothing to do with each other: each thread takes an equal part of the rows of sitechan, from the first
// channel that begins there to the last.
#include "epochs/all_epochs.h"

#include <iterator>
#include <utility>
#include <vector>

#include "base/threads.h"
#include "epochs/station_choice.h"

namespace triglub {

namespace {

// Gathers the rows of channel after channel, in ascending order of their keys.
class ChannelReader {
 public:
  ChannelReader(const StationTables& tables, const ChannelOrder& order, ChannelKey first)
      : tables_(tables),
        chanids_(tables.sensor.columns().integers("chanid")),
        stage_numbers_(tables.stage.columns().integers("stageid")),
        sitechan_(order.sitechan, first),
        site_(order.site, first_key_of(station_of(first))),
        sensor_(order.sensor, first),
        calibration_(order.calibration, first),
        stage_(order.stage, first) {}

  void read(ChannelKey key, ChannelRows* rows) {
    rows->clear();
    read_sites(station_of(key));
    rows->sites = sites_;
    sitechan_.visit(key, [&](std::uint32_t row) { rows->sitechans.push_back(tables_.sitechan.held(row)); });
    sensor_.visit(key, [&](std::uint32_t row) {
      rows->sensors.push_back(tables_.sensor.held(row));
      rows->sensors.back().key = chanids_[row];
    });
    calibration_.visit(key, [&](std::uint32_t row) { rows->calibrations.push_back(tables_.calibration.held(row)); });
    stage_.visit(key, [&](std::uint32_t row) {
      rows->stages.push_back(tables_.stage.held(row));
      rows->stages.back().key = stage_numbers_[row];
    });
  }

 private:
  void read_sites(std::uint32_t station) {
    if (station == station_) return;
    station_ = station;
    sites_.clear();
    site_.visit(first_key_of(station), [&](std::uint32_t row) { sites_.push_back(tables_.site.held(row)); });
  }

  const StationTables& tables_;
  std::span<const std::int64_t> chanids_;
  std::span<const std::int64_t> stage_numbers_;
  KeyCursor sitechan_;
  KeyCursor site_;
  KeyCursor sensor_;
  KeyCursor calibration_;
  KeyCursor stage_;
  std::uint32_t station_ = TextNumbers::kNone;
  HeldRows sites_;  // of station_
};

// The channels that begin at these places of sitechan.
void sweep_part(const StationTables& tables, const ChannelOrder& order, const StationSet& stations, std::uint32_t begin,
                std::uint32_t end, RowBudget* budget, EpochList* list) {
  const auto begins = [&](std::uint32_t place) {
    return place == 0 || order.sitechan.key(place - 1) != order.sitechan.key(place);
  };
  while (begin < end && !begins(begin)) ++begin;
  if (begin == end) return;
  ChannelReader reader(tables, order, order.sitechan.key(begin));
  ChannelSweep sweep(tables, budget);
  ChannelRows rows;
  for (std::uint32_t place = begin; place < end && order.sitechan.key(place) != kNoChannel; ++place) {
    if (!begins(place) || !stations.has(station_of(order.sitechan.key(place)))) continue;
    reader.read(order.sitechan.key(place), &rows);
    // The rows of a station are looked at once more with each of its channels.
    budget->take(rows.sites.size(), [&] { return tables.sitechan.columns().place(order.sitechan.row(place)); });
    sweep.sweep(&rows, list);
  }
}

void append(EpochList&& part, EpochList* all) {
  const auto stages_before = static_cast<std::uint32_t>(all->stages.size());
  for (Epoch& epoch : part.epochs) epoch.first_stage += stages_before;
  all->epochs.insert(all->epochs.end(), part.epochs.begin(), part.epochs.end());
  all->stages.insert(all->stages.end(), part.stages.begin(), part.stages.end());
  all->told.insert(all->told.end(), part.told.begin(), part.told.end());
}

}  // namespace

ChannelOrder::ChannelOrder(const StationTables& tables)
    : stations([&] {
        const TextColumn of_channels = tables.sitechan.columns().texts("sta");
        const TextColumn of_sites = tables.site.columns().texts("sta");
        return TextNumbers({&of_channels, &of_sites});
      }()),
      channels([&] {
        const TextColumn column = tables.sitechan.columns().texts("chan");
        return TextNumbers({&column});
      }()),
      sitechan(tables.sitechan.row_count(), RowKeys(tables.sitechan.columns(), stations, channels)),
      site(tables.site.row_count(), RowKeys(tables.site.columns(), stations)),
      sensor(tables.sensor.row_count(), RowKeys(tables.sensor.columns(), stations, channels)),
      calibration(tables.calibration.row_count(), RowKeys(tables.calibration.columns(), stations, channels)),
      stage(tables.stage.row_count(), RowKeys(tables.stage.columns(), stations, channels)) {}

EpochList find_epochs(const StationTables& tables, const ChannelOrder& order, const StationSet& stations) {
  const Chunks chunks(0, order.sitechan.size());
  RowBudget budget;
  std::vector<EpochList> parts(chunks.size());
  run_side_by_side(chunks.size(), [&](std::size_t i) {
    sweep_part(tables, order, stations, chunks.begin(i), chunks.end(i), &budget, &parts[i]);
  });
  EpochList all = std::move(parts.front());
  for (std::size_t i = 1; i < parts.size(); ++i) append(std::move(parts[i]), &all);
  return all;
}

}  // namespace triglub
