// A response file from the disk: read whole, then parsed.
#include <string>

#include "base/file_text.h"
#include "platform/elog.h"
#include "platform/limits.h"
#include "platform/response.h"
#include "response/parse.h"

namespace {

constexpr int kNotReadable = -1;
constexpr int kNotTheFormat = -2;

// The fault of a file that could not be read, and the status that goes with it.
int fail(const char* path, const triglub::FileReading& reading, std::size_t most, std::string* fault) {
  *fault = std::string(path) + ": ";
  if (reading.fault == triglub::FileFault::too_large) {
    *fault += triglub::beyond(triglub::Limit::response_bytes);
    return kNotTheFormat;
  }
  *fault += "cannot read: " + fault_text(reading, most);
  return kNotReadable;
}

}  // namespace

int read_response(const char* path, Response** response, std::string* fault) {
  *response = nullptr;
  std::string text;
  const std::size_t most = triglub::limit(triglub::Limit::response_bytes);
  const auto reading = triglub::read_file(path, most, &text);
  if (reading.fault != triglub::FileFault::none) return fail(path, reading, most, fault);
  triglub::ResponseFault place;
  *response = triglub::parse_response(text, &place).release();
  if (*response != nullptr) return 0;
  *fault = std::string(path) + ":" + std::to_string(place.line) + ": " + place.text;
  return kNotTheFormat;
}

int get_response(const char* path, Response** response) {
  std::string fault;
  const int status = read_response(path, response, &fault);
  if (status != 0) elog_debug(0, "%s", fault.c_str());
  return status;
}
