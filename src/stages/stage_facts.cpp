// What a reader of the document multiplies has to be there and finite; a stage that lacks it makes the chain useless.
#include "stages/stage_facts.h"

#include <algorithm>
#include <cmath>

namespace triglub {

namespace {

bool is_symmetric(const Fir& fir) {
  return fir.denominators.empty() && std::equal(fir.numerators.begin(), fir.numerators.end(), fir.numerators.rbegin());
}

// In samples of the input: the file's, else half of a symmetric filter.
std::optional<double> delay_of(const Fir& fir) {
  if (fir.delay >= 0) return fir.delay;
  if (fir.numerators.empty() || !is_symmetric(fir)) return std::nullopt;
  return (static_cast<double>(fir.numerators.size()) - 1) / 2;
}

}  // namespace

StageTable::Reals StageTable::reals(const TableColumns& table, const char* field) {
  return {table.reals(field), table.null_real(field)};
}

StageTable::StageTable(Dbptr stage, Dbptr calibration, const ResponseFiles& files)
    : stage_(stage),
      calibration_(calibration),
      files_(files),
      input_units_(stage_.texts("iunits")),
      output_units_(stage_.texts("ounits")),
      calibration_units_(calibration_.texts("units")),
      numbers_(stage_.integers("stageid")),
      factors_(stage_.integers("decifac")),
      null_factor_(stage_.null_integer("decifac")),
      nominal_gains_(reals(stage_, "gnom")),
      gain_calibrations_(reals(stage_, "gcalib")),
      rates_(reals(stage_, "samprate")),
      corrections_(reals(stage_, "leadfac")),
      frequencies_(reals(calibration_, "fc")),
      periods_(reals(calibration_, "calper")) {}

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

// Each of these gives why the stage cannot be written, empty when it can.

std::string StageTable::find_gain(std::uint32_t stage, std::uint32_t calibration, StageFacts* facts) const {
  const std::optional<double> nominal = nominal_gains_.at(stage);
  if (!nominal) return "no gain (gnom)";
  facts->gain = *nominal * gain_calibrations_.at(stage).value_or(1);
  std::optional<double> frequency = frequencies_.at(calibration);
  const std::optional<double> period = periods_.at(calibration);
  if (!frequency && period && *period > 0) frequency = 1 / *period;
  if (!frequency) return "no frequency of the gain (calibration.fc, calper)";
  facts->frequency = *frequency;
  return std::isfinite(facts->gain) && std::isfinite(facts->frequency) ? "" : "a gain that is no number";
}

std::string StageTable::find_filter(std::uint32_t stage, StageFacts* facts) const {
  const ResponseFile* file = files_.find(stage);
  if (file == nullptr) return "";
  if (file->filter == nullptr) return file->fault;
  facts->filter = file->filter;
  if (facts->filter->type == RESPONSE_PAZ || facts->filter->type == RESPONSE_FIR) return "";
  return "the response type '" + facts->filter->type_name + "' has no form in the document";
}

std::string StageTable::find_rate(std::uint32_t stage, StageFacts* facts) const {
  const bool is_fir = facts->filter != nullptr && facts->filter->type == RESPONSE_FIR;
  const std::optional<double> rate = rates_.at(stage);
  facts->is_digital = is_fir || (facts->filter == nullptr && rate);
  if (!facts->is_digital) return "";
  if (factors_[stage] != null_factor_) facts->factor = factors_[stage];
  if (facts->factor < 1) return "a decimation factor (decifac) below 1";
  const auto* fir = is_fir ? static_cast<const Fir*>(facts->filter->filter) : nullptr;
  facts->input_rate = rate ? *rate * static_cast<double>(facts->factor) : fir->samprate;
  if (!(facts->input_rate > 0) || !std::isfinite(facts->input_rate)) return "no sampling rate (samprate)";
  facts->delay = fir == nullptr ? 0 : delay_of(*fir).value_or(0) / facts->input_rate;
  facts->correction = corrections_.at(stage).value_or(facts->delay);
  return std::isfinite(facts->delay) && std::isfinite(facts->correction) ? "" : "a delay that is no number";
}

std::optional<StageFacts> StageTable::facts(std::uint32_t stage, std::uint32_t calibration, std::string* fault) const {
  StageFacts facts;
  *fault = numbers_[stage] < 1 ? "a stage number (stageid) below 1" : "";
  if (fault->empty()) *fault = find_gain(stage, calibration, &facts);
  if (fault->empty()) *fault = find_filter(stage, &facts);
  if (fault->empty()) *fault = find_rate(stage, &facts);
  return fault->empty() ? std::optional(facts) : std::nullopt;
}

}  // namespace triglub
