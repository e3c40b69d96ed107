// Maps a whole file; the descriptor is not needed any longer once that is done.
#include "engine/source/flat/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace triglub {

std::unique_ptr<MappedFile> MappedFile::open(const std::string& path, std::string* fault) {
  // O_NONBLOCK: a pipe is refused below, not waited for.
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) {
    *fault = std::strerror(errno);
    return nullptr;
  }
  struct stat status {};
  if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
    *fault = "not a regular file";
    close(file);
    return nullptr;
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size == 0) {  // nothing to map
    close(file);
    return std::unique_ptr<MappedFile>(new MappedFile({}));
  }
  void* address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
  const int error = errno;
  close(file);
  if (address == MAP_FAILED) {
    *fault = std::strerror(error);
    return nullptr;
  }
  return std::unique_ptr<MappedFile>(new MappedFile({static_cast<const char*>(address), size}));
}

MappedFile::~MappedFile() {
  if (!bytes_.empty()) munmap(const_cast<char*>(bytes_.data()), bytes_.size());
}

}  // namespace triglub
