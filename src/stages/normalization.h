// Filters whose files do not say at which frequency they are 1, or at another than is wanted.
#ifndef TRIGLUB_SRC_STAGES_NORMALIZATION_H
#define TRIGLUB_SRC_STAGES_NORMALIZATION_H

#include <optional>

#include "stages/response_files.h"

namespace triglub {

// What makes a filter 1 at a frequency: of poles and zeros their normalization factor, of a table what its amplitudes
// are divided by.
struct Normalization {
  double factor = 1;
  double frequency = 0;  // hertz

  friend bool operator==(const Normalization&, const Normalization&) = default;
};

// Whether filters of the kind are normalized: analogue ones.
bool can_be_normalized(const StageFilter& filter);
// Nothing where the response at the frequency is 0, infinite, or beyond the table. REQUIRES: can_be_normalized().
std::optional<Normalization> normalization_at(const StageFilter& filter, double frequency);

}  // namespace triglub

#endif
