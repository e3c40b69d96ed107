// A stage that is a polynomial has no gain: the polynomial holds it.
#include "checks/gain_checks.h"

namespace triglub::checks {

namespace {

void check_value(const Gain& gain, const Place& place) {
  if (!gain.value.is_there()) {
    return place.tell(Rule::gain_missing, gain.element->line, "there is no Value, expected one");
  }
  if (!gain.value) return;
  const int line = gain.value.element->line;
  if (*gain.value == 0) place.tell(Rule::gain_zero, line, "Value is 0, expected what the signal is multiplied by");
  if (*gain.value < 0) {
    place.tell(Rule::gain_negative, line, "Value is " + text_of(*gain.value) + ", expected above 0");
  }
}

void check_frequency(const Gain& gain, const Place& place) {
  if (!gain.frequency.is_there()) {
    return place.tell(Rule::gain_frequency, gain.element->line, "there is no Frequency, expected one");
  }
  if (!gain.frequency || *gain.frequency >= 0) return;
  place.tell(Rule::gain_frequency, gain.frequency.element->line,
             "Frequency is " + text_of(*gain.frequency) + ", expected 0 or more");
}

void check_gain(const Gain& gain, const Place& place) {
  check_value(gain, place);
  check_frequency(gain, place);
}

void check_stage(const Stage& stage, const Place& place) {
  if (stage.gain) return check_gain(*stage.gain, place);
  if (stage.polynomial) return;
  place.tell(Rule::gain_missing, stage.element->line, "there is no StageGain, expected one");
}

void check_nyquist(const Channel& channel, const Place& place) {
  const Figure& frequency = channel.sensitivity->gain.frequency;
  if (!frequency || !channel.rate || *channel.rate <= 0 || *frequency < *channel.rate / 2) return;
  place.tell(
      Rule::sensitivity_frequency, frequency.element->line,
      "Frequency is " + text_of(*frequency) + ", expected below half the sample rate, " + text_of(*channel.rate / 2));
}

}  // namespace

void check_gains(const Channel& channel, const Place& place) {
  for (const Stage& stage : channel.stages) check_stage(stage, place.within("stage " + stage.number));
  if (channel.sensitivity) {
    const Place at = place.within("sensitivity");
    check_gain(channel.sensitivity->gain, at);
    check_nyquist(channel, at);
  } else if (!channel.stages.empty() && !channel.has_instrument_polynomial) {
    place.tell(Rule::sensitivity_missing, channel.response->line,
               "there are stages and no InstrumentSensitivity, expected one");
  }
}

}  // namespace triglub::checks
