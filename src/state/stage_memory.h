// What the writing of one stage leaves for the next.
#ifndef TRIGLUB_SRC_STATE_STAGE_MEMORY_H
#define TRIGLUB_SRC_STATE_STAGE_MEMORY_H

#include <array>
#include <cstdint>
#include <string>

#include "platform/database.h"

namespace triglub {

// The fields that a stage is made of, as numbers of one view's fields (dbINVALID for what the view does not have).
struct StageFields {
  Dbptr view;  // whose fields these are
  std::int64_t iunits = dbINVALID, ounits = dbINVALID, gtype = dbINVALID, gnom = dbINVALID, decifac = dbINVALID,
               izero = dbINVALID, samprate = dbINVALID, stageid = dbINVALID, dir = dbINVALID, dfile = dbINVALID,
               fc = dbINVALID;
};

struct StageMemory {
  // Where units and gain type are read to, at the schema's widths. Not cleared between rows: a row whose field cannot
  // be read carries on with what the row before it had, as it does with units that are null.
  std::array<char, 17> input_units{};
  std::array<char, 17> output_units{};
  std::array<char, 21> gain_type{};
  // The output units of the stage before: the stages of a channel are a chain, so a stage that does not state its input
  // units takes these.
  std::string latest_unit = "unknown";
  // Back to where a new process has them.
  void forget_units();

  // Stage follows stage of the same view, so the fields of the latest are kept; numbers of views are not used again.
  StageFields fields;
};

}  // namespace triglub

#endif
