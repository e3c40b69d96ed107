// What the system took only a part of is offered again from there on.
#include "tool/write_parts.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include "platform/elog.h"

namespace triglub::tool {

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 18;

}  // namespace

ssize_t read_at(int file, off_t begin, void* to, std::size_t most) {
  ssize_t count = -1;
  do {
    count = pread(file, to, most, begin);
  } while (count < 0 && errno == EINTR);
  return count;
}

void die_of_writing(const std::string& name) {
  elog_die(0, "%s: cannot be written: %s", name.c_str(), std::strerror(errno));
}

void write_parts(int descriptor, const std::string& name, std::vector<iovec> parts) {
  for (auto part = parts.begin(); part != parts.end();) {
    const auto count = std::min<std::ptrdiff_t>(parts.end() - part, IOV_MAX);
    const ssize_t result = ::writev(descriptor, &*part, static_cast<int>(count));
    if (result < 0 && errno == EINTR) continue;
    if (result < 0) die_of_writing(name);
    auto written = static_cast<std::size_t>(result);
    for (; part != parts.end() && written >= part->iov_len; ++part) written -= part->iov_len;
    if (written > 0) *part = {static_cast<char*>(part->iov_base) + written, part->iov_len - written};
  }
}

void write_file(int descriptor, const std::string& name, int file) {
  std::vector<char> piece(kPiece);
  ssize_t count = 0;
  for (off_t begin = 0; (count = read_at(file, begin, piece.data(), piece.size())) != 0; begin += count) {
    if (count < 0) die_of_writing(name);
    write_parts(descriptor, name, {{piece.data(), static_cast<std::size_t>(count)}});
  }
}

}  // namespace triglub::tool
