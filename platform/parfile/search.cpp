// Where parameter files are looked for: here, in the folders of the environment, in the data folders.
#include "parfile/search.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdlib>
#include <memory>

#include "base/words.h"

namespace triglub::parfile {

namespace {

bool is_folder(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string data_folder_from(const std::string& library) {
  return library.substr(0, library.find_last_of('/') + 1) + TRIGLUB_DATADIR_FROM_LIBRARY;
}

// The path behind symbolic links; the path itself where it cannot be followed.
std::string resolved(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
  return real == nullptr ? path : real.get();
}

// The data folder as seen from the library's own file, or from the one that a link to it stands for: an installed tree
// can be moved, and a build tree is laid out like one. The configured folder where the library is not part of such a
// tree.
std::string installed_folder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&candidates), &info) == 0 || info.dli_fname == nullptr)
    return TRIGLUB_DATADIR;
  const std::string library = info.dli_fname;
  for (const std::string& folder : {data_folder_from(library), data_folder_from(resolved(library))}) {
    if (is_folder(folder)) return folder;
  }
  return TRIGLUB_DATADIR;
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
