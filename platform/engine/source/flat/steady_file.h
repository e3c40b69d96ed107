// A regular file that has to stay as it is while it is read.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_STEADY_FILE_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_STEADY_FILE_H

#include <sys/stat.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>

namespace triglub {

class SteadyFile {
 public:
  // Opens a regular file. Null, and the reason in *fault, when it cannot be.
  static std::unique_ptr<SteadyFile> open(const std::string& path, std::string* fault);
  ~SteadyFile();
  SteadyFile(const SteadyFile&) = delete;
  SteadyFile& operator=(const SteadyFile&) = delete;

  // Its bytes when it was opened.
  std::size_t size() const { return static_cast<std::size_t>(opened_.st_size); }

  // Reads the bytes from `begin` to before `end` into `to`. False when the file cannot be read or does not have them
  // any more: fault() tells. Safe for concurrent use.
  // REQUIRES: end <= size().
  bool read(std::size_t begin, std::size_t end, char* to) const;

  // Why what was read is not to be trusted: a read that failed, or a file that is no longer what it was when it was
  // opened. Empty when all is well.
  std::string fault() const;

 private:
  SteadyFile(int descriptor, const struct stat& opened) : descriptor_(descriptor), opened_(opened) {}
  bool has_changed() const;

  int descriptor_;
  struct stat opened_;
  mutable std::atomic<int> error_ = 0;  // errno of a read that failed
  mutable std::atomic<bool> is_short_ = false;
};

}  // namespace triglub

#endif
