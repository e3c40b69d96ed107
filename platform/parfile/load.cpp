// Parameter files from disk.
#include <cerrno>
#include <string>

#include "base/file_text.h"
#include "parfile/grammar.h"
#include "parfile/search.h"
#include "parfile/table.h"
#include "platform/elog.h"

namespace {

enum Status : int { kRead = 0, kNotFound = -1, kNotReadable = -2, kMalformed = -3 };

Status fail(const std::string& path, const triglub::FileReading& reading) {
  if (reading.fault == triglub::FileFault::too_large) {
    elog_complain(0, "%s: more than %zu bytes", path.c_str(), triglub::parfile::kMaxBytes);
    return kMalformed;
  }
  return reading.error == ENOENT || reading.error == ENOTDIR ? kNotFound : kNotReadable;
}

Status read(const std::string& path, Pf** pf) {
  std::string text;
  // Another program may write a parameter file into a pipe.
  const auto reading = triglub::read_file(path, triglub::FileKind::any, triglub::parfile::kMaxBytes, &text);
  if (reading.fault != triglub::FileFault::none) return fail(path, reading);
  if (pfparse(text, path.c_str(), pf) != 0) return kMalformed;
  (*pf)->path = path;
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
