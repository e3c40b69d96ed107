// Bytes to a descriptor, all of them or a fatal report; and back from one.
#ifndef TRIGLUB_TOOL_WRITE_PARTS_H
#define TRIGLUB_TOOL_WRITE_PARTS_H

#include <sys/types.h>
#include <sys/uio.h>

#include <cstddef>
#include <string>
#include <vector>

namespace triglub::tool {

// "NAME: cannot be written: " and what errno says: a fatal report, for nothing that follows it could be of use.
[[noreturn]] void die_of_writing(const std::string& name);

// Writes all bytes of the parts, one after the other. `name` is what a failure is reported under, by die_of_writing().
void write_parts(int descriptor, const std::string& name, std::vector<iovec> parts);

// Writes all that stands in a file, from its beginning. `name` as above.
void write_file(int descriptor, const std::string& name, int file);

// As pread(2), again when a signal has come in between.
ssize_t read_at(int file, off_t begin, void* to, std::size_t most);

}  // namespace triglub::tool

#endif
