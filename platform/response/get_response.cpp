// The classic interface: two numbers for all that can go wrong.
#include <string>
#include <utility>

#include "platform/elog.h"
#include "platform/response.h"
#include "response/read_file.h"

namespace {

constexpr int kNotReadable = -1;
constexpr int kNotTheFormat = -2;

}  // namespace

int read_response(const char* path, Response** response, std::string* fault) {
  triglub::ResponseReading reading = triglub::read_response_file(path, path);
  *response = reading.response.release();
  if (reading.status == triglub::ResponseStatus::read) return 0;
  *fault = std::move(reading.fault);
  return reading.status == triglub::ResponseStatus::faulty ? kNotTheFormat : kNotReadable;
}

int get_response(const char* path, Response** response) {
  std::string fault;
  const int status = read_response(path, response, &fault);
  if (status != 0) elog_debug(0, "%s", fault.c_str());
  return status;
}
