// The conversion of the process, which the exported functions work on, and how they fail.
#ifndef TRIGLUB_SRC_STATE_PROCESS_STATE_H
#define TRIGLUB_SRC_STATE_PROCESS_STATE_H

#include "fatal_failure.h"
#include "platform/elog.h"
#include "state/conversion_state.h"

namespace triglub {

// Its variables are `verbosity`, `xml_depth`, the two date formats and INTERPRETERS. It lives until the process exits.
ConversionState& process_state();

// What the work gives. A failure that is fatal ends the process: the classic interface knows no other way.
template <typename Work>
auto or_die(const Work& work) {
  try {
    return work();
  } catch (const FatalFailure& failure) {
    elog_die(0, "%s", failure.what());
  }
}

}  // namespace triglub

#endif
