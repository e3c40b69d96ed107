// Random stages of channels, with their response files.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_RANDOM_STAGES_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_RANDOM_STAGES_H

#include <vector>

#include "reference/case.h"
#include "reference/random_case.h"

namespace triglub_reference::edition2 {

// Rows of stage that are a chain as it is meant to be, or nearly: at times with a number, a gain, a rate or a file
// missing or useless, behind gaps in most cases so that they fit. `row` has the key and the times of all of them. The
// files that they name are added to the tables, for other rows may name the same.
std::vector<Row> random_chain(Random& random, Row row, Tables& tables);

// One station with a few channels of one epoch each, all with stages, most with a calibration.
Tables random_chains(Random& random);

}  // namespace triglub_reference::edition2

#endif
