// A response file from the disk: read whole, then parsed.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "platform/elog.h"
#include "platform/response.h"
#include "response/parse.h"

namespace {

constexpr int kNotReadable = -1;
constexpr int kNotTheFormat = -2;

class File {
 public:
  // Does not wait for the other end when the path is a pipe.
  explicit File(const char* path) : descriptor_(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

int cannot_read(const char* path, std::string* fault) {
  *fault = std::string(path) + ": cannot read: " + std::generic_category().message(errno);
  return kNotReadable;
}

int too_large(const char* path, std::string* fault) {
  *fault = std::string(path) + ": larger than the limit of " + std::to_string(MAX_RESPONSE_BYTES) + " bytes";
  return kNotTheFormat;
}

// The file's bytes; 0, or the status and the fault.
int read_file(const char* path, std::string* text, std::string* fault) {
  const File file(path);
  struct stat status {};
  if (file.descriptor() < 0 || fstat(file.descriptor(), &status) != 0) return cannot_read(path, fault);
  if (!S_ISREG(status.st_mode)) {
    *fault = std::string(path) + ": cannot read: not a file";
    return kNotReadable;
  }
  if (status.st_size > MAX_RESPONSE_BYTES) return too_large(path, fault);
  // One byte more than there should be, so that a file that has grown in between is noticed.
  text->resize(static_cast<std::size_t>(status.st_size) + 1);
  std::size_t size = 0;
  while (true) {
    if (size == text->size()) text->resize(2 * size);
    const ssize_t got = read(file.descriptor(), text->data() + size, text->size() - size);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return cannot_read(path, fault);
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
    if (size > static_cast<std::size_t>(MAX_RESPONSE_BYTES)) return too_large(path, fault);
  }
  text->resize(size);
  return 0;
}

}  // namespace

int read_response(const char* path, Response** response, std::string* fault) {
  *response = nullptr;
  std::string text;
  const int status = read_file(path, &text, fault);
  if (status != 0) return status;
  triglub::ResponseFault place;
  *response = triglub::parse_response(text, &place).release();
  if (*response != nullptr) return 0;
  *fault = std::string(path) + ":" + std::to_string(place.line) + ": " + place.text;
  return kNotTheFormat;
}

int get_response(const char* path, Response** response) {
  std::string fault;
  const int status = read_response(path, response, &fault);
  if (status != 0) elog_debug(0, "%s", fault.c_str());
  return status;
}
