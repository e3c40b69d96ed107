// The text of a response file as groups and filters.
#ifndef TRIGLUB_RESPONSE_PARSE_H
#define TRIGLUB_RESPONSE_PARSE_H

#include <memory>
#include <string>
#include <string_view>

#include "platform/response.h"

namespace triglub {

struct FreeResponse {
  void operator()(Response* response) const { free_response(response); }
};
using ResponsePointer = std::unique_ptr<Response, FreeResponse>;

// What does not hold to the format, and where.
struct ResponseFault {
  long line = 0;  // from 1
  std::string text;
};

// The response, or null and the first fault.
ResponsePointer parse_response(std::string_view text, ResponseFault* fault);

}  // namespace triglub

#endif
