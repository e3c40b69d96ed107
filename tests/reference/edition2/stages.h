// Response stages: which chains can be written, and what stands in the document for a line STAGE.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_STAGES_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_STAGES_H

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "reference/edition2/case.h"
#include "reference/edition2/rows.h"

namespace triglub_reference::edition2 {

// The records of an epoch that have a stage, in the order of stageid.
using Chain = std::vector<Record>;
using ResponseFiles = std::map<std::string, ResponseFile>;

// False when a stage lacks what is multiplied, a file cannot be used, or stages are missing whose neighbours do not
// fit.
bool can_be_written(const Chain& chain, const ResponseFiles& files);

// Filter, decimation and gain of a stage of a chain that can be written, each line indented by `depth` blanks.
std::string stage_text(const Chain& chain, std::size_t place, const Request& request, std::size_t depth);

// The name of a unit as the tree has it spelled.
std::string spelled(const Tree& tree, const std::string& unit);

}  // namespace triglub_reference::edition2

#endif
