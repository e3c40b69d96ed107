// Where rows meet that hold for days: the first instant of the later one.
#ifndef TRIGLUB_SRC_EPOCHS_BORDERS_H
#define TRIGLUB_SRC_EPOCHS_BORDERS_H

#include <vector>

#include "epochs/held_row.h"
#include "epochs/instant.h"
#include "epochs/station_tables.h"

namespace triglub {

// The instant at which rows meet on a day that begins there.
class DayBorders {
 public:
  virtual ~DayBorders() = default;
  virtual Instant border(Instant day) const = 0;
};

// That of a channel: the begin of its first sensor that begins on that day, else 00:00. People change the sensor when
// they change the channel or the place, and only the sensor's row says at what time.
class SensorBorders final : public DayBorders {
 public:
  // The begins of the channel's sensors, in ascending order. They must outlive it.
  explicit SensorBorders(const std::vector<Instant>& begins) : begins_(begins) {}
  Instant border(Instant day) const override;

 private:
  const std::vector<Instant>& begins_;
};

// Rows of one key whose last day is another's first share that day: *rows are cut to meet at its border. Returns
// whether any do.
bool meet_at_borders(const DayTable& table, const DayBorders& borders, HeldRows* rows);

// The days on which rows of the key meet, ascending.
std::vector<Instant> meeting_days(const DayTable& table, const HeldRows& rows);

}  // namespace triglub

#endif
