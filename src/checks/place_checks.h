// Coordinates of stations and channels.
#ifndef TRIGLUB_CHECKS_PLACE_CHECKS_H
#define TRIGLUB_CHECKS_PLACE_CHECKS_H

#include "checks/channel.h"
#include "checks/place.h"

namespace triglub::checks {

void check_station_place(const Element& station, const Place& place);
// `station`: what has been read of it so far.
void check_channel_place(const Channel& channel, const Element& station, const Place& place);

}  // namespace triglub::checks

#endif
