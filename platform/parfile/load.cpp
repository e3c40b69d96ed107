// Parameter files from disk.
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

#include "parfile/grammar.h"
#include "parfile/search.h"
#include "parfile/table.h"
#include "platform/elog.h"

namespace {

enum Status : int { READ = 0, NOT_FOUND = -1, NOT_READABLE = -2, MALFORMED = -3 };

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

// Reads a file whole. Stops beyond the limit, so that a device without an end does not fill the memory.
Status load(const std::string& path, std::string& text) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rbe"));
  if (file == nullptr) return errno == ENOENT || errno == ENOTDIR ? NOT_FOUND : NOT_READABLE;
  std::array<char, 64 * 1024> chunk;
  for (std::size_t got = 0; (got = std::fread(chunk.data(), 1, chunk.size(), file.get())) > 0;) {
    text.append(chunk.data(), got);
    if (text.size() > triglub::parfile::MAX_BYTES) return MALFORMED;
  }
  return std::ferror(file.get()) != 0 ? NOT_READABLE : READ;
}

Status read(const std::string& path, Pf** pf) {
  std::string text;
  const Status loaded = load(path, text);
  if (loaded == MALFORMED) {
    elog_complain(0, "%s: more than %zu bytes", path.c_str(), triglub::parfile::MAX_BYTES);
  }
  if (loaded != READ) return loaded;
  if (pfparse(text, path.c_str(), pf) != 0) return MALFORMED;
  (*pf)->path = path;
  return READ;
}

}  // namespace

int pfread(const char* name, Pf** pf) {
  *pf = nullptr;
  if (name == nullptr) return NOT_FOUND;
  for (const std::string& path : triglub::parfile::candidates(name)) {
    const Status status = read(path, pf);
    // A file that is there but of no use is a fault; another one of the same name would only hide it.
    if (status != NOT_FOUND) return status;
  }
  return NOT_FOUND;
}
