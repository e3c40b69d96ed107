// The places of stations: the rows of site, with the time for which a station as a whole was there.
#ifndef TRIGLUB_SRC_EPOCHS_STATION_PLACES_H
#define TRIGLUB_SRC_EPOCHS_STATION_PLACES_H

#include <cstdint>
#include <span>
#include <vector>

#include "epochs/all_epochs.h"
#include "epochs/row_budget.h"
#include "epochs/station_tables.h"
#include "epochs/told.h"

namespace triglub {

struct StationPlace {
  std::uint32_t site = kAbsent;  // the row
  Span span;                     // two that meet on a day meet at the earliest border of the station's channels
  bool stands = false;           // at some instant
  std::uint32_t channels = 0;    // distinct ones that have an epoch there
};

class StationPlaces {
 public:
  // Contradictions are added to *told. The other arguments must outlive it. Throws as RowBudget.
  StationPlaces(const StationTables& tables, const ChannelOrder& order, ToldList* told);

  // Counts the channels of the places, and files epochs, which must stay.
  void take(const EpochList& epochs);
  bool any_stands(std::uint32_t station) const;
  // Whether nothing but its epochs tells if a station has any: it has rows, of which none stands for it as a whole.
  bool need_epochs_of(std::uint32_t station) const { return !of(station).empty() && !any_stands(station); }

  // Those of a station.
  std::span<const StationPlace> of(std::uint32_t station) const;
  // The epochs of a station's channels, by channel and time.
  std::span<const Epoch> epochs_of(std::uint32_t station) const;
  // The place that a row of site is. REQUIRES: it has a station.
  const StationPlace& of_site(std::uint32_t site) const;

 private:
  void find_places(std::uint32_t station, KeyCursor* sites, ToldList* told);
  void meet(std::uint32_t station, HeldRows* rows);
  void find_epochs();
  void count_channels();

  const StationTables& tables_;
  const ChannelOrder& order_;
  const EpochList* epochs_ = nullptr;
  std::vector<StationPlace> places_;
  std::vector<std::uint32_t> first_place_;  // by station, and one entry more
  std::vector<std::uint32_t> first_epoch_;  // likewise
  std::vector<std::uint32_t> place_of_site_;
  RowBudget budget_;
};

}  // namespace triglub

#endif
