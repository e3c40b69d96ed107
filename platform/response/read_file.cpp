// The file is read whole, then parsed. What a path leads to that is no use is told apart from what the machine could
// not do: with the same tables on another day the latter gives another document.
#include "response/read_file.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "base/file_text.h"
#include "platform/limits.h"
#include "response/parse.h"

namespace triglub {

namespace {

ResponseReading fault_of(ResponseStatus status, std::string fault) {
  ResponseReading reading;
  reading.status = status;
  reading.fault = std::move(fault);
  return reading;
}

ResponseStatus status_of(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return ResponseStatus::missing;
    case EACCES:
    case EPERM:
    case EISDIR:
    case ELOOP:
    case ENAMETOOLONG:
    case ENXIO:
      return ResponseStatus::unreadable;
    default:
      return ResponseStatus::failed;
  }
}

ResponseReading parsed(const std::string& text, const std::string& shown) {
  ResponseReading reading;
  ResponseFault fault;
  reading.response.reset(parse_response(text, &fault).release());
  reading.status = reading.response == nullptr ? ResponseStatus::faulty : ResponseStatus::read;
  if (reading.response == nullptr) reading.fault = shown + ":" + std::to_string(fault.line) + ": " + fault.text;
  return reading;
}

}  // namespace

ResponseReading unread_response(int error, const std::string& shown) {
  return fault_of(status_of(error), shown + ": cannot read: " + std::generic_category().message(error));
}

ResponseReading read_response_file(const std::string& path, const std::string& shown) {
  std::string text;
  const FileReading file = read_file(path, limit(Limit::response_bytes), &text);
  switch (file.fault) {
    case FileFault::none:
      return parsed(text, shown);
    case FileFault::too_large:
      return fault_of(ResponseStatus::faulty, shown + ": " + beyond(Limit::response_bytes));
    case FileFault::other_kind:
      return fault_of(ResponseStatus::unreadable, shown + ": cannot read: not a regular file");
    case FileFault::unreadable:
      break;
  }
  return unread_response(file.error, shown);
}

}  // namespace triglub
