// A file in memory, read only.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_MAPPED_FILE_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_MAPPED_FILE_H

#include <memory>
#include <string>
#include <string_view>

namespace triglub {

class MappedFile {
 public:
  // Maps a regular file. Null, and the reason in *fault, when it cannot be.
  static std::unique_ptr<MappedFile> open(const std::string& path, std::string* fault);
  ~MappedFile();
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  // The bytes; valid as long as the object.
  std::string_view bytes() const { return bytes_; }

 private:
  explicit MappedFile(std::string_view bytes) : bytes_(bytes) {}
  std::string_view bytes_;
};

}  // namespace triglub

#endif
