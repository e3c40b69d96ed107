// Files are known by the codes of folder and name: rows that name one file have the same codes.
#include "stages/response_files.h"

namespace triglub {

namespace {

ResponseFile read_file(const std::string& path) {
  ResponseFile file;
  Response* response = nullptr;
  if (read_response(path.c_str(), &response, &file.fault) != 0) return file;
  file.response.reset(response);
  if (response->groups.size() == 1) {
    file.filter = &response->groups.front();
  } else {
    file.fault = path + ": " + std::to_string(response->groups.size()) + " groups where one is meant";
  }
  return file;
}

}  // namespace

ResponseFiles::ResponseFiles(Dbptr stage)
    : folders_(TableColumns(stage).texts("dir")), names_(TableColumns(stage).texts("dfile")) {
  const char* base = nullptr;
  if (dbquery(stage, dbTABLE_DIRNAME, &base) >= 0 && base != nullptr) base_ = base;
}

bool ResponseFiles::is_named(std::uint32_t row) const { return !names_.is_null(row); }

std::uint64_t ResponseFiles::key_of(std::uint32_t row) const {
  return std::uint64_t{folders_.codes()[row]} << 32 | names_.codes()[row];
}

std::string ResponseFiles::path_of(std::uint32_t row) const {
  const std::string name(names_.text(row));
  if (folders_.is_null(row)) return base_ + "/" + name;
  const std::string folder(folders_.text(row));
  return (folder.starts_with('/') ? folder : base_ + "/" + folder) + "/" + name;
}

const ResponseFile* ResponseFiles::read(std::uint32_t row) {
  if (!is_named(row)) return nullptr;
  const auto [entry, is_new] = files_.try_emplace(key_of(row));
  if (is_new) entry->second = read_file(path_of(row));
  return &entry->second;
}

const ResponseFile* ResponseFiles::find(std::uint32_t row) const {
  const auto entry = is_named(row) ? files_.find(key_of(row)) : files_.end();
  return entry == files_.end() ? nullptr : &entry->second;
}

}  // namespace triglub
