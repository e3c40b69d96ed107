// A digital filter of a recorder lets the constant part of a signal pass as it is: its coefficients add up to 1. Where
// those that are written do so already, and a symmetry would count them twice, it is the symmetry that is wrong.
#include "checks/coefficient_checks.h"

#include <cmath>
#include <numeric>

#include "checks/transfer.h"

namespace triglub::checks {

namespace {

constexpr double kTolerance = 0.01;

double sum_of(const std::vector<double>& numbers) { return std::accumulate(numbers.begin(), numbers.end(), 0.0); }

bool is_near_one(double value) { return std::abs(value - 1) <= kTolerance; }

bool is_known_symmetry(const std::string& symmetry) {
  return symmetry == "NONE" || symmetry == "ODD" || symmetry == "EVEN";
}

bool is_written_in_full(const Filter& filter) {
  return is_near_one(sum_of(filter.numerators)) && !is_near_one(sum_of(all_numerators(filter)));
}

// False after a finding.
bool check_symmetry(const Filter& filter, const Place& place) {
  if (!is_known_symmetry(filter.symmetry)) {
    place.tell(Rule::fir_symmetry, filter.element->line,
               "Symmetry is " + quoted(filter.symmetry) + ", expected NONE, ODD or EVEN");
    return false;
  }
  if (filter.symmetry == "NONE" || !is_written_in_full(filter)) return true;
  place.tell(Rule::fir_symmetry, filter.element->line,
             "Symmetry is " + filter.symmetry + " where all " + std::to_string(filter.numerators.size()) +
                 " coefficients are written, expected one half of them");
  return false;
}

void check_sum(const Filter& filter, const Place& place) {
  if (filter.numerators.empty()) return;
  const double below = filter.denominators.empty() ? 1 : sum_of(filter.denominators);
  const double sum = sum_of(all_numerators(filter)) / below;
  if (is_near_one(sum)) return;
  place.tell(Rule::coefficient_sum, filter.element->line,
             "the coefficients add up to " + about(sum) + ", expected within 1 % of 1");
}

}  // namespace

void check_coefficients(const Filter& filter, const Place& place) {
  if (!filter.is_digital) return;
  if (filter.kind == FilterKind::fir && !check_symmetry(filter, place)) return;
  check_sum(filter, place);
}

}  // namespace triglub::checks
