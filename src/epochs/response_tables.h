// The tables that responses are made of.
#ifndef TRIGLUB_SRC_EPOCHS_RESPONSE_TABLES_H
#define TRIGLUB_SRC_EPOCHS_RESPONSE_TABLES_H

#include <cstdint>
#include <memory>
#include <vector>

#include "epochs/read_file.h"
#include "platform/database.h"

namespace triglub {

// A row of stage that no table has: it was worked out from the response file of an instrument, which holds a whole
// chain.
struct InstrumentStage {
  std::shared_ptr<const ReadFile> file;
  std::uint32_t group = 0;     // from 0
  bool is_normalized = false;  // at the frequency of its gain, whatever the file says
};

struct ResponseTables {
  Dbptr sitechan{};
  Dbptr stage{};
  Dbptr calibration{};
  Dbptr instrument{};
  std::vector<InstrumentStage> instrument_stages;  // the last rows of `stage`
  ResponseReach reach = ResponseReach::anywhere;   // of the files that rows name
};

}  // namespace triglub

#endif
