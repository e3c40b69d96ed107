// The fault names the path, as the reader tells it.
#include "epochs/read_file.h"

#include <utility>

#include "fatal_failure.h"

namespace triglub {

std::string response_path(std::string_view base, std::string_view folder, std::string_view name) {
  std::string path(folder.starts_with('/') ? "" : base);
  if (!folder.starts_with('/') && !folder.empty()) path += '/';
  path.append(folder).append(1, '/').append(name);
  return path;
}

std::shared_ptr<const ReadFile> read_file(std::string path, const std::string& base, ResponseReach reach) {
  const std::string folder = base.empty() ? "." : base;
  ResponseReading reading = read_response_within(path, reach == ResponseReach::anywhere ? "" : folder);
  if (reading.status == ResponseStatus::failed) throw FatalFailure(reading.fault);
  return std::make_shared<ReadFile>(ReadFile{std::move(path), std::move(reading.response), std::move(reading.fault)});
}

}  // namespace triglub
