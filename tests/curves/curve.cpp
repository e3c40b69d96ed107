// Polynomials in s or in z, by their roots or by their coefficients; the sum of a filter's coefficients is its response
// at no frequency.
#include "curves/curve.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace triglub_curves {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

Complex turned(double angle) { return std::polar(1.0, angle); }

double rate_of(const Stage& stage) {
  if (!stage.decimation) throw std::runtime_error("a digital filter without a rate");
  return stage.decimation->input_rate;
}

// A delay by one sample.
Complex one_sample(const Stage& stage, double frequency) { return turned(-kTurn * frequency / rate_of(stage)); }

// What the polynomials of a type are polynomials in.
Complex variable(const std::string& type, const Stage& stage, double frequency) {
  if (type == "LAPLACE (RADIANS/SECOND)" || type == "ANALOG (RADIANS/SECOND)") return {0, kTurn * frequency};
  if (type == "LAPLACE (HERTZ)" || type == "ANALOG (HERTZ)") return {0, frequency};
  if (type == "DIGITAL (Z-TRANSFORM)") return 1.0 / one_sample(stage, frequency);
  if (type == "DIGITAL") return one_sample(stage, frequency);
  throw std::runtime_error("no transfer function type " + type);
}

Complex by_roots(const std::vector<Root>& roots, Complex at) {
  Complex product = 1;
  for (const Root& root : roots) product *= at - Complex(root.real.value, root.imaginary.value);
  return product;
}

// The first is that of the power 0.
Complex by_coefficients(const std::vector<double>& coefficients, Complex at) {
  Complex sum = 0;
  for (auto coefficient = coefficients.rbegin(); coefficient != coefficients.rend(); ++coefficient) {
    sum = sum * at + *coefficient;
  }
  return sum;
}

std::vector<double> values_of(const std::vector<Coefficient>& coefficients) {
  std::vector<double> values;
  values.reserve(coefficients.size());
  for (const Coefficient& coefficient : coefficients) values.push_back(coefficient.value.value);
  return values;
}

Complex response_of(const std::monostate& /*none*/, const Stage& /*stage*/, double /*frequency*/) { return 1; }

Complex response_of(const PolesZeros& filter, const Stage& stage, double frequency) {
  const Complex at = variable(filter.type, stage, frequency);
  return filter.factor * by_roots(filter.zeros, at) / by_roots(filter.poles, at);
}

Complex response_of(const Coefficients& filter, const Stage& stage, double frequency) {
  const Complex at = variable(filter.type, stage, frequency);
  const Complex above = filter.numerators.empty() ? 1 : by_coefficients(values_of(filter.numerators), at);
  return filter.denominators.empty() ? above : above / by_coefficients(values_of(filter.denominators), at);
}

Complex response_of(const FirFilter& filter, const Stage& stage, double frequency) {
  return by_coefficients(all_coefficients(filter), one_sample(stage, frequency));
}

// On a straight line between the neighbours, the shorter way around.
Complex response_of(const ResponseList& filter, const Stage& /*stage*/, double frequency) {
  const auto& all = filter.elements;
  const auto above = std::find_if(all.begin(), all.end(), [&](const auto& e) { return e.frequency >= frequency; });
  if (above == all.end() || all.front().frequency > frequency) throw std::runtime_error("outside of a response list");
  constexpr double degree = kTurn / 360;
  if (above->frequency == frequency) return std::polar(above->amplitude.value, above->phase.value * degree);
  const auto below = std::prev(above);
  const double way = (frequency - below->frequency) / (above->frequency - below->frequency);
  const double turn = std::remainder(above->phase.value - below->phase.value, 360);
  return std::polar(std::lerp(below->amplitude.value, above->amplitude.value, way),
                    (below->phase.value + way * turn) * degree);
}

// The coefficients of a digital filter without feedback; empty for all others.
std::vector<double> taps_of(const Stage& stage) {
  if (const auto* fir = std::get_if<FirFilter>(&stage.filter)) return all_coefficients(*fir);
  const auto* filter = std::get_if<Coefficients>(&stage.filter);
  const bool is_fir = filter != nullptr && filter->type == "DIGITAL" && filter->denominators.empty();
  return is_fir ? values_of(filter->numerators) : std::vector<double>();
}

// From its first coefficient to its middle, in seconds.
double centre_of(const std::vector<double>& taps, const Stage& stage) {
  return static_cast<double>(taps.size() - 1) / 2 / rate_of(stage);
}

bool is_symmetric(const std::vector<double>& taps) { return std::equal(taps.begin(), taps.end(), taps.rbegin()); }

Complex normalized_taps(const std::vector<double>& taps, const Stage& stage, double frequency, double total_frequency) {
  constexpr double tolerated_sum = 0.02;
  constexpr double same_frequency = 1e-6;
  Complex response = filter_response(stage, frequency);
  const double sum = filter_response(stage, 0).real();
  if (std::abs(sum - 1) > tolerated_sum) response /= sum;
  if (std::abs(total_frequency / stage.gain_frequency - 1) > same_frequency) {
    response *=
        std::abs(filter_response(stage, total_frequency)) / std::abs(filter_response(stage, stage.gain_frequency));
  }
  const double delay = is_symmetric(taps) ? centre_of(taps, stage) : stage.decimation->correction;
  return response * turned(kTurn * frequency * delay);
}

// `total_frequency`: that of the channel's sensitivity.
Complex normalized(const Stage& stage, double frequency, double total_frequency) {
  const std::vector<double> taps = taps_of(stage);
  if (!taps.empty()) return normalized_taps(taps, stage, frequency, total_frequency);
  const Complex response = filter_response(stage, frequency);
  if (std::holds_alternative<ResponseList>(stage.filter)) return response;
  return response / std::abs(filter_response(stage, stage.gain_frequency));
}

bool is_per_nanometre(const ChannelEpoch& epoch) {
  const std::string units = epoch.sensitivity ? epoch.sensitivity->input_units : "";
  return units.starts_with("nm") || units.starts_with("NM");
}

}  // namespace

Complex filter_response(const Stage& stage, double frequency) {
  return std::visit([&](const auto& filter) { return response_of(filter, stage, frequency); }, stage.filter);
}

std::vector<double> all_coefficients(const FirFilter& filter) {
  const std::vector<double> written = values_of(filter.numerators);
  std::vector<double> all = written;
  if (filter.symmetry == "NONE") return all;
  if (filter.symmetry != "ODD" && filter.symmetry != "EVEN") throw std::runtime_error("symmetry " + filter.symmetry);
  const auto middle = filter.symmetry == "ODD" && !written.empty() ? 1 : 0;
  all.insert(all.end(), written.rbegin() + middle, written.rend());
  return all;
}

Complex stated_response(const ChannelEpoch& epoch, double frequency) {
  Complex response = 1;
  for (const Stage& stage : epoch.stages) {
    response *= stage.gain * filter_response(stage, frequency);
    const std::vector<double> taps = taps_of(stage);
    if (!taps.empty()) response *= turned(kTurn * frequency * centre_of(taps, stage));
  }
  return response;
}

Complex renormalized_response(const ChannelEpoch& epoch, double frequency) {
  Complex response = is_per_nanometre(epoch) ? 1e9 : 1;
  for (const Stage& stage : epoch.stages) {
    const double total_frequency = epoch.sensitivity ? epoch.sensitivity->frequency : stage.gain_frequency;
    response *= stage.gain * normalized(stage, frequency, total_frequency);
  }
  return response;
}

}  // namespace triglub_curves
