// A file read whole into memory.
#ifndef TRIGLUB_BASE_FILE_TEXT_H
#define TRIGLUB_BASE_FILE_TEXT_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace triglub {

// What a path may lead to. `any`: a device or a pipe as well, whose other end is waited for.
enum class FileKind : std::uint8_t { regular, any };

enum class FileFault : std::uint8_t { none, unreadable, other_kind, too_large };

struct FileReading {
  FileFault fault = FileFault::none;
  int error = 0;  // of an unreadable file: what errno was
};

// Reads the file into *text, in place of what that held. A file of more than `limit` bytes is too large, also when it
// grows beyond while it is read or has no end; hardly more than the limit is ever held of it. *text is unspecified
// after a fault.
FileReading read_file(const std::string& path, FileKind kind, std::size_t limit, std::string* text);

}  // namespace triglub

#endif
