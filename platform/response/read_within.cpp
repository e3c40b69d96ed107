// A path is judged by where it leads in the end, so that neither dots nor links lead out; what is then read is the
// place that was judged. Of a path that leads to nothing, as much of it is judged as there is: nobody learns here which
// files there are elsewhere.
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

#include "response/read_file.h"

namespace triglub {

namespace {

struct RealPath {
  std::string path;
  int error = 0;  // why it is not known to lead anywhere
};

// As far as it leads, with what is left of it taken as written.
std::string path_so_far(const std::string& path) {
  std::error_code error;
  const std::filesystem::path known = std::filesystem::weakly_canonical(path, error);
  if (!error) return known.string();
  return std::filesystem::absolute(path, error).lexically_normal().string();
}

RealPath real_path(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
  if (real != nullptr) return {std::string(real.get())};
  const int error = errno;
  return {path_so_far(path), error};
}

bool is_below(std::string_view path, std::string_view folder) {
  if (folder == "/") return true;
  return path.starts_with(folder) && path.substr(folder.size()).starts_with('/');
}

ResponseReading refusal(const std::string& path, const std::string& within) {
  ResponseReading reading;
  reading.status = ResponseStatus::outside;
  reading.fault = path + ": outside of " + within + " (--follow-outside reads it)";
  return reading;
}

}  // namespace

ResponseReading read_response_within(const std::string& path, const std::string& within) {
  if (within.empty()) return read_response_file(path, path);
  const RealPath folder = real_path(within);
  const RealPath file = real_path(path);
  if (folder.error != 0) return unread_response(folder.error, within);
  if (!is_below(file.path, folder.path)) return refusal(path, within);
  return file.error == 0 ? read_response_file(file.path, path) : unread_response(file.error, path);
}

}  // namespace triglub
