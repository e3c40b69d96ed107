// Files are known by the codes of folder and name: rows that name one file have the same codes.
#include "stages/response_files.h"

#include <utility>

#include "platform/text.h"

namespace triglub {

namespace {

// A word of a file may be as long as the file.
std::string shown(const std::string& word) {
  constexpr std::size_t kLongest = 40;
  return word.size() <= kLongest ? word : std::string(utf8_prefix(word, kLongest)) + "...";
}

}  // namespace

ResponseFiles::File ResponseFiles::with_filters(std::shared_ptr<const ReadFile> read) {
  File file;
  file.read = std::move(read);
  if (file.read->response == nullptr) return file;
  for (const ResponseGroup& group : file.read->response->groups) {
    StageFilter& filter = file.filters.emplace_back(StageFilter{&group});
    if (group.type == RESPONSE_FIR) filter.symmetry = symmetry_of(filter.fir());
  }
  return file;
}

ResponseFiles::ResponseFiles(const ResponseTables& tables)
    : folders_(TableColumns(tables.stage).texts("dir")),
      names_(TableColumns(tables.stage).texts("dfile")),
      reach_(tables.reach),
      instrument_stages_(tables.instrument_stages),
      first_instrument_stage_(TableColumns(tables.stage).row_count() -
                              static_cast<std::uint32_t>(tables.instrument_stages.size())) {
  const char* base = nullptr;
  if (dbquery(tables.stage, dbTABLE_DIRNAME, &base) >= 0 && base != nullptr) base_ = base;
  for (std::uint32_t i = 0; i < instrument_stages_.size(); ++i) {
    const auto [entry, is_new] = files_.try_emplace(key_of(first_instrument_stage_ + i));
    if (is_new) entry->second = with_filters(instrument_stages_[i].file);
  }
}

std::uint64_t ResponseFiles::key_of(std::uint32_t row) const {
  return std::uint64_t{folders_.codes()[row]} << 32 | names_.codes()[row];
}

std::string ResponseFiles::path_of(std::uint32_t row) const {
  return response_path(base_, folders_.is_null(row) ? "" : folders_.text(row), names_.text(row));
}

const InstrumentStage* ResponseFiles::instrument_stage(std::uint32_t row) const {
  return row < first_instrument_stage_ ? nullptr : &instrument_stages_[row - first_instrument_stage_];
}

void ResponseFiles::read(std::uint32_t row) {
  if (!is_named(row)) return;
  const auto [entry, is_new] = files_.try_emplace(key_of(row));
  if (is_new) entry->second = with_filters(read_file(path_of(row), base_, reach_));
}

const StageFilter* ResponseFiles::filter(std::uint32_t row, std::string* fault) const {
  const File& file = files_.find(key_of(row))->second;
  const InstrumentStage* const stage = instrument_stage(row);
  const std::size_t group = stage == nullptr ? 0 : stage->group;
  const std::size_t groups = file.filters.size();
  if (file.read->response == nullptr) {
    *fault = file.read->fault;
  } else if (stage == nullptr ? groups != 1 : group >= groups) {
    *fault = file.read->path + ": " + std::to_string(groups) + " groups where one is meant";
  } else if (file.filters[group].group->type == RESPONSE_OTHER) {
    *fault =
        file.read->path + ": the type '" + shown(file.filters[group].group->type_name) + "' has no form in a document";
  } else {
    return &file.filters[group];
  }
  return nullptr;
}

}  // namespace triglub
