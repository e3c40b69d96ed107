// The response files that instruments name, each of which holds a whole chain.
#ifndef TRIGLUB_SRC_EPOCHS_INSTRUMENT_FILES_H
#define TRIGLUB_SRC_EPOCHS_INSTRUMENT_FILES_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "epochs/read_file.h"
#include "platform/columns.h"
#include "platform/database.h"

namespace triglub {

// What a chain needs to know of one group of a response file.
struct InstrumentGroup {
  std::string type;
  std::optional<double> input_rate{};  // of a digital filter, samples per second
};
struct InstrumentFile {
  std::shared_ptr<const ReadFile> file;
  std::vector<InstrumentGroup> groups;  // of a file that cannot be read, or that has none, one of no type
};

// Each file is read once for each pair of folder and name. For one thread.
class InstrumentFiles {
 public:
  // Folders are told as rows of `stage` have to name them.
  InstrumentFiles(Dbptr instrument, Dbptr stage, ResponseReach reach);

  bool is_named(std::uint32_t instrument) const { return !names_.is_null(instrument); }
  std::string_view name(std::uint32_t instrument) const { return names_.text(instrument); }
  // Empty for none.
  std::string folder(std::uint32_t instrument) const;
  // The one that a row names. It stays.
  const InstrumentFile& file(std::uint32_t instrument);

 private:
  TextColumn folders_;
  TextColumn names_;
  std::string base_;
  ResponseReach reach_;
  std::string elsewhere_;  // where stages look elsewhere: the folder in full
  std::unordered_map<std::uint64_t, InstrumentFile> files_;
};

}  // namespace triglub

#endif
