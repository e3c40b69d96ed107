// Response files that rows name: where they may be, and why one cannot be had.
//
// Rows are data, which may come from anywhere: what they name is a path, and a path leads to any file of the machine.
#ifndef TRIGLUB_PLATFORM_RESPONSE_READING_H
#define TRIGLUB_PLATFORM_RESPONSE_READING_H

#include <cstdint>
#include <memory>
#include <string>

#include "platform/export.h"
#include "platform/response.h"

namespace triglub {

// Which files rows may name: any, or those in the folder of their table and below it.
enum class ResponseReach : bool { anywhere, below_table };

enum class ResponseStatus : std::uint8_t {
  read,
  missing,     // there is no such file
  unreadable,  // it is not to be read: no permission, not a file, links without an end
  failed,      // the machine could not: too many open files, a fault of the disk
  outside,     // it is not where it has to be
  faulty,      // it does not hold to the format, or is beyond a limit
};

struct ResponseReading {
  ResponseStatus status = ResponseStatus::missing;
  std::unique_ptr<Response, decltype(&free_response)> response{nullptr, &free_response};  // null unless it was read
  std::string fault;  // names the path, and the line: "resp/x.fir:12: expected 31 numerators, found 7"; empty if read
};

// Reads the file. One that is not in the folder `within` or below it, all links followed, is outside, and nothing of it
// is read; an empty `within` is anywhere. Nothing goes to the log.
TRIGLUB_API ResponseReading read_response_within(const std::string& path, const std::string& within);

}  // namespace triglub

#endif
