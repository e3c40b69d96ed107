// The gain of a stage holds at its own frequency; elsewhere it is as much larger or smaller as the filter's amplitude.
// Chains of which something is missing are left alone: that has been told, and what is missing may be the difference.
#include "checks/sensitivity_checks.h"

#include <algorithm>
#include <cmath>

#include "checks/transfer.h"

namespace triglub::checks {

namespace {

constexpr double kTolerance = 0.02;
constexpr double kSameFrequency = 1e-6;

bool is_same_frequency(double a, double b) {
  return std::abs(a - b) <= kSameFrequency * std::max(std::abs(a), std::abs(b));
}

bool is_usable(const Gain& gain) { return gain.value && *gain.value != 0 && gain.frequency && *gain.frequency >= 0; }

// The logarithm of how much larger a filter's amplitude is at a frequency than at the gain's. Infinite where the gain
// holds at a frequency that does not pass; none where it is not known.
std::optional<double> log_change(const Stage& stage, double frequency) {
  if (!stage.filter || is_same_frequency(*stage.gain->frequency, frequency)) return 0.0;
  const std::optional<double> rate = stage.decimation ? stage.decimation->input_rate.value : std::nullopt;
  const auto there = log_amplitude(*stage.filter, rate, frequency);
  const auto here = log_amplitude(*stage.filter, rate, *stage.gain->frequency);
  if (!there || !here) return std::nullopt;
  return *there - *here;
}

void tell_nowhere(const Stage& stage, const Place& place) {
  const Figure& frequency = stage.gain->frequency;
  place.within("stage " + stage.number)
      .tell(Rule::sensitivity_gains, frequency.element->line,
            "the gain is given at " + text_of(*frequency) +
                " Hz, where the filter passes nothing or everything, expected a frequency in the pass band");
}

// The gain of the whole at a frequency, by its logarithm and its sign.
struct Whole {
  double log = 0;
  bool is_negative = false;
};

// None where it cannot be known, after a finding where a gain is the reason.
std::optional<Whole> whole_gain(const Channel& channel, double frequency, const Place& place) {
  Whole whole;
  for (const Stage& stage : channel.stages) {
    if (!stage.gain || !is_usable(*stage.gain)) return std::nullopt;
    const auto change = log_change(stage, frequency);
    if (!change) return std::nullopt;
    if (std::isnan(*change) || *change == INFINITY) {
      tell_nowhere(stage, place);
      return std::nullopt;
    }
    whole.log += std::log(std::abs(*stage.gain->value)) + *change;
    whole.is_negative = whole.is_negative != (*stage.gain->value < 0);
  }
  return whole;
}

}  // namespace

void check_sensitivity(const Channel& channel, const Place& place) {
  if (!channel.sensitivity || channel.stages.empty() || !is_usable(channel.sensitivity->gain)) return;
  const double stated = *channel.sensitivity->gain.value;
  const double frequency = *channel.sensitivity->gain.frequency;
  const auto whole = whole_gain(channel, frequency, place);
  if (!whole) return;
  const double ratio = std::exp(whole->log - std::log(std::abs(stated)));
  if (std::abs(ratio - 1) <= kTolerance && whole->is_negative == (stated < 0)) return;
  const double expected = (whole->is_negative ? -1 : 1) * ratio * std::abs(stated);
  place.within("sensitivity")
      .tell(Rule::sensitivity_gains, channel.sensitivity->gain.value.element->line,
            "Value is " + text_of(stated) + ", expected within 2 % of " + about(expected) +
                ", what the stages give at " + text_of(frequency) + " Hz");
}

}  // namespace triglub::checks
