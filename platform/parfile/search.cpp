// Where parameter files are looked for: here, in the folders of the environment, in the data folders.
#include "parfile/search.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdlib>

#include "base/words.h"

namespace triglub::parfile {

namespace {

bool is_folder(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The data folder as seen from the library's own file, so that an installed tree can be moved; the configured one where
// the library is not part of such a tree.
std::string installed_folder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&candidates), &info) == 0 || info.dli_fname == nullptr)
    return TRIGLUB_DATADIR;
  const std::string library = info.dli_fname;
  const std::string folder = library.substr(0, library.find_last_of('/') + 1) + TRIGLUB_DATADIR_FROM_LIBRARY;
  return is_folder(folder) ? folder : TRIGLUB_DATADIR;
}

}  // namespace

std::vector<std::string> data_folders() {
  std::vector<std::string> folders;
  const char* listed = std::getenv("TRIGLUB_PFPATH");
  std::string_view rest = listed == nullptr ? "" : listed;
  while (!rest.empty()) {
    const std::string_view folder = take_part(&rest, ':');
    if (!folder.empty()) folders.emplace_back(folder);
  }
  folders.push_back(installed_folder());
  return folders;
}

std::vector<std::string> candidates(std::string_view name) {
  if (name.empty()) return {};
  if (name.find('/') != std::string_view::npos || name.ends_with(".pf")) return {std::string(name)};
  const std::string file = std::string(name) + ".pf";
  std::vector<std::string> paths = {file};
  for (const std::string& folder : data_folders()) paths.emplace_back(folder).append("/").append(file);
  return paths;
}

}  // namespace triglub::parfile
