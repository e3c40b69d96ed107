// Where a new process, or a document that must not depend on the one before, begins.
#include "state/stage_memory.h"

namespace triglub {

void StageMemory::forget_units() {
  latest_unit = "unknown";
  input_units.fill('\0');
  output_units.fill('\0');
  gain_type.fill('\0');
}

}  // namespace triglub
