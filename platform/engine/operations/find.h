// The nearest record at which a condition holds.
#ifndef TRIGLUB_ENGINE_OPERATIONS_FIND_H
#define TRIGLUB_ENGINE_OPERATIONS_FIND_H

#include <cstdint>
#include <optional>

#include "engine/operations/expression.h"
#include "engine/view/view.h"

namespace triglub {

enum class Direction { forward, backward };

// The first match behind the record `start`, or the last before it; a start beyond either end is at that end. A record
// at which the condition fails to evaluate does not match.
// REQUIRES: the condition was compiled for the view.
std::optional<std::uint32_t> find_record(const View& view, Expression& condition, std::int64_t start,
                                         Direction direction);

}  // namespace triglub

#endif
