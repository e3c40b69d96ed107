// The sensitivity against the gains of the stages.
#ifndef TRIGLUB_CHECKS_SENSITIVITY_CHECKS_H
#define TRIGLUB_CHECKS_SENSITIVITY_CHECKS_H

#include "checks/channel.h"
#include "checks/place.h"

namespace triglub::checks {

void check_sensitivity(const Channel& channel, const Place& place);

}  // namespace triglub::checks

#endif
