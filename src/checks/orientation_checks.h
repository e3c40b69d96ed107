// Where sensors point.
#ifndef TRIGLUB_CHECKS_ORIENTATION_CHECKS_H
#define TRIGLUB_CHECKS_ORIENTATION_CHECKS_H

#include "checks/channel.h"
#include "checks/place.h"

namespace triglub::checks {

void check_orientation(const Channel& channel, const Place& place);

}  // namespace triglub::checks

#endif
