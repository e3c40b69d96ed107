// Between the rows of a table amplitudes are taken to lie on a straight line.
#include "stages/normalization.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace triglub {

namespace {

double amplitude_of(const Paz& paz, double frequency) {
  const std::complex<double> s(0, 2 * std::numbers::pi * frequency);
  double amplitude = 1;
  const std::size_t pairs = std::max(paz.zeros.size(), paz.poles.size());  // in turns, so that it does not overflow
  for (std::size_t i = 0; i < pairs; ++i) {
    if (i < paz.zeros.size()) amplitude *= std::abs(s - paz.zeros[i]);
    if (i < paz.poles.size()) amplitude /= std::abs(s - paz.poles[i]);
  }
  return amplitude;
}

// 0 beyond the table.
double amplitude_of(const Fap& fap, double frequency) {
  const std::vector<double>& f = fap.frequencies;
  for (std::size_t i = 0; i < f.size(); ++i) {
    if (f[i] == frequency) return fap.amplitudes[i];
    if (i == 0 || (f[i - 1] < frequency) == (f[i] < frequency)) continue;
    const double part = (frequency - f[i - 1]) / (f[i] - f[i - 1]);
    return fap.amplitudes[i - 1] + part * (fap.amplitudes[i] - fap.amplitudes[i - 1]);
  }
  return 0;
}

bool stay_finite(const std::vector<double>& numbers, double divisor) {
  return std::ranges::all_of(numbers, [divisor](double number) { return std::isfinite(number / divisor); });
}

// Nothing where the filter could not be written with it.
std::optional<Normalization> sound(const StageFilter& filter, const Normalization& normalization) {
  if (normalization.factor == 0 || !std::isfinite(normalization.factor)) return std::nullopt;
  if (!filter.is_list()) return normalization;
  const Fap& fap = filter.fap();
  const bool stays =
      stay_finite(fap.amplitudes, normalization.factor) && stay_finite(fap.amplitude_errors, normalization.factor);
  return stays ? std::optional(normalization) : std::nullopt;
}

}  // namespace

bool can_be_normalized(const StageFilter& filter) { return filter.group->type == RESPONSE_PAZ || filter.is_list(); }

std::optional<Normalization> normalization_at(const StageFilter& filter, double frequency) {
  const double factor =
      filter.is_list() ? amplitude_of(filter.fap(), frequency) : 1 / amplitude_of(filter.paz(), frequency);
  return sound(filter, {factor, frequency});
}

}  // namespace triglub
