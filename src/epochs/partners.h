// The rows that belong to a channel or sensor for good, whatever the time: codes, networks, instruments.
#ifndef TRIGLUB_SRC_EPOCHS_PARTNERS_H
#define TRIGLUB_SRC_EPOCHS_PARTNERS_H

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "epochs/all_epochs.h"
#include "epochs/station_tables.h"
#include "epochs/told.h"

namespace triglub {

// A station under the code of a network.
struct PublishedStation {
  std::uint32_t snetsta = kAbsent;  // the row
  std::uint32_t network = kAbsent;  // the row
  std::uint32_t net = 0;            // the network's code, by number
  std::uint32_t code = 0;           // the station's code, by number
  std::uint32_t station = 0;        // by ChannelOrder
};

// Where several rows have one key, the one that was written later counts, then the one further down in the table.
class Partners {
 public:
  // Contradictions are added to *told. The tables must outlive it.
  Partners(const StationTables& tables, const ChannelOrder& order, ToldList* told);

  // By network code, station code and station, each in the order of texts.
  const std::vector<PublishedStation>& published() const { return published_; }
  const TextNumbers& nets() const { return nets_; }
  std::uint32_t snetsta_rows() const { return tables_.snetsta.row_count(); }
  // Rows of network that count, in the order of their codes, with the numbers of those.
  const std::vector<std::pair<std::uint32_t, std::uint32_t>>& networks() const { return networks_; }
  // kAbsent where there is none.
  std::uint32_t instrument_of(std::uint32_t sensor) const;

 private:
  void find_networks(ToldList* told);
  void find_published(const ChannelOrder& order, ToldList* told);
  void find_instruments(ToldList* told);

  const StationTables& tables_;
  TextNumbers nets_;   // of snetsta and network
  TextNumbers codes_;  // of stations, as they are published
  std::vector<std::pair<std::uint32_t, std::uint32_t>> networks_;
  std::vector<PublishedStation> published_;
  std::unordered_map<std::int64_t, std::uint32_t> instruments_;
  std::span<const std::int64_t> instrument_ids_;  // of sensor
};

// The row of schanloc of each channel that is asked for.
class ChannelCodes {
 public:
  ChannelCodes(const StationTables& tables, const ChannelOrder& order);
  // kAbsent where there is none. REQUIRES: keys are asked for in ascending order.
  std::uint32_t row_of(ChannelKey key, ToldList* told);

 private:
  const LoadedTable& table_;
  KeyedRows rows_;
  KeyCursor cursor_;
  ChannelKey key_ = kNoChannel;
  std::uint32_t row_ = kAbsent;
};

}  // namespace triglub

#endif
