// What is asked of records: conditions of the engine's language, where a null is a text like any other, so that a code
// that is not there can be asked for.
#ifndef TRIGLUB_SRC_EPOCHS_CONDITIONS_H
#define TRIGLUB_SRC_EPOCHS_CONDITIONS_H

#include <cstdint>
#include <string>
#include <vector>

#include "epochs/records.h"
#include "platform/containers.h"
#include "platform/database.h"

namespace triglub {

struct Condition {
  std::string text;
  std::uint32_t tables = 0;  // that it looks at, a bit each, by RecordTable; own tables behind those
};

class Conditions {
 public:
  // Those of an array of expressions to patterns, as db2stationxml has it; null: none. Throws FatalFailure for one that
  // does not compile over the records of a database.
  Conditions(rbtree* array, Dbptr db);

  bool is_empty() const { return all_.empty(); }
  const std::vector<Condition>& all() const { return all_; }
  // Whether any looks at what only channels have, or at anything but networks.
  bool ask_for_channels() const;
  bool ask_beyond_networks() const;
  // All tables that any looks at, as Condition::tables.
  std::uint32_t tables() const;

 private:
  std::vector<Condition> all_;
};

// A view, which goes, at the records that meet a condition. Throws FatalFailure where it does not compile.
Dbptr subset_and_release(Dbptr view, const Condition& condition);

}  // namespace triglub

#endif
