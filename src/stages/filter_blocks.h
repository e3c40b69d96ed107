// The blocks of a stage, each line indented by `depth` blanks. Units are XML.
#ifndef TRIGLUB_SRC_STAGES_FILTER_BLOCKS_H
#define TRIGLUB_SRC_STAGES_FILTER_BLOCKS_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "stages/stage_facts.h"

namespace triglub {

struct Units {
  std::string_view input;
  std::string_view output;
};

// The filter of a stage: <PolesZeros>, <FIR>, <Coefficients> or <ResponseList>. A filter of finite response that <FIR>
// cannot hold (denominators, errors), or that is not to be one, is <Coefficients>.
// Poles and zeros, and tables, are written with a normalization other than that of the file where there is one.
std::string filter_block(const StageFilter& filter, bool is_fir_allowed, const Units& units, std::size_t depth,
                         const std::optional<Normalization>& normalization = std::nullopt);
// What stands for the filter of a stage that is no more than a change of units: <PolesZeros> without poles and zeros,
// at the frequency of its gain; of a digital one <Coefficients> without coefficients, as readers know it.
std::string unit_change_block(double frequency, const Units& units, std::size_t depth);
std::string digital_gain_block(const Units& units, std::size_t depth);
// <Decimation> and <StageGain>.
void append_decimation(const StageFacts& facts, std::size_t depth, std::string* text);
void append_gain(const StageFacts& facts, std::size_t depth, std::string* text);

}  // namespace triglub

#endif
