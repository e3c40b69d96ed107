// A response file as it was read, for all who need something of it: a file may change, and is read once.
#ifndef TRIGLUB_SRC_EPOCHS_READ_FILE_H
#define TRIGLUB_SRC_EPOCHS_READ_FILE_H

#include <memory>
#include <string>
#include <string_view>

#include "platform/response.h"

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

// Never null.
std::shared_ptr<const ReadFile> read_file(std::string path);

}  // namespace triglub

#endif
