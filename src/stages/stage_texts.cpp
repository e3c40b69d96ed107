// A stage is its filter, with the units that it takes and gives, its decimation, and its gain.
#include "stages/stage_texts.h"

#include <utility>

#include "document/xml_escape.h"
#include "epochs/records.h"
#include "platform/columns.h"
#include "stages/filter_blocks.h"

namespace triglub {

namespace {

// Bytes of texts that are kept: archives have thousands of long filters, and what is needed soon again is mostly what
// was made last.
constexpr std::size_t kMostBytes = std::size_t{32} << 20;

// What units are when nothing says what they are.
constexpr std::string_view kUnknownUnits = "unknown";

std::string escaped(std::string_view text) {
  std::string xml;
  append_escaped(text, XmlPlace::content, &xml);
  return xml;
}

}  // namespace

StageTexts::StageTexts(Dbptr view, const StageTable& table, const TreeOptions& options)
    : table_(table),
      options_(options),
      stages_(rows_of(view, kStage)),
      calibrations_(rows_of(view, kCalibration)),
      places_(rows_of(view, kChain)) {}

std::string StageTexts::units_before(std::uint32_t record) {
  const std::uint32_t first = record - places_[record];
  if (first < record && latest_ == record - 1) return latest_units_;
  const std::string_view of_channel = table_.calibration_units(calibrations_[first]);
  std::string units(of_channel.empty() ? kUnknownUnits : of_channel);
  for (std::uint32_t i = first; i < record; ++i) {
    const std::string_view input = table_.input_units(stages_[i]);
    if (!input.empty()) units = input;
    const std::string_view output = table_.output_units(stages_[i]);
    if (!output.empty()) units = output;
  }
  return units;
}

std::string StageTexts::input_units(std::uint32_t record) {
  const std::string_view own = table_.input_units(stages_[record]);
  return own.empty() ? units_before(record) : std::string(own);
}

std::string StageTexts::output_units(std::uint32_t record, const std::string& input_units) const {
  const std::string_view own = table_.output_units(stages_[record]);
  return own.empty() ? input_units : std::string(own);
}

std::string StageTexts::as_written(std::string_view units) const { return escaped(options_.spelled(units)); }

void StageTexts::forget_much() {
  if (size_ <= kMostBytes) return;
  blocks_.clear();
  decimations_.clear();
  size_ = 0;
}

const std::string& StageTexts::block_of(const StageFacts& facts, const std::string& input_units,
                                        const std::string& output_units, std::size_t depth) {
  const StageFilter& filter = *facts.filter;
  for (const Block& block : blocks_[&filter]) {
    if (block.depth == depth && block.normalization == facts.normalization && block.input_units == input_units &&
        block.output_units == output_units) {
      return block.text;
    }
  }
  forget_much();
  const std::string input = as_written(input_units);
  const std::string output = as_written(output_units);
  std::vector<Block>& blocks = blocks_[&filter];
  std::string text =
      filter_block(filter, !options_.writes_fir_as_coefficients, {input, output}, depth, facts.normalization);
  blocks.push_back({input_units, output_units, facts.normalization, depth, std::move(text)});
  size_ += blocks.back().text.size();
  return blocks.back().text;
}

const std::string& StageTexts::decimation_of(std::uint32_t stage, const StageFacts& facts, std::size_t depth) {
  const DecimationKey key = {facts.input_rate, facts.output_rate, facts.is_rate_stored,       facts.factor,
                             facts.delay,      facts.correction,  facts.is_correction_stored, depth};
  const auto known = decimations_.find(key);
  if (known != decimations_.end()) return known->second;
  forget_much();
  StageFacts rounded = facts;
  table_.round_rates(stage, &rounded);
  std::string& text = decimations_[key];
  append_decimation(rounded, depth, &text);
  size_ += text.size();
  return text;
}

void StageTexts::append_filter(const StageFacts& facts, const std::string& input_units, const std::string& output_units,
                               std::size_t depth, std::string* text) {
  if (facts.filter != nullptr) {
    text->append(block_of(facts, input_units, output_units, depth));
  } else if (facts.is_digital) {
    text->append(digital_gain_block({as_written(input_units), as_written(output_units)}, depth));
  } else if (input_units != output_units) {
    text->append(unit_change_block(facts.frequency, {as_written(input_units), as_written(output_units)}, depth));
  }
}

void StageTexts::append(std::uint32_t record, std::size_t depth, std::string* text) {
  const std::uint32_t stage = stages_[record];
  if (stage == NO_BASE_ROW) return;
  StageFault fault;
  std::optional<StageFacts> facts = table_.facts(stage, calibrations_[record], &fault);
  if (!facts) return;  // such chains are not among the records
  table_.round_gain(stage, calibrations_[record], &*facts);
  const std::string input = input_units(record);
  const std::string output = output_units(record, input);
  append_filter(*facts, input, output, depth, text);
  if (facts->is_digital) text->append(decimation_of(stage, *facts, depth));
  append_gain(*facts, depth, text);
  latest_ = record;
  latest_units_ = output;
}

}  // namespace triglub
