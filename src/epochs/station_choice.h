// Which stations can have records that are wanted: most conversions with conditions are of few stations, and the others
// need not be looked at.
#ifndef TRIGLUB_SRC_EPOCHS_STATION_CHOICE_H
#define TRIGLUB_SRC_EPOCHS_STATION_CHOICE_H

#include <cstdint>
#include <vector>

#include "epochs/all_epochs.h"
#include "epochs/conditions.h"
#include "epochs/partners.h"
#include "epochs/station_tables.h"

namespace triglub {

// A set of stations, by number.
class StationSet {
 public:
  // All of them.
  StationSet() = default;
  explicit StationSet(std::vector<bool> is_in) : are_all_(false), is_in_(std::move(is_in)) {}

  bool has(std::uint32_t station) const { return are_all_ || is_in_[station]; }
  bool are_all() const { return are_all_; }
  void keep_those_of(const StationSet& other);
  // REQUIRES: not all are in it.
  void add(std::uint32_t station) { is_in_[station] = true; }

 private:
  bool are_all_ = true;
  std::vector<bool> is_in_;
};

// The stations that no condition on their codes, their places or their channels' rows rules out.
StationSet possible_stations(Dbptr db, const StationTables& tables, const ChannelOrder& order, const Partners& partners,
                             const Conditions& conditions);

}  // namespace triglub

#endif
