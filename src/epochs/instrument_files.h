// The response files that instruments name, each of which holds a whole chain.
#ifndef TRIGLUB_SRC_EPOCHS_INSTRUMENT_FILES_H
#define TRIGLUB_SRC_EPOCHS_INSTRUMENT_FILES_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/columns.h"
#include "platform/database.h"

namespace triglub {

// What a chain needs to know of one group of a response file.
struct InstrumentGroup {
  std::string type;
  std::optional<double> input_rate{};  // of a digital filter, samples per second
};
using InstrumentGroups = std::vector<InstrumentGroup>;

// Each file is looked at once for each pair of folder and name. For one thread.
class InstrumentFiles {
 public:
  // Folders are told as rows of `stage` have to name them.
  InstrumentFiles(Dbptr instrument, Dbptr stage);

  bool is_named(std::uint32_t instrument) const { return !names_.is_null(instrument); }
  std::string_view name(std::uint32_t instrument) const { return names_.text(instrument); }
  // Empty for none.
  std::string folder(std::uint32_t instrument) const;
  // Those of the file that a row names; of a file that cannot be read one of no type. They stay.
  const InstrumentGroups& groups(std::uint32_t instrument);

 private:
  std::string path_of(std::uint32_t instrument) const;

  TextColumn folders_;
  TextColumn names_;
  std::string base_;
  std::string elsewhere_;  // where stages look elsewhere: the folder in full
  std::unordered_map<std::uint64_t, InstrumentGroups> files_;
};

}  // namespace triglub

#endif
