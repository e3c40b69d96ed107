// The rules by name, with what their findings have in common.
#ifndef TRIGLUB_CHECKS_RULES_H
#define TRIGLUB_CHECKS_RULES_H

#include <cstdint>

#include "document_checks.h"

namespace triglub::checks {

// In the order of the table in rules.cpp.
enum class Rule : std::uint8_t {
  not_xml,
  document_type,
  not_stationxml,
  too_large,
  number,
  totals,
  code_format,
  code_length,
  epoch_overlap,
  date_format,
  date_zone,
  date_order,
  date_far,
  begin_missing,
  epoch_outside,
  place_missing,
  place_range,
  place_far,
  orientation_missing,
  orientation_range,
  orientation_code,
  rate_missing,
  rate_range,
  band_code,
  response_missing,
  stages_missing,
  stage_order,
  unit_unknown,
  unit_chain,
  unit_hidden,
  unit_sensitivity,
  decimation_missing,
  decimation_factor,
  decimation_offset,
  decimation_chain,
  decimation_rate,
  delay_negative,
  delay_correction,
  gain_missing,
  gain_zero,
  gain_negative,
  gain_frequency,
  sensitivity_missing,
  sensitivity_frequency,
  sensitivity_gains,
  normalization,
  pole_unstable,
  roots_unpaired,
  coefficient_sum,
  fir_symmetry,
  list_order
};

const DocumentRule& properties_of(Rule rule);

}  // namespace triglub::checks

#endif
