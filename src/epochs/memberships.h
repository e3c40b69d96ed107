// The networks of stations that have no row of snetsta: those that affiliation has them in.
#ifndef TRIGLUB_SRC_EPOCHS_MEMBERSHIPS_H
#define TRIGLUB_SRC_EPOCHS_MEMBERSHIPS_H

#include <cstdint>
#include <vector>

#include "epochs/all_epochs.h"
#include "epochs/instant.h"
#include "epochs/station_tables.h"

namespace triglub {

// When stations belong to networks. Does not change.
class Memberships {
 public:
  // Adds a row to tables->snetsta for each network of each station, of sitechan or site, that has no row there. Throws
  // FatalFailure where affiliation is needed and refuses to load.
  Memberships(Dbptr db, StationTables* tables, const ChannelOrder& order);

  // Whether any row of snetsta counts for a part of the time only.
  bool are_limited() const { return are_limited_; }
  // Whether a row of snetsta counts at some instant of a span. Rows of the database always do.
  bool hold(std::uint32_t snetsta, const Span& span) const;

 private:
  void add(std::vector<Span>* spans);

  std::uint32_t first_added_;  // the row of snetsta
  bool are_limited_ = false;
  std::vector<Span> spans_;
  std::vector<std::size_t> first_span_;  // by added row, and one entry more
};

}  // namespace triglub

#endif
