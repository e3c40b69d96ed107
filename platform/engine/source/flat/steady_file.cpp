// Whether a file stayed the same is told by its size and its times, and by a look behind its last byte: files that the
// kernel makes up as they are read have no size.
#include "engine/source/flat/steady_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <system_error>

namespace triglub {

namespace {

constexpr const char* kChanged = "changed while it was read";

std::string error_text(int error) { return std::generic_category().message(error); }

// As pread(2), again when a signal has come in between.
ssize_t read_some(int descriptor, char* to, std::size_t size, std::size_t at) {
  ssize_t got = -1;
  do {
    got = pread(descriptor, to, size, static_cast<off_t>(at));
  } while (got < 0 && errno == EINTR);
  return got;
}

// Why an open file cannot be taken; nothing when it can.
std::optional<std::string> refusal(int descriptor, struct stat* status) {
  if (fstat(descriptor, status) != 0) return error_text(errno);
  if (!S_ISREG(status->st_mode)) return "not a regular file";
  return std::nullopt;
}

bool are_same(const timespec& a, const timespec& b) { return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec; }

}  // namespace

std::unique_ptr<SteadyFile> SteadyFile::open(const std::string& path, std::string* fault) {
  // O_NONBLOCK: a pipe is refused, not waited for.
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) {
    *fault = error_text(errno);
    return nullptr;
  }
  struct stat status {};
  const auto refused = refusal(descriptor, &status);
  auto file = std::unique_ptr<SteadyFile>(new SteadyFile(descriptor, status));
  if (!refused) return file;
  *fault = *refused;
  return nullptr;
}

SteadyFile::~SteadyFile() { close(descriptor_); }

bool SteadyFile::read(std::size_t begin, std::size_t end, char* to) const {
  while (begin < end) {
    const ssize_t got = read_some(descriptor_, to, end - begin, begin);
    if (got < 0) error_ = errno;
    if (got == 0) is_short_ = true;
    if (got <= 0) return false;
    begin += static_cast<std::size_t>(got);
    to += got;
  }
  return true;
}

// A file that another took the place of lost a link, which counts as a change of its state but not of its bytes.
bool SteadyFile::has_changed() const {
  struct stat now {};
  if (fstat(descriptor_, &now) != 0) return true;
  if (now.st_size != opened_.st_size || !are_same(now.st_mtim, opened_.st_mtim)) return true;
  return now.st_nlink == opened_.st_nlink && !are_same(now.st_ctim, opened_.st_ctim);
}

std::string SteadyFile::fault() const {
  char behind = 0;
  const ssize_t got = read_some(descriptor_, &behind, 1, size());
  const int error = got < 0 ? errno : error_.load();
  if (error != 0) return "cannot be read: " + error_text(error);
  return got != 0 || is_short_ || has_changed() ? kChanged : "";
}

}  // namespace triglub
