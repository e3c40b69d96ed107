// Which records are wanted.
#ifndef TRIGLUB_SRC_EPOCHS_CHOICE_H
#define TRIGLUB_SRC_EPOCHS_CHOICE_H

#include "epochs/conditions.h"
#include "epochs/station_data.h"

namespace triglub {

// Those of the rows that meet all conditions. A place without channels, and a network without stations, is not taken
// where a condition asks for what it cannot have. Throws FatalFailure where a condition fails.
RecordRows chosen_records(const StationData& data, const Conditions& conditions, RecordRows rows);

}  // namespace triglub

#endif
