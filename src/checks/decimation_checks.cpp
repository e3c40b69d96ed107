// Rates are compared as far as documents have their digits: 1e-4 of them.
#include "checks/decimation_checks.h"

#include <algorithm>
#include <cmath>

namespace triglub::checks {

namespace {

constexpr double kRateTolerance = 1e-4;
constexpr double kDelayTolerance = 0.01;

bool is_near(double a, double b, double tolerance) {
  return std::abs(a - b) <= tolerance * std::max(std::abs(a), std::abs(b));
}

int line_of(const Decimation& decimation, const Figure& figure) {
  return figure.is_there() ? figure.element->line : decimation.element->line;
}

// False, after a finding, when there is no number to go on with.
bool is_there(const Figure& figure, std::string_view name, Rule rule, const Decimation& decimation,
              const Place& place) {
  if (!figure.is_there()) {
    place.tell(rule, line_of(decimation, figure), "there is no " + std::string(name) + ", expected one");
  }
  return static_cast<bool>(figure);
}

bool is_whole(double value) { return value == std::floor(value); }

void check_factor(const Decimation& decimation, const Place& place) {
  if (!is_there(decimation.factor, "Factor", Rule::decimation_factor, decimation, place)) return;
  if (*decimation.factor >= 1 && is_whole(*decimation.factor)) return;
  place.tell(Rule::decimation_factor, line_of(decimation, decimation.factor),
             "Factor is " + text_of(*decimation.factor) + ", expected 1 or more");
}

void check_offset(const Decimation& decimation, const Place& place) {
  if (!is_there(decimation.offset, "Offset", Rule::decimation_offset, decimation, place)) return;
  const double most = std::max(decimation.factor.value.value_or(1), 1.0) - 1;
  if (*decimation.offset >= 0 && *decimation.offset <= most && is_whole(*decimation.offset)) return;
  place.tell(Rule::decimation_offset, line_of(decimation, decimation.offset),
             "Offset is " + text_of(*decimation.offset) + ", expected 0 to " + text_of(most));
}

// Apart by less than half a sample or one in a hundred, they are the same but for rounding.
bool corrects(double correction, double delay, const Figure& input_rate) {
  const double half_sample = input_rate && *input_rate > 0 ? 0.5 / *input_rate : 0;
  return is_near(correction, delay, kDelayTolerance) ||
         std::abs(correction - delay) <= half_sample * (1 + kRateTolerance);
}

void check_delay(const Decimation& decimation, const Place& place) {
  if (!decimation.delay) return;
  if (*decimation.delay < 0) {
    return place.tell(Rule::delay_negative, line_of(decimation, decimation.delay),
                      "Delay is " + text_of(*decimation.delay) + ", expected 0 or more");
  }
  if (!decimation.correction) return;
  if (corrects(*decimation.correction, *decimation.delay, decimation.input_rate)) return;
  place.tell(
      Rule::delay_correction, line_of(decimation, decimation.correction),
      "Correction is " + text_of(*decimation.correction) + ", expected about the Delay, " + text_of(*decimation.delay));
}

// The rate of the samples, as far as it has been followed.
class SampleStream {
 public:
  void pass(const Decimation& decimation, const Place& place) {
    if (!is_there(decimation.input_rate, "InputSampleRate", Rule::decimation_chain, decimation, place)) return forget();
    check_input(decimation, place);
    const double factor = decimation.factor.value.value_or(0);
    rate_ = factor >= 1 ? *decimation.input_rate / factor : 0;
    last_ = &decimation;
  }
  void check_end(const Channel& channel, const Place& place) const {
    if (rate_ <= 0 || !channel.rate || is_near(rate_, *channel.rate, kRateTolerance)) return;
    place.tell(
        Rule::decimation_rate, last_->element->line,
        "the stages end at " + about(rate_) + " samples a second, expected the SampleRate, " + text_of(*channel.rate));
  }
  void forget() { rate_ = 0; }

 private:
  void check_input(const Decimation& decimation, const Place& place) const {
    const double input = *decimation.input_rate;
    if (input > 0 && (rate_ <= 0 || is_near(rate_, input, kRateTolerance))) return;
    place.tell(Rule::decimation_chain, line_of(decimation, decimation.input_rate),
               "InputSampleRate is " + text_of(input) + ", expected " +
                   (rate_ > 0 ? about(rate_) + ", the output of the stage before" : "above 0"));
  }

  double rate_ = 0;  // of the output of the last one; 0: not known
  const Decimation* last_ = nullptr;
};

void check_stage(const Stage& stage, const Place& place, SampleStream& samples) {
  if (!stage.decimation) {
    if (!stage.is_digital()) return;
    samples.forget();
    return place.tell(Rule::decimation_missing, stage.element->line,
                      "a digital filter without Decimation, expected one");
  }
  check_factor(*stage.decimation, place);
  check_offset(*stage.decimation, place);
  check_delay(*stage.decimation, place);
  samples.pass(*stage.decimation, place);
}

}  // namespace

void check_decimations(const Channel& channel, const Place& place) {
  SampleStream samples;
  for (const Stage& stage : channel.stages) check_stage(stage, place.within("stage " + stage.number), samples);
  samples.check_end(channel, place);
}

}  // namespace triglub::checks
