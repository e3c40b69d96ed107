// Numbers that are none, and totals that cannot be.
#ifndef TRIGLUB_CHECKS_NUMBER_CHECKS_H
#define TRIGLUB_CHECKS_NUMBER_CHECKS_H

#include "checks/element.h"
#include "checks/place.h"

namespace triglub::checks {

// Every number within an element.
void check_numbers(const Element& element, const Place& place);
// `what`: "Stations" or "Channels".
void check_totals(const Element& element, const std::string& what, const Place& place);

}  // namespace triglub::checks

#endif
