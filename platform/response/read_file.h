// A response file as it comes from the disk.
#ifndef TRIGLUB_PLATFORM_RESPONSE_READ_FILE_H
#define TRIGLUB_PLATFORM_RESPONSE_READ_FILE_H

#include <string>

#include "platform/response_reading.h"

namespace triglub {

// `shown` is the path that a fault names.
ResponseReading read_response_file(const std::string& path, const std::string& shown);

// That of a file that cannot be read for this error (errno).
ResponseReading unread_response(int error, const std::string& shown);

}  // namespace triglub

#endif
