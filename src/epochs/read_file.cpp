// The fault names the path, as the reader tells it.
#include "epochs/read_file.h"

#include <utility>

namespace triglub {

std::string response_path(std::string_view base, std::string_view folder, std::string_view name) {
  std::string path(folder.starts_with('/') ? "" : base);
  if (!folder.starts_with('/') && !folder.empty()) path += '/';
  path.append(folder).append(1, '/').append(name);
  return path;
}

std::shared_ptr<const ReadFile> read_file(std::string path) {
  auto file = std::make_shared<ReadFile>();
  Response* response = nullptr;
  if (read_response(path.c_str(), &response, &file->fault) == 0) file->response.reset(response);
  file->path = std::move(path);
  return file;
}

}  // namespace triglub
