// Calibrations of epochs that the table calibration has none for: those that the instrument is said to have.
#ifndef TRIGLUB_SRC_EPOCHS_MADE_CALIBRATIONS_H
#define TRIGLUB_SRC_EPOCHS_MADE_CALIBRATIONS_H

#include <string>

#include "epochs/channel_sweep.h"
#include "epochs/partners.h"
#include "epochs/station_tables.h"

namespace triglub {

// Gives each epoch without a row of calibration a row of its own, behind those of tables->calibration, where its
// instrument has a nominal calibration. `units`: of ground motion, where the instrument's response type does not tell.
void complete_calibrations(const Partners& partners, const std::string& units, StationTables* tables,
                           EpochList* epochs);

}  // namespace triglub

#endif
