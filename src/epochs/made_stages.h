// Stages of epochs that the table stage has none for: those of the response file that the instrument names, which holds
// a whole chain.
#ifndef TRIGLUB_SRC_EPOCHS_MADE_STAGES_H
#define TRIGLUB_SRC_EPOCHS_MADE_STAGES_H

#include <vector>

#include "epochs/channel_sweep.h"
#include "epochs/partners.h"
#include "epochs/response_tables.h"
#include "epochs/station_tables.h"

namespace triglub {

// Gives each epoch without a row of stage those of its instrument, behind those of tables->stage; what their groups are
// in the order of the added rows. They have no station, channel and time, for all epochs of one instrument with one
// calibration share them. A file that cannot be read is one stage, of which it is told when it is to be written.
// REQUIRES: complete_calibrations().
std::vector<InstrumentStage> complete_stages(const Partners& partners, ResponseReach reach, StationTables* tables,
                                             EpochList* epochs);

}  // namespace triglub

#endif
