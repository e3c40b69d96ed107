// A response file from the disk: read whole, then parsed.
#include <string>
#include <system_error>

#include "base/file_text.h"
#include "platform/elog.h"
#include "platform/response.h"
#include "response/parse.h"

namespace {

constexpr int kNotReadable = -1;
constexpr int kNotTheFormat = -2;

// The fault of a file that could not be read, and the status that goes with it.
int fail(const char* path, const triglub::FileReading& reading, std::string* fault) {
  *fault = std::string(path) + ": ";
  if (reading.fault == triglub::FileFault::too_large) {
    *fault += "larger than the limit of " + std::to_string(MAX_RESPONSE_BYTES) + " bytes";
    return kNotTheFormat;
  }
  const bool is_file = reading.fault != triglub::FileFault::other_kind;
  *fault += "cannot read: " + (is_file ? std::generic_category().message(reading.error) : "not a file");
  return kNotReadable;
}

}  // namespace

int read_response(const char* path, Response** response, std::string* fault) {
  *response = nullptr;
  std::string text;
  const auto reading = triglub::read_file(path, triglub::FileKind::regular, MAX_RESPONSE_BYTES, &text);
  if (reading.fault != triglub::FileFault::none) return fail(path, reading, fault);
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
