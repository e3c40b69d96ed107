// Epochs of equal keys share one chain, so a key has what is written, rounded as it is written.
#include "epochs/chain_keys.h"

#include <cmath>
#include <optional>

#include "epochs/channel_sweep.h"
#include "platform/record_expression.h"

namespace triglub {

namespace {

constexpr double kNanometers = 1e9;  // calib is in 1e-9 units of ground motion

}  // namespace

ChainKeys::ChainKeys(const StationTables& tables)
    : units_(tables.calibration.columns().texts("units")),
      calibs_(tables.calibration.columns(), "calib"),
      rates_(tables.calibration.columns(), "samprate"),
      instrument_rates_(tables.instrument.columns(), "samprate") {}

ChainKey ChainKeys::key_of(std::uint32_t calibration, std::uint32_t instrument) const {
  ChainKey key;
  key.instrument = instrument;
  const auto own_rate = rates_.at(calibration);
  key.rate = (own_rate ? own_rate : instrument_rates_.at(instrument)).value_or(0);
  if (calibration == kAbsent) return key;
  key.units = units_.codes()[calibration];
  key.gain = gain_of(calibration);
  return key;
}

std::string_view ChainKeys::units(const ChainKey& key) const {
  return key.units == TextColumn::kNull ? std::string_view() : units_.text_of(key.units);
}

// Counts per unit of ground motion, with as many digits as the calibration has.
double ChainKeys::gain_of(std::uint32_t calibration) const {
  const std::optional<double> calib = calibs_.at(calibration);
  if (!calib) return 0;
  const double gain =
      rounded_within(kNanometers / *calib, kNanometers * calibs_.doubt(calibration) / (*calib * *calib));
  return std::isfinite(gain) ? gain : 0;
}

}  // namespace triglub
