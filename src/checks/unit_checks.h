// Units of stages and of the sensitivity, which have to join.
#ifndef TRIGLUB_CHECKS_UNIT_CHECKS_H
#define TRIGLUB_CHECKS_UNIT_CHECKS_H

#include "checks/channel.h"
#include "checks/place.h"

namespace triglub::checks {

void check_units(const Channel& channel, const Place& place);

}  // namespace triglub::checks

#endif
