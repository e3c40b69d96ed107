// Parameter files from disk.
#include <cerrno>
#include <memory>
#include <string>

#include "base/file_text.h"
#include "parfile/search.h"
#include "parfile/table.h"
#include "platform/elog.h"
#include "platform/limits.h"

namespace {

using triglub::beyond, triglub::FileFault, triglub::FileReading, triglub::Limit, triglub::limit, triglub::read_file;

enum Status : int { kRead = 0, kNotFound = -1, kNotReadable = -2, kMalformed = -3 };

bool is_missing(const FileReading& reading) {
  return reading.fault == FileFault::unreadable && (reading.error == ENOENT || reading.error == ENOTDIR);
}

Status fail(const std::string& path, const FileReading& reading, std::size_t most) {
  if (is_missing(reading)) return kNotFound;
  const bool is_too_large = reading.fault == FileFault::too_large;
  const std::string fault = is_too_large ? beyond(Limit::parameter_bytes) : fault_text(reading, most);
  elog_complain(0, "%s: %s", path.c_str(), fault.c_str());
  return is_too_large ? kMalformed : kNotReadable;
}

Status read(const std::string& path, Pf** pf) {
  std::string text;
  const std::size_t most = limit(Limit::parameter_bytes);
  const FileReading reading = read_file(path, most, &text);
  if (reading.fault != FileFault::none) return fail(path, reading, most);
  Pf* parsed = nullptr;
  if (pfparse(text, path.c_str(), &parsed) != 0) return kMalformed;
  std::unique_ptr<Pf, decltype(&pffree)> whole(parsed, &pffree);
  whole->path = path;
  *pf = whole.release();
  return kRead;
}

}  // namespace

std::vector<std::string> pf_candidates(std::string_view name) { return triglub::parfile::candidates(name); }

int pfread(const char* name, Pf** pf) {
  *pf = nullptr;
  if (name == nullptr) return kNotFound;
  for (const std::string& path : triglub::parfile::candidates(name)) {
    const Status status = read(path, pf);
    // A file that is there but of no use is a fault; another one of the same name would only hide it.
    if (status != kNotFound) return status;
  }
  return kNotFound;
}
