// Filters by themselves: poles and zeros, coefficients, lists.
#ifndef TRIGLUB_CHECKS_FILTER_CHECKS_H
#define TRIGLUB_CHECKS_FILTER_CHECKS_H

#include "checks/channel.h"
#include "checks/place.h"

namespace triglub::checks {

// Those of all stages.
void check_filters(const Channel& channel, const Place& place);

}  // namespace triglub::checks

#endif
