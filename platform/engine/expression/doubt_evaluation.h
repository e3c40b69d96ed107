// The machine with doubts: beside every value on the stack stands how far it may be from what was measured.
//
// A stored real is in doubt by half of its last place (base/half_place.h). To first order the doubts of operands add up
// to that of a result; but where several come together the smallest counts, so that nothing is rounded away that one of
// them holds. 0 is no doubt: constants, times, integers and what functions make.
#ifndef TRIGLUB_ENGINE_EXPRESSION_DOUBT_EVALUATION_H
#define TRIGLUB_ENGINE_EXPRESSION_DOUBT_EVALUATION_H

#include <string>

#include "engine/expression/nullable_evaluation.h"

namespace triglub::expression {

// Runs a program that was emitted for nulls that propagate, with doubts only when they are needed. False when the
// evaluation fails. *doubt, unless that is null, becomes that of a real result, 0 of any other and of a null.
bool run_program(const Program& program, const Record& record, std::string* scratch, const Surroundings& surroundings,
                 Value* result, double* doubt);

}  // namespace triglub::expression

#endif
