// The fault names the path, as the reader tells it.
#include "epochs/read_file.h"

#include <utility>

namespace triglub {

std::shared_ptr<const ReadFile> read_file(std::string path) {
  auto file = std::make_shared<ReadFile>();
  Response* response = nullptr;
  if (read_response(path.c_str(), &response, &file->fault) == 0) file->response.reset(response);
  file->path = std::move(path);
  return file;
}

}  // namespace triglub
