// Codes of networks, stations, locations and channels.
#ifndef TRIGLUB_CHECKS_CODE_CHECKS_H
#define TRIGLUB_CHECKS_CODE_CHECKS_H

#include "checks/element.h"
#include "checks/place.h"

namespace triglub::checks {

void check_network_code(const Element& network, const Place& place);
void check_station_code(const Element& station, const Place& place);
// Location and channel.
void check_channel_codes(const Element& channel, const Place& place);

}  // namespace triglub::checks

#endif
