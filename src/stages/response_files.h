// The response files that stages name, each read once.
#ifndef TRIGLUB_SRC_STAGES_RESPONSE_FILES_H
#define TRIGLUB_SRC_STAGES_RESPONSE_FILES_H

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "epochs/read_file.h"
#include "epochs/response_tables.h"
#include "platform/columns.h"
#include "platform/database.h"
#include "platform/response.h"
#include "stages/fir_symmetry.h"

namespace triglub {

// A filter of a response file.
struct StageFilter {
  const ResponseGroup* group = nullptr;
  Symmetry symmetry = Symmetry::none;  // of fir

  const Paz& paz() const { return *static_cast<const Paz*>(group->filter); }
  const Fir& fir() const { return *static_cast<const Fir*>(group->filter); }  // of fir and iir
  const Fap& fap() const { return *static_cast<const Fap*>(group->filter); }  // of fap and fap2
  bool is_digital() const { return group->type == RESPONSE_FIR || group->type == RESPONSE_IIR; }
  bool is_list() const { return group->type == RESPONSE_FAP || group->type == RESPONSE_FAP2; }
};

// Files that were read do not change: threads may share them. Reading is for one thread.
class ResponseFiles {
 public:
  // Of the rows of stage.
  explicit ResponseFiles(const ResponseTables& tables);

  // Reads the file that a row names, if it was not read yet.
  void read(std::uint32_t row);
  // True for a row that names a file.
  bool is_named(std::uint32_t row) const { return !names_.is_null(row); }
  // The filter of a row whose file was read; null, and why in *fault ("resp/x.fir:12: expected 31 numerators, found
  // 7"), where it cannot be had. REQUIRES: is_named(row).
  const StageFilter* filter(std::uint32_t row, std::string* fault) const;

  // What a row was made of that was worked out from an instrument; null for one of the database.
  const InstrumentStage* instrument_stage(std::uint32_t row) const;

 private:
  struct File {
    std::shared_ptr<const ReadFile> read;
    std::vector<StageFilter> filters;
  };

  static File with_filters(std::shared_ptr<const ReadFile> read);
  std::uint64_t key_of(std::uint32_t row) const;
  std::string path_of(std::uint32_t row) const;

  TextColumn folders_;
  TextColumn names_;
  std::string base_;
  ResponseReach reach_;
  std::vector<InstrumentStage> instrument_stages_;
  std::uint32_t first_instrument_stage_;
  std::unordered_map<std::uint64_t, File> files_;
};

}  // namespace triglub

#endif
