// Poles and zeros.
#ifndef TRIGLUB_CHECKS_ROOT_CHECKS_H
#define TRIGLUB_CHECKS_ROOT_CHECKS_H

#include <optional>

#include "checks/channel.h"
#include "checks/place.h"

namespace triglub::checks {

// `input_rate`: of a digital filter, where it is known.
void check_roots(const Filter& filter, const std::optional<double>& input_rate, const Place& place);

}  // namespace triglub::checks

#endif
