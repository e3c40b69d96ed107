// What the making of epochs has to tell: rows by number, as there may be as many as rows. They become texts when it is
// known which of them concern the document.
#ifndef TRIGLUB_SRC_EPOCHS_TOLD_H
#define TRIGLUB_SRC_EPOCHS_TOLD_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "epochs/held_row.h"

namespace triglub {

// In the order of their texts.
enum class Remark : std::uint8_t {
  gap,                       // notes: `row` of sitechan has no sensor for a time
  gap_of_site,               // ... no place for a time
  widened,                   // `row` of sitechan reaches out of `other` of site
  left_out_no_site,          // `row` of sitechan has no place at all
  left_out_covered,          // ... other rows stand all the time
  left_out_no_station,       // ... names no station or no channel
  left_out_no_network,       // ... no snetsta row has its station
  site_without_network,      // `row` of site likewise
  outside_memberships,       // an epoch of `row` of sitechan is in no network at its time
  site_outside_memberships,  // the place of `row` of site, without channels, likewise
  never_sitechan,            // `row` ends before it begins
  never_site,
  never_sensor,
  never_calibration,
  never_stage,
  clash_sitechan,  // `row` and `other` hold at one instant
  clash_site,
  clash_sensor,
  clash_calibration,
  clash_stage,
  clash_snetsta,  // ... have one key
  clash_schanloc,
  clash_network,
  clash_instrument,
  stray_sensor,  // `row` is of no channel
  stray_calibration,
  stray_stage,
};

inline constexpr std::size_t kRemarks = static_cast<std::size_t>(Remark::stray_stage) + 1;

struct Told {
  Remark remark;
  std::uint32_t row = kAbsent;
  std::uint32_t other = kAbsent;
  std::uint32_t sitechan = kAbsent;  // the row of sitechan that it is about, if it is about one
};

using ToldList = std::vector<Told>;

}  // namespace triglub

#endif
