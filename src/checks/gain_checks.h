// Gains of stages, and the sensitivity as a gain.
#ifndef TRIGLUB_CHECKS_GAIN_CHECKS_H
#define TRIGLUB_CHECKS_GAIN_CHECKS_H

#include "checks/channel.h"
#include "checks/place.h"

namespace triglub::checks {

void check_gains(const Channel& channel, const Place& place);

}  // namespace triglub::checks

#endif
