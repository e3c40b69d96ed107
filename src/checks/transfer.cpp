// A continuous filter is looked at on the imaginary axis, a digital one on the unit circle.
#include "checks/transfer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace triglub::checks {

namespace {

using Complex = std::complex<double>;

Complex point_of_circle(double frequency, double rate) {
  return std::polar(1.0, 2 * std::numbers::pi * frequency / rate);
}

Complex point_of_axis(const Filter& filter, double frequency) {
  return {0, filter.is_in_hertz ? frequency : 2 * std::numbers::pi * frequency};
}

double log_distances(const std::vector<Root>& roots, const Complex& point) {
  double sum = 0;
  for (const Root& root : roots) sum += std::log(std::abs(point - root.value));
  return sum;
}

double of_roots(const Filter& filter, const Complex& point) {
  return std::log(std::abs(*filter.normalization)) + log_distances(filter.zeros, point) -
         log_distances(filter.poles, point);
}

// Of coefficients of growing powers; without any it is 1.
double log_polynomial(const std::vector<double>& coefficients, const Complex& point) {
  if (coefficients.empty()) return 0;
  Complex sum = 0;
  for (auto one = coefficients.rbegin(); one != coefficients.rend(); ++one) sum = sum * point + *one;
  return std::log(std::abs(sum));
}

double of_coefficients(const Filter& filter, const Complex& point) {
  return log_polynomial(all_numerators(filter), point) - log_polynomial(filter.denominators, point);
}

// Between two points, in a straight line of amplitudes over logarithms of frequency.
double between(const ListPoint& a, const ListPoint& b, double frequency) {
  if (a.frequency <= 0 || b.frequency <= a.frequency) return a.amplitude;
  const double part = std::log(frequency / a.frequency) / std::log(b.frequency / a.frequency);
  return a.amplitude + part * (b.amplitude - a.amplitude);
}

std::optional<double> of_list(const std::vector<ListPoint>& points, double frequency) {
  const auto is_below = [](const ListPoint& point, double limit) { return point.frequency < limit; };
  const auto behind = std::lower_bound(points.begin(), points.end(), frequency, is_below);
  if (behind == points.end()) return std::nullopt;
  if (behind->frequency == frequency) return std::log(std::abs(behind->amplitude));
  if (behind == points.begin()) return std::nullopt;
  return std::log(std::abs(between(*(behind - 1), *behind, frequency)));
}

std::optional<double> known(double value) {
  if (std::isnan(value)) return std::nullopt;
  return value;
}

}  // namespace

std::optional<double> log_amplitude(const Filter& filter, const std::optional<double>& input_rate, double frequency) {
  if (!filter.is_complete) return std::nullopt;
  if (filter.kind == FilterKind::list) return of_list(filter.points, frequency);
  if (filter.kind == FilterKind::poles_zeros && !filter.normalization) return std::nullopt;
  if (filter.is_digital && (!input_rate || *input_rate <= 0)) return std::nullopt;
  const Complex point = filter.is_digital ? point_of_circle(frequency, *input_rate) : point_of_axis(filter, frequency);
  if (filter.kind == FilterKind::poles_zeros) return known(of_roots(filter, point));
  // Delays turn the other way round the circle, which is the same to the amplitude of real coefficients.
  return known(of_coefficients(filter, point));
}

std::vector<double> all_numerators(const Filter& filter) {
  std::vector<double> all = filter.numerators;
  if (filter.symmetry != "ODD" && filter.symmetry != "EVEN") return all;
  const std::size_t left_out = filter.symmetry == "ODD" && !all.empty() ? 1 : 0;  // the one in the middle stands once
  all.insert(all.end(), filter.numerators.rbegin() + static_cast<std::ptrdiff_t>(left_out), filter.numerators.rend());
  return all;
}

}  // namespace triglub::checks
