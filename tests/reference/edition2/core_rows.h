// Rows that databases of core tables lack, made of those that they have: codes of affiliation, calibrations and stages
// of instruments.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_CORE_ROWS_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_CORE_ROWS_H

#include <optional>
#include <string>
#include <vector>

#include "reference/edition2/case.h"
#include "reference/edition2/instants.h"
#include "reference/edition2/rows.h"
#include "reference/edition2/stages.h"

namespace triglub_reference::edition2 {

// With a row of snetsta for each network in which affiliation has a station that has no row there.
Tables with_memberships(Tables tables);

// The row of calibration of an epoch that has none; nothing where its instrument does not tell.
std::optional<Row> nominal_calibration(const Row* sitechan, const Row* sensor, const Row* instrument, const Span& span,
                                       const std::string& units);

// The rows of stage of an epoch that has none. Each tells its group in a field that no table has.
std::vector<Row> instrument_stages(const Row* instrument, const Row* calibration, const ResponseFiles& files);

// The group of the response file that such a row is of; nothing for a row of the tables.
std::optional<std::size_t> group_of(const Row* stage);

// By what poles and zeros are to be multiplied, and the amplitudes of a list divided, to be 1 at a frequency. Nothing
// where that is not possible.
std::optional<double> normalization_of(const Filter& filter, double frequency);

}  // namespace triglub_reference::edition2

#endif
