// What there is to tell of the making of records, as far as it is about what was chosen.
#ifndef TRIGLUB_SRC_EPOCHS_LEFT_OUT_H
#define TRIGLUB_SRC_EPOCHS_LEFT_OUT_H

#include "epochs/station_data.h"
#include "findings.h"

namespace triglub {

// Adds to data->told the rows that are in no record.
void note_left_out(StationData* data);

// Tells all that data.told has; with conditions, what is about channels and stations of the chosen records, and rows of
// sitechan that are left out but would be among them.
void tell(const StationData& data, const Conditions& conditions, const RecordRows& chosen, Findings* findings);

}  // namespace triglub

#endif
