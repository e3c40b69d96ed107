// The symmetry of the coefficients of a filter of finite response.
#ifndef TRIGLUB_SRC_STAGES_FIR_SYMMETRY_H
#define TRIGLUB_SRC_STAGES_FIR_SYMMETRY_H

#include <cstdint>

#include "platform/response.h"

namespace triglub {

// Odd and even say how many coefficients there are. Coefficients that differ in the last bit are not symmetric.
enum class Symmetry : std::uint8_t { none, odd, even };

// None for a filter with denominators, or without any coefficient.
Symmetry symmetry_of(const Fir& fir);

}  // namespace triglub

#endif
