// What filters do to the amplitude of a signal.
#ifndef TRIGLUB_CHECKS_TRANSFER_H
#define TRIGLUB_CHECKS_TRANSFER_H

#include <optional>
#include <vector>

#include "checks/channel.h"

namespace triglub::checks {

// The natural logarithm of the amplitude at a frequency in hertz, the filter's factors and coefficients taken as they
// stand: minus infinity where it lets nothing through. None where it cannot be known: an incomplete filter, a
// digital one whose input rate is not known, a list that does not reach so far. Logarithms, for products of many roots
// are too large for doubles.
std::optional<double> log_amplitude(const Filter& filter, const std::optional<double>& input_rate, double frequency);

// All coefficients of a fir, of which one half may be written.
std::vector<double> all_numerators(const Filter& filter);

}  // namespace triglub::checks

#endif
