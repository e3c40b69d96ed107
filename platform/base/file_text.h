// A file read whole into memory.
#ifndef TRIGLUB_BASE_FILE_TEXT_H
#define TRIGLUB_BASE_FILE_TEXT_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace triglub {

enum class FileFault : std::uint8_t { none, unreadable, other_kind, too_large };

struct FileReading {
  FileFault fault = FileFault::none;
  int error = 0;  // of an unreadable file: what errno was
};

// Reads a regular file into *text, in place of what that held. Anything else, a device or a pipe, is of another kind
// and is not waited for. A file of more than `limit` bytes is too large, also when it grows beyond while it is read or
// has no end; hardly more than the limit is ever held of it. *text is unspecified after a fault.
FileReading read_file(const std::string& path, std::size_t limit, std::string* text);

// What is wrong with the file, for people: "not a regular file". REQUIRES: there is a fault.
std::string fault_text(const FileReading& reading, std::size_t limit);

}  // namespace triglub

#endif
