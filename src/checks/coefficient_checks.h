// Coefficients of digital filters.
#ifndef TRIGLUB_CHECKS_COEFFICIENT_CHECKS_H
#define TRIGLUB_CHECKS_COEFFICIENT_CHECKS_H

#include "checks/channel.h"
#include "checks/place.h"

namespace triglub::checks {

void check_coefficients(const Filter& filter, const Place& place);

}  // namespace triglub::checks

#endif
