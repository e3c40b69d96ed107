// Which sensor stands under a row of sitechan. A sensor's chanid, where both have one, says whose it is.
#ifndef TRIGLUB_SRC_EPOCHS_SENSOR_CHOICE_H
#define TRIGLUB_SRC_EPOCHS_SENSOR_CHOICE_H

#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

#include "epochs/held_row.h"

namespace triglub {

// Whether a sensor of some holds within a span.
class SensorSpans {
 public:
  void add(const Span& span);  // in the order of begins
  bool any_within(const Span& span) const;

 private:
  std::vector<Instant> begins_;
  std::vector<Instant> latest_ends_;  // of the sensors up to there
};

class SensorChoice {
 public:
  // The sensors of a channel, in order; HeldRow::key is the chanid, `null` where there is none. They must outlive it.
  void start(const HeldRows& sensors, std::int64_t null);

  // The sensor that stands under a row of sitechan with that chanid, null for none. REQUIRES: no earlier instant is
  // asked for afterwards.
  const HeldRow* at(Instant instant, std::optional<std::int64_t> chanid);
  // Whether one that may stand under such a row holds within a span.
  bool any_within(const Span& span, std::optional<std::int64_t> chanid);

 private:
  const HeldRow* own_at(Instant instant, std::int64_t chanid);
  void file(const HeldRow& sensor);
  void know_spans();

  const HeldRows* sensors_ = nullptr;
  std::int64_t null_ = 0;
  std::size_t next_ = 0;
  Standing all_;
  // By chanid, made when first asked for: mostly the latest sensor is the right one.
  bool are_filed_ = false;
  Standing anybodys_;  // those without a chanid
  std::unordered_map<std::int64_t, Standing> by_chanid_;
  bool are_spans_known_ = false;
  SensorSpans spans_of_all_;
  SensorSpans spans_of_anybodys_;
  std::unordered_map<std::int64_t, SensorSpans> spans_by_chanid_;
};

// tell(earlier, later) as find_contradictions(), for sensors in order: those of two chanids are of two rows of sitechan
// and do not contradict each other, one without (`null`) may be of any.
void find_sensor_contradictions(const HeldRows& sensors, std::int64_t null,
                                const std::function<void(const HeldRow& earlier, const HeldRow& later)>& tell);

}  // namespace triglub

#endif
