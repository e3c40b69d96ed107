// What a reader of the document multiplies has to be there and finite; a stage that lacks it makes the chain useless.
#include "stages/stage_facts.h"

#include <algorithm>
#include <cmath>

#include "document/xml_escape.h"
#include "platform/record_expression.h"

namespace triglub {

namespace {

// In samples of the input: the file's, else half of a symmetric filter.
std::optional<double> delay_of(const StageFilter& filter) {
  if (filter.fir().delay >= 0) return filter.fir().delay;
  if (filter.symmetry == Symmetry::none) return std::nullopt;
  return (static_cast<double>(filter.fir().numerators.size()) - 1) / 2;
}

// By code.
std::vector<bool> forbidden_texts(const TextColumn& column) {
  std::vector<bool> forbidden(column.code_count());
  for (std::uint32_t code = 0; code < column.code_count(); ++code) {
    forbidden[code] = has_forbidden_characters(column.text_of(code));
  }
  return forbidden;
}

const char* no_gain(bool is_of_instrument) {
  return is_of_instrument ? "no calibration to take the gain from (calibration.calib, instrument.ncalib)"
                          : "no gain (gnom)";
}

}  // namespace

StageTable::StageTable(const ResponseTables& tables, const ResponseFiles& files)
    : stage_(tables.stage),
      calibration_(tables.calibration),
      files_(files),
      input_units_(stage_.texts("iunits")),
      output_units_(stage_.texts("ounits")),
      calibration_units_(calibration_.texts("units")),
      forbidden_inputs_(forbidden_texts(input_units_)),
      forbidden_outputs_(forbidden_texts(output_units_)),
      numbers_(stage_.integers("stageid")),
      factors_(stage_.integers("decifac")),
      null_factor_(stage_.null_integer("decifac")),
      nominal_gains_(stage_, "gnom"),
      gain_calibrations_(stage_, "gcalib"),
      rates_(stage_, "samprate"),
      corrections_(stage_, "leadfac"),
      frequencies_(calibration_, "fc"),
      periods_(calibration_, "calper"),
      channel_rates_(calibration_, "samprate"),
      instrument_rates_(TableColumns(tables.instrument), "samprate") {}

std::string_view StageTable::input_units(std::uint32_t stage) const {
  return input_units_.is_null(stage) ? "" : input_units_.text(stage);
}

std::string_view StageTable::output_units(std::uint32_t stage) const {
  return output_units_.is_null(stage) ? "" : output_units_.text(stage);
}

std::string_view StageTable::calibration_units(std::uint32_t calibration) const {
  if (calibration == NO_BASE_ROW || calibration_units_.is_null(calibration)) return "";
  return calibration_units_.text(calibration);
}

std::optional<double> StageTable::channel_rate(std::uint32_t calibration, std::uint32_t instrument) const {
  const std::optional<double> own = channel_rates_.at(calibration);
  return own ? own : instrument_rates_.at(instrument);
}

// Each of these gives why the stage cannot be written, null when it can.

const char* StageTable::find_gain(std::uint32_t stage, std::uint32_t calibration, StageFacts* facts) const {
  const std::optional<double> nominal = nominal_gains_.at(stage);
  if (!nominal) return no_gain(files_.instrument_stage(stage) != nullptr);
  facts->gain = *nominal * gain_calibrations_.at(stage).value_or(1);
  if (facts->gain == 0) return "a gain (gnom, gcalib) of 0";
  const std::optional<double> frequency = find_frequency(stage, calibration);
  if (!frequency) return "no frequency of the gain (calibration.fc, calper)";
  facts->frequency = *frequency;
  return std::isfinite(facts->gain) && std::isfinite(facts->frequency) ? nullptr : "a gain that is no number";
}

// The gain of a chain that was worked out of a calibration is that at the period of the calibration; there it is
// normalized, so it is rounded at once.
std::optional<double> StageTable::find_frequency(std::uint32_t stage, std::uint32_t calibration) const {
  const bool is_of_instrument = files_.instrument_stage(stage) != nullptr;
  const std::optional<double> frequency = is_of_instrument ? std::nullopt : frequencies_.at(calibration);
  const std::optional<double> period = periods_.at(calibration);
  if (frequency || !period || !(*period > 0)) return frequency;
  return is_of_instrument ? rounded_frequency(calibration) : 1 / *period;
}

double StageTable::rounded_frequency(std::uint32_t calibration) const {
  const double period = *periods_.at(calibration);
  return rounded_within(1 / period, periods_.doubt(calibration) / (period * period));
}

const char* StageTable::find_normalization(std::uint32_t stage, StageFacts* facts) const {
  const InstrumentStage* const made = files_.instrument_stage(stage);
  if (made == nullptr || !made->is_normalized || !can_be_normalized(*facts->filter)) return nullptr;
  facts->normalization = normalization_at(*facts->filter, facts->frequency);
  return facts->normalization ? nullptr : "no response at the frequency of the calibration (1 / calper)";
}

const char* StageTable::find_filter(std::uint32_t stage, StageFacts* facts, std::string* fault) const {
  if (!files_.is_named(stage)) return nullptr;
  facts->filter = files_.filter(stage, fault);
  return facts->filter == nullptr ? "the response file cannot be used" : nullptr;
}

const char* StageTable::find_rates(std::uint32_t stage, StageFacts* facts) const {
  const StageFilter* const filter = facts->filter;
  const std::optional<double> rate = rates_.at(stage);
  facts->is_digital = filter == nullptr ? rate.has_value() : filter->is_digital();
  if (!facts->is_digital) return nullptr;
  if (factors_[stage] != null_factor_) facts->factor = factors_[stage];
  if (facts->factor < 1) return "a decimation factor (decifac) below 1";
  const auto factor = static_cast<double>(facts->factor);
  facts->is_rate_stored = rate.has_value();
  facts->input_rate = rate ? *rate * factor : filter->fir().samprate;
  facts->output_rate = rate ? *rate : facts->input_rate / factor;
  if (!(facts->input_rate > 0) || !std::isfinite(facts->input_rate)) return "no sampling rate (samprate)";
  find_delay(stage, facts);
  return std::isfinite(facts->delay) && std::isfinite(facts->correction) ? nullptr : "a delay that is no number";
}

// A digital stage without a filter has no delay.
void StageTable::find_delay(std::uint32_t stage, StageFacts* facts) const {
  if (facts->filter != nullptr) {
    const std::optional<double> samples = delay_of(*facts->filter);
    facts->is_delay_known = samples.has_value();
    facts->delay = samples.value_or(0) / facts->input_rate;
  }
  const std::optional<double> correction = corrections_.at(stage);
  facts->is_correction_stored = correction.has_value();
  facts->correction = correction.value_or(facts->delay);
}

std::optional<StageFacts> StageTable::facts(std::uint32_t stage, std::uint32_t calibration, StageFault* fault) const {
  StageFacts facts;
  fault->file.clear();
  const char* what = numbers_[stage] < 1 ? "a stage number (stageid) below 1" : nullptr;
  if (what == nullptr) what = find_gain(stage, calibration, &facts);
  if (what == nullptr) what = find_filter(stage, &facts, &fault->file);
  if (what == nullptr) what = find_rates(stage, &facts);
  if (what == nullptr) what = find_normalization(stage, &facts);
  if (what == nullptr) return facts;
  fault->what = what;
  return std::nullopt;
}

void StageTable::round_gain(std::uint32_t stage, std::uint32_t calibration, StageFacts* facts) const {
  const std::optional<double> ratio = gain_calibrations_.at(stage);
  if (ratio && *ratio != 1) {
    const double nominal = *nominal_gains_.at(stage);
    const double of_nominal = nominal_gains_.doubt(stage) * std::fabs(*ratio);
    const double of_ratio = gain_calibrations_.doubt(stage) * std::fabs(nominal);
    facts->gain = rounded_within(facts->gain, least_doubt(of_nominal, of_ratio));
  }
  if (!frequencies_.at(calibration)) facts->frequency = rounded_frequency(calibration);
}

void StageTable::round_rates(std::uint32_t stage, StageFacts* facts) const {
  // What files hold is exact, and 1 takes nothing from it.
  if (!facts->is_rate_stored || facts->output_rate == 1) return;
  const double doubt = rates_.doubt(stage) * static_cast<double>(facts->factor);
  facts->delay = rounded_within(facts->delay, facts->delay / facts->input_rate * doubt);
  facts->input_rate = rounded_within(facts->input_rate, doubt);
  if (!facts->is_correction_stored) facts->correction = facts->delay;
}

}  // namespace triglub
