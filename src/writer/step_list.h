// The engine's step lists from texts.
#ifndef TRIGLUB_SRC_WRITER_STEP_LIST_H
#define TRIGLUB_SRC_WRITER_STEP_LIST_H

#include <string>
#include <vector>

#include "platform/database.h"

namespace triglub {

using StepList = std::vector<std::string>;

// An empty list, or one whose steps the engine tells to the debug log.
StepList new_step_list(bool traced);

// As dbprocess.
Dbptr process(Dbptr view, const StepList& steps);

}  // namespace triglub

#endif
