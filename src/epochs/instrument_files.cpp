// Files are known by the codes of folder and name: rows that name one file have the same codes.
#include "epochs/instrument_files.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/response.h"

namespace triglub {

namespace {

InstrumentGroup group_of(const ResponseGroup& group) {
  InstrumentGroup made{group.type_name, std::nullopt};
  if (group.type == RESPONSE_FIR || group.type == RESPONSE_IIR) {
    made.input_rate = static_cast<const Fir*>(group.filter)->samprate;
  }
  return made;
}

InstrumentFile with_groups(std::shared_ptr<const ReadFile> file) {
  InstrumentFile made;
  made.file = std::move(file);
  if (made.file->response != nullptr) {
    for (const ResponseGroup& group : made.file->response->groups) made.groups.push_back(group_of(group));
  }
  if (made.groups.empty()) made.groups.emplace_back();
  return made;
}

const char* folder_of(Dbptr table) {
  const char* folder = nullptr;
  return dbquery(table, dbTABLE_DIRNAME, &folder) >= 0 && folder != nullptr ? folder : ".";
}

}  // namespace

InstrumentFiles::InstrumentFiles(Dbptr instrument, Dbptr stage, ResponseReach reach)
    : folders_(TableColumns(instrument).texts("dir")),
      names_(TableColumns(instrument).texts("dfile")),
      base_(folder_of(instrument)),
      reach_(reach) {
  if (base_ == folder_of(stage)) return;
  std::error_code error;  // a folder that cannot be told stays as it is
  elsewhere_ = std::filesystem::absolute(base_, error).string();
}

std::string InstrumentFiles::folder(std::uint32_t instrument) const {
  std::string own(folders_.is_null(instrument) ? "" : folders_.text(instrument));
  if (elsewhere_.empty() || own.starts_with('/')) return own;
  return own.empty() ? elsewhere_ : elsewhere_ + "/" + own;
}

const InstrumentFile& InstrumentFiles::file(std::uint32_t instrument) {
  const std::uint64_t key = std::uint64_t{folders_.codes()[instrument]} << 32 | names_.codes()[instrument];
  const auto [entry, is_new] = files_.try_emplace(key);
  if (is_new) {
    entry->second =
        with_groups(read_file(response_path(base_, folder(instrument), names_.text(instrument)), base_, reach_));
  }
  return entry->second;
}

}  // namespace triglub
