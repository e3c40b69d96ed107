// The epochs of all channels of a database.
#ifndef TRIGLUB_SRC_EPOCHS_ALL_EPOCHS_H
#define TRIGLUB_SRC_EPOCHS_ALL_EPOCHS_H

#include "epochs/channel_sweep.h"
#include "epochs/keyed_rows.h"
#include "epochs/station_tables.h"

namespace triglub {

// The rows of each table in an order that all share: by station, then by channel.
struct ChannelOrder {
  explicit ChannelOrder(const StationTables& tables);

  TextNumbers stations;  // of sitechan and site
  TextNumbers channels;  // of sitechan
  KeyedRows sitechan;
  KeyedRows site;  // by station
  KeyedRows sensor;
  KeyedRows calibration;
  KeyedRows stage;
};

inline std::uint32_t station_of(ChannelKey key) { return static_cast<std::uint32_t>(key >> 32); }
inline ChannelKey first_key_of(std::uint32_t station) { return ChannelKey{station} << 32; }

class StationSet;

// Those of the stations, by station, channel and time. Worked out by as many threads as set_threads allows; the same
// for any number.
EpochList find_epochs(const StationTables& tables, const ChannelOrder& order, const StationSet& stations);

}  // namespace triglub

#endif
