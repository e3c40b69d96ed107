// Runs of equal texts in a field of a view.
#ifndef TRIGLUB_ENGINE_OPERATIONS_TEXT_RUNS_H
#define TRIGLUB_ENGINE_OPERATIONS_TEXT_RUNS_H

#include <cstdint>
#include <vector>

#include "engine/view/view.h"
#include "platform/database.h"

namespace triglub {

// The runs of equal texts of the field among the records from `begin` to before `end` (cut at the end of the view), in
// record order: neighbours differ. They replace what *runs held.
void text_runs(const View& view, const ViewField& field, std::uint64_t begin, std::uint64_t end,
               std::vector<TextRun>* runs);

// The records, ascending, at which the field has a text that is wanted. Several threads may call `wanted` at a time.
std::vector<std::uint32_t> records_with_text(const View& view, const ViewField& field, const TextCondition& wanted);

}  // namespace triglub

#endif
