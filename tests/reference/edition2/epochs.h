// The epochs of a channel: the times during which the same rows of all tables stand.
//
// The plain form: all instants at which anything of the channel begins or ends cut time into pieces; of each piece
// every row is looked at; neighbours that are the same are put together.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_EPOCHS_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_EPOCHS_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "reference/edition2/held_rows.h"
#include "reference/edition2/instants.h"
#include "reference/edition2/rows.h"

namespace triglub_reference::edition2 {

// The rows that stand; null where there is none.
struct Standing {
  const Row* sitechan = nullptr;
  const Row* site = nullptr;
  const Row* sensor = nullptr;
  const Row* calibration = nullptr;
  RowList stages;  // in the order of stageid

  bool operator==(const Standing&) const = default;
};

struct Epoch {
  std::string sta;
  std::string chan;
  Span span;
  Standing rows;
};

// All rows of one channel, as it sees them.
class Channel {
 public:
  Channel(const Tables& tables, std::string sta, std::string chan);

  // In ascending order.
  std::vector<Epoch> epochs() const;
  // The instants between which nothing changes, the first before all times.
  std::vector<Instant> cuts() const;
  // Nothing when the channel has no epoch at that instant.
  std::optional<Standing> at(Instant t) const;

 private:
  std::string sta_;
  std::string chan_;
  HeldRows sitechans_;
  HeldRows sites_;
  HeldRows sensors_;
  HeldRows calibrations_;
  std::map<double, HeldRows> stages_;  // by stageid; a null one is before all
};

// Of all channels of sitechan.
std::vector<Epoch> channel_epochs(const Tables& tables);

}  // namespace triglub_reference::edition2

#endif
