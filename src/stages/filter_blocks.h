// The blocks of a stage, each line indented by `depth` blanks. Units are XML.
#ifndef TRIGLUB_SRC_STAGES_FILTER_BLOCKS_H
#define TRIGLUB_SRC_STAGES_FILTER_BLOCKS_H

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/response.h"
#include "stages/stage_facts.h"

namespace triglub {

struct Units {
  std::string_view input;
  std::string_view output;
};

// <PolesZeros>; of a stage that is no more than a change of units without poles and zeros.
std::string poles_zeros_block(const Paz& paz, const Units& units, std::size_t depth);
// <Coefficients> of a digital filter; of a stage without a filter without any.
std::string coefficients_block(const Fir& fir, const Units& units, std::size_t depth);
// <Decimation> and <StageGain>.
void append_decimation(const StageFacts& facts, std::size_t depth, std::string* text);
void append_gain(const StageFacts& facts, std::size_t depth, std::string* text);

}  // namespace triglub

#endif
