// Rates from stage to stage, delays and their corrections.
#ifndef TRIGLUB_CHECKS_DECIMATION_CHECKS_H
#define TRIGLUB_CHECKS_DECIMATION_CHECKS_H

#include "checks/channel.h"
#include "checks/place.h"

namespace triglub::checks {

void check_decimations(const Channel& channel, const Place& place);

}  // namespace triglub::checks

#endif
