// The lines of a file part by part, in memory that does not grow with the file.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_FILE_PARTS_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_FILE_PARTS_H

#include <cstddef>
#include <functional>
#include <string_view>

#include "engine/source/flat/steady_file.h"

namespace triglub {

// Bytes of a line, its end left out. Lines go on behind their row by blanks; what goes on for longer is no table. The
// widest row that a schema can have is shorter.
inline constexpr std::size_t kMaxLineBytes = std::size_t{1} << 20;

// Bytes of a file, from `begin` to before `end`.
struct FileRange {
  std::size_t begin;
  std::size_t end;
};

// Calls work(lines) with the lines of a range, as many as come at once, until it returns false. The bytes are read
// once, and are gone when work returns. A range begins where a line begins. Of a line of more than kMaxLineBytes only
// so much comes that it is seen to be longer. False when work returned false or the file cannot be read, which
// SteadyFile::fault() tells.
bool for_each_part(const SteadyFile& file, FileRange range, const std::function<bool(std::string_view lines)>& work);

}  // namespace triglub

#endif
