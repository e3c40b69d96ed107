// Roots of a filter that turns real signals into real ones come in conjugate pairs, unless they are real themselves.
// Each is looked for among those that are left, which costs the square of their number: there is a limit to it.
#include "checks/root_checks.h"

#include <algorithm>
#include <cmath>

#include "checks/transfer.h"

namespace triglub::checks {

namespace {

constexpr double kNormalTolerance = 0.01;
constexpr double kPairTolerance = 1e-4;  // of the root
constexpr double kRealTolerance = 1e-6;  // of the root: noise of what worked it out
constexpr std::size_t kMaxRoots = 1000;

void check_normalization(const Filter& filter, const std::optional<double>& input_rate, const Place& place) {
  const int line = filter.normalization.is_there() ? filter.normalization.element->line : filter.element->line;
  if (!filter.normalization.is_there() || !filter.normalization_frequency.is_there()) {
    return place.tell(Rule::normalization, line, "the factor or its frequency is not there, expected both");
  }
  if (!filter.normalization || !filter.normalization_frequency) return;
  const auto log = log_amplitude(filter, input_rate, *filter.normalization_frequency);
  if (!log && filter.is_digital) return;
  const double amplitude = log ? std::exp(*log) : 0;
  if (std::abs(amplitude - 1) <= kNormalTolerance) return;
  place.tell(Rule::normalization, line,
             "the amplitude at the NormalizationFrequency, " + text_of(*filter.normalization_frequency) + " Hz, is " +
                 about(amplitude) + ", expected within 1 % of 1");
}

std::string text_of_root(const Root& root) {
  return '(' + text_of(root.value.real()) + ", " + text_of(root.value.imag()) + ')';
}

// A signal that is let in once never dies away.
bool is_unstable(const Filter& filter, const Root& pole) {
  return filter.is_digital ? std::abs(pole.value) > 1 : pole.value.real() > 0;
}

void check_poles(const Filter& filter, const Place& place) {
  for (const Root& pole : filter.poles) {
    if (!is_unstable(filter, pole)) continue;
    place.tell(Rule::pole_unstable, pole.line,
               "a pole is " + text_of_root(pole) + ", expected " +
                   (filter.is_digital ? "within the unit circle" : "a real part that is not above 0"));
  }
}

bool is_real(const Root& root) { return std::abs(root.value.imag()) <= kRealTolerance * std::abs(root.value); }

bool are_conjugate(const Root& a, const Root& b) {
  return std::abs(a.value - std::conj(b.value)) <= kPairTolerance * std::abs(a.value);
}

void check_pairs(const std::vector<Root>& roots, const std::string& name, const Place& place) {
  std::vector<const Root*> alone;
  for (const Root& root : roots) {
    if (is_real(root)) continue;
    const auto partner =
        std::find_if(alone.begin(), alone.end(), [&](const Root* other) { return are_conjugate(*other, root); });
    if (partner == alone.end()) {
      alone.push_back(&root);
    } else {
      alone.erase(partner);
    }
  }
  for (const Root* root : alone) {
    place.tell(Rule::roots_unpaired, root->line,
               "a " + name + " is " + text_of_root(*root) + ", expected its conjugate as well");
  }
}

void check_pairs(const Filter& filter, const Place& place) {
  const std::size_t count = filter.zeros.size() + filter.poles.size();
  if (count > kMaxRoots) {
    return place.tell(
        Rule::too_large, filter.element->line,
        "there are " + std::to_string(count) + " poles and zeros, expected at most " + std::to_string(kMaxRoots));
  }
  check_pairs(filter.zeros, "zero", place);
  check_pairs(filter.poles, "pole", place);
}

}  // namespace

void check_roots(const Filter& filter, const std::optional<double>& input_rate, const Place& place) {
  check_normalization(filter, input_rate, place);
  check_poles(filter, place);
  check_pairs(filter, place);
}

}  // namespace triglub::checks
