// Maps a whole file; the descriptor is not needed any longer once that is done.
#include "engine/source/flat/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>

namespace triglub {

namespace {

// The bytes of an open regular file. Nothing, and the reason in *fault, when it cannot be mapped.
std::optional<std::string_view> map_whole(int file, std::string* fault) {
  struct stat status {};
  if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
    *fault = "not a regular file";
    return std::nullopt;
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size == 0) return std::string_view();  // nothing to map
  void* address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
  if (address != MAP_FAILED) return std::string_view(static_cast<const char*>(address), size);
  *fault = std::strerror(errno);
  return std::nullopt;
}

}  // namespace

std::unique_ptr<MappedFile> MappedFile::open(const std::string& path, std::string* fault) {
  // O_NONBLOCK: a pipe is refused, not waited for.
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) {
    *fault = std::strerror(errno);
    return nullptr;
  }
  const auto bytes = map_whole(file, fault);
  close(file);
  return bytes ? std::unique_ptr<MappedFile>(new MappedFile(*bytes)) : nullptr;
}

MappedFile::~MappedFile() {
  if (!bytes_.empty()) munmap(const_cast<char*>(bytes_.data()), bytes_.size());
}

}  // namespace triglub
