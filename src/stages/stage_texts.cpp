// A stage is its filter, with the units that it takes and gives, its decimation, and its gain.
#include "stages/stage_texts.h"

#include "document/xml_escape.h"
#include "epochs/records.h"
#include "platform/columns.h"
#include "stages/filter_blocks.h"

namespace triglub {

namespace {

// Bytes of blocks that are kept: archives have thousands of long filters, and what is needed soon again is mostly what
// was made last.
constexpr std::size_t kMostBytes = std::size_t{32} << 20;

// What units are when nothing says what they are.
constexpr std::string_view kUnknownUnits = "unknown";

const Paz kNoPaz{};
const Fir kNoFir{};

std::string block_of(const ResponseGroup* filter, const Units& units, std::size_t depth) {
  if (filter->type == RESPONSE_FIR) return coefficients_block(*static_cast<const Fir*>(filter->filter), units, depth);
  return poles_zeros_block(*static_cast<const Paz*>(filter->filter), units, depth);
}

std::string escaped(std::string_view text) {
  std::string xml;
  append_escaped(text, XmlPlace::content, &xml);
  return xml;
}

}  // namespace

StageTexts::StageTexts(Dbptr view, const StageTable& table)
    : table_(table),
      stages_(rows_of(view, kStage)),
      calibrations_(rows_of(view, kCalibration)),
      epochs_(rows_of(view, kEpoch)),
      stations_(rows_of(view, kSnetsta)) {}

bool StageTexts::has_stage_before(std::uint32_t record) const {
  return record > 0 && epochs_[record - 1] == epochs_[record] && stations_[record - 1] == stations_[record];
}

std::string StageTexts::units_before(std::uint32_t record) {
  if (record > 0 && latest_ == record - 1 && has_stage_before(record)) return latest_units_;
  std::uint32_t first = record;
  while (has_stage_before(first)) --first;
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

const std::string& StageTexts::filter_block(const ResponseGroup& filter, const std::string& input_units,
                                            const std::string& output_units, std::size_t depth) {
  for (const Block& block : blocks_[&filter]) {
    if (block.depth == depth && block.input_units == input_units && block.output_units == output_units) {
      return block.text;
    }
  }
  if (size_ > kMostBytes) {
    blocks_.clear();
    size_ = 0;
  }
  std::vector<Block>& blocks = blocks_[&filter];
  const std::string input = escaped(input_units);
  const std::string output = escaped(output_units);
  blocks.push_back({input_units, output_units, depth, block_of(&filter, {input, output}, depth)});
  size_ += blocks.back().text.size();
  return blocks.back().text;
}

void StageTexts::append(std::uint32_t record, std::size_t depth, std::string* text) {
  if (stages_[record] == NO_BASE_ROW) return;
  std::string fault;
  const std::optional<StageFacts> facts = table_.facts(stages_[record], calibrations_[record], &fault);
  if (!facts) return;  // such chains are not among the records
  const std::string input = input_units(record);
  const std::string output = output_units(record, input);
  if (facts->filter != nullptr) {
    text->append(filter_block(*facts->filter, input, output, depth));
  } else if (facts->is_digital) {
    text->append(coefficients_block(kNoFir, {escaped(input), escaped(output)}, depth));
  } else if (input != output) {
    text->append(poles_zeros_block(kNoPaz, {escaped(input), escaped(output)}, depth));
  }
  if (facts->is_digital) append_decimation(*facts, depth, text);
  append_gain(*facts, depth, text);
  latest_ = record;
  latest_units_ = output;
}

}  // namespace triglub
