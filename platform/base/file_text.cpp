// Reads until the end is met, whatever size the file was said to have: it may grow meanwhile, and files of the kernel
// are said to have none.
#include "base/file_text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace triglub {

namespace {

class OpenFile {
 public:
  // Does not wait for the other end of a pipe that will be refused.
  explicit OpenFile(const std::string& path) : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

// As read(2), again when a signal has come in between.
ssize_t read_some(int descriptor, char* to, std::size_t size) {
  ssize_t got = -1;
  do {
    got = read(descriptor, to, size);
  } while (got < 0 && errno == EINTR);
  return got;
}

FileReading read_to_end(int descriptor, std::size_t expected, std::size_t limit, std::string* text) {
  constexpr std::size_t kLeastRoom = 4096;
  // One byte more than there should be: a read that finds nothing is the end, one that fills all room is not.
  text->resize(std::clamp(expected, std::min(kLeastRoom, limit), limit) + 1);
  std::size_t size = 0;
  while (true) {
    const ssize_t got = read_some(descriptor, text->data() + size, text->size() - size);
    if (got < 0) return {FileFault::unreadable, errno};
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
    if (size > limit) return {FileFault::too_large};
    if (size == text->size()) text->resize(std::min(2 * size, limit + 1));
  }
  text->resize(size);
  return {};
}

}  // namespace

FileReading read_file(const std::string& path, std::size_t limit, std::string* text) {
  const OpenFile file(path);
  struct stat status {};
  if (file.descriptor() < 0 || fstat(file.descriptor(), &status) != 0) return {FileFault::unreadable, errno};
  if (!S_ISREG(status.st_mode)) return {FileFault::other_kind};
  const auto expected = static_cast<std::size_t>(status.st_size);
  if (expected > limit) return {FileFault::too_large};
  return read_to_end(file.descriptor(), expected, limit, text);
}

std::string fault_text(const FileReading& reading, std::size_t limit) {
  if (reading.fault == FileFault::other_kind) return "not a regular file";
  if (reading.fault == FileFault::too_large) return "more than " + std::to_string(limit) + " bytes";
  return std::generic_category().message(reading.error);
}

}  // namespace triglub
