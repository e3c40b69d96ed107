// A response file as it was read, for all who need something of it: a file may change, and is read once.
#ifndef TRIGLUB_SRC_EPOCHS_READ_FILE_H
#define TRIGLUB_SRC_EPOCHS_READ_FILE_H

#include <memory>
#include <string>
#include <string_view>

#include "platform/response_reading.h"

namespace triglub {

// Does not change: threads may share it.
struct ReadFile {
  std::string path;
  std::unique_ptr<Response, decltype(&free_response)> response{nullptr, &free_response};  // null with a fault
  std::string fault;  // "resp/x.fir:12: expected 31 numerators, found 7"
};

// The path of a file that a row names. `base` is the folder of the row's table; `folder` is empty for none, and beside
// the table unless it begins with a slash.
std::string response_path(std::string_view base, std::string_view folder, std::string_view name);

// Reads a file that a row of a table names whose folder is `base`. Never null. Throws FatalFailure where the machine
// could not read it: a document that lacks stages for that looks as right as the next one, which has them.
std::shared_ptr<const ReadFile> read_file(std::string path, const std::string& base, ResponseReach reach);

}  // namespace triglub

#endif
