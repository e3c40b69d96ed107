// Sample rates of channels, and the band codes that tell them.
#ifndef TRIGLUB_CHECKS_RATE_CHECKS_H
#define TRIGLUB_CHECKS_RATE_CHECKS_H

#include "checks/channel.h"
#include "checks/place.h"

namespace triglub::checks {

void check_rate(const Channel& channel, const Place& place);

}  // namespace triglub::checks

#endif
