// The epochs of one channel: what the tables tell apart. All rows of the channel are laid along the line of time; where
// one begins or ends there may be a border, and between two borders the same rows stand.
#ifndef TRIGLUB_SRC_EPOCHS_CHANNEL_SWEEP_H
#define TRIGLUB_SRC_EPOCHS_CHANNEL_SWEEP_H

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "epochs/held_row.h"
#include "epochs/places.h"
#include "epochs/row_budget.h"
#include "epochs/sensor_choice.h"
#include "epochs/stage_lists.h"
#include "epochs/station_tables.h"
#include "epochs/told.h"

namespace triglub {

// A time for which the same rows stand. kAbsent: none.
struct Epoch {
  Span span;
  std::uint32_t sitechan = kAbsent;
  std::uint32_t site = kAbsent;
  std::uint32_t sensor = kAbsent;
  std::uint32_t calibration = kAbsent;
  std::uint32_t first_stage = 0;  // in EpochList::stages
  std::uint32_t stage_count = 0;
};

struct EpochList {
  std::vector<Epoch> epochs;
  std::vector<std::uint32_t> stages;  // rows of stage, of each epoch in the order of their numbers
  ToldList told;
};

// The rows of one channel. Their memory serves channel after channel.
struct ChannelRows {
  HeldRows sitechans;
  HeldRows sites;    // of its station
  HeldRows sensors;  // key: chanid
  HeldRows calibrations;
  HeldRows stages;  // key: stageid

  void clear();
};

// Sweeps channel after channel. One thread at a time.
class ChannelSweep {
 public:
  // Both must outlive it.
  ChannelSweep(const StationTables& tables, RowBudget* budget);

  // Appends the channel's epochs, by time. *rows is used up. REQUIRES: it has a row of sitechan. Throws as RowBudget.
  void sweep(ChannelRows* rows, EpochList* list);

 private:
  // The rows that stand at an instant.
  struct Present {
    const HeldRow* sitechan = nullptr;
    const HeldRow* sensor = nullptr;
    const HeldRow* calibration = nullptr;
    Places::Place place;
  };

  void prepare();
  void drop_those_that_never_hold(HeldRows* rows, Remark never);
  void put_in_order(HeldRows* rows, Remark never);
  void prepare(HeldRows* rows, Remark never, Remark clash);
  void prepare_sensors();
  void prepare_stages();
  void find_borders();
  bool find_present(const Span& span, Present* present);
  void take(const Present& present, bool have_stages_changed, const Span& span);
  void tell(Remark remark, const Present& present);
  bool has_place(const Span& span) const;
  void tell_left_out();
  std::optional<std::int64_t> chanid_of(std::uint32_t sitechan) const;

  const StationTables& tables_;
  RowBudget& budget_;
  std::span<const std::int64_t> chanids_;  // of sitechan
  std::int64_t null_chanid_;
  std::int64_t null_sensor_chanid_;

  // Of the channel at hand.
  ChannelRows* rows_ = nullptr;
  EpochList* list_ = nullptr;
  std::size_t first_epoch_ = 0;
  std::uint32_t about_ = kAbsent;  // its first row of sitechan
  std::vector<Instant> sensor_begins_;
  std::vector<Instant> borders_;
  Walk sitechan_;
  Walk calibration_;
  SensorChoice sensor_;
  StageLists stages_;
  Places places_;
};

}  // namespace triglub

#endif
