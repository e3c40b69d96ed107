// The place of a channel as time goes on: the row of site that stands, or that a channel keeps which reaches out of it.
#ifndef TRIGLUB_SRC_EPOCHS_PLACES_H
#define TRIGLUB_SRC_EPOCHS_PLACES_H

#include <cstdint>
#include <vector>

#include "epochs/held_row.h"

namespace triglub {

class Places {
 public:
  // The rows of site of the station as the channel sees them, in order.
  void start(const HeldRows& sites);

  struct Place {
    std::uint32_t site = kAbsent;
    bool is_widened = false;  // the row does not hold at the instant
  };
  // The place at an instant at which a row of sitechan stands and a sensor, null for none. Outside of all rows a span
  // (the sitechan's, else the sensor's) that reaches there from a row with a stated end or begin keeps that row.
  // REQUIRES: instants come in order.
  Place at(Instant instant, const HeldRow& sitechan, const HeldRow* sensor);
  // Whether a span ends with the last row, or begins with the first one: it is open where the station is closed.
  bool ends_with_station(const Span& span) const;

  const std::vector<Stretch>& stretches() const { return stretches_; }

 private:
  const Stretch* before() const { return next_ == 0 ? nullptr : &stretches_[next_ - 1]; }
  const Stretch* after() const { return next_ == stretches_.size() ? nullptr : &stretches_[next_]; }
  std::uint32_t kept_by(const Span& span) const;

  std::vector<Stretch> stretches_;
  std::size_t next_ = 0;  // the first stretch that has not ended
};

}  // namespace triglub

#endif
