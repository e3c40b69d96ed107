// The signal is followed from the input of the sensitivity through the stages to its output. A stage without a filter
// says nothing of units: it has to leave them as they are.
#include "checks/unit_checks.h"

#include "checks/unit_names.h"

namespace triglub::checks {

namespace {

void check_name(const std::string& name, const std::string& side, int line, const Place& place) {
  if (name.empty()) {
    place.tell(Rule::unit_unknown, line, "there are no " + side + " units, expected some");
  } else if (!is_known_unit(name)) {
    place.tell(Rule::unit_unknown, line, side + " units are " + quoted(name) + ", expected a name that FDSN lists");
  }
}

void check_names(const Units& units, int line, const Place& place) {
  check_name(units.input, "input", line, place);
  check_name(units.output, "output", line, place);
}

// What the signal is, as far as it has been followed.
class Signal {
 public:
  explicit Signal(const std::string& units) : units_(units) {}

  void pass_silent_stage() { is_behind_silent_ = true; }
  void pass(const std::string& output) {
    units_ = output;
    is_behind_silent_ = false;
    rule_ = Rule::unit_chain;
  }
  // Compares it with what is said of it further on.
  void check(const std::string& expected, Rule rule, int line, const Place& place) const {
    if (units_.empty() || expected.empty() || is_same_unit(units_, expected)) return;
    const std::string passed = is_behind_silent_ ? " behind a stage that has no units" : "";
    place.tell(is_behind_silent_ ? Rule::unit_hidden : rule, line,
               "units are " + quoted(expected) + passed + ", expected " + quoted(units_) + " as before");
  }
  // The rule that a stage's input comes under.
  Rule rule() const { return rule_; }

 private:
  std::string units_;
  bool is_behind_silent_ = false;
  Rule rule_ = Rule::unit_sensitivity;
};

void follow(const Stage& stage, const Place& place, Signal& signal) {
  const Units* units = stage.units();
  if (units == nullptr) return signal.pass_silent_stage();
  const Place at = place.within("stage " + stage.number);
  check_names(*units, stage.element->line, at);
  signal.check(units->input, signal.rule(), stage.element->line, at);
  signal.pass(units->output);
}

}  // namespace

void check_units(const Channel& channel, const Place& place) {
  const Place at_sensitivity = place.within("sensitivity");
  if (channel.sensitivity)
    check_names(channel.sensitivity->units, channel.sensitivity->gain.element->line, at_sensitivity);
  if (channel.stages.empty()) return;
  Signal signal(channel.sensitivity ? channel.sensitivity->units.input : "");
  for (const Stage& stage : channel.stages) follow(stage, place, signal);
  if (!channel.sensitivity) return;
  signal.check(channel.sensitivity->units.output, Rule::unit_sensitivity, channel.sensitivity->gain.element->line,
               at_sensitivity);
}

}  // namespace triglub::checks
