#include "parfile/search.h"

#include <cstdlib>

namespace triglub::parfile {

std::vector<std::string> candidates(std::string_view name) {
  if (name.empty()) return {};
  if (name.find('/') != std::string_view::npos || name.ends_with(".pf")) return {std::string(name)};
  const std::string file = std::string(name) + ".pf";
  std::vector<std::string> paths = {file};
  const char* listed = std::getenv("TRIGLUB_PFPATH");
  std::string_view folders = listed == nullptr ? "" : listed;
  while (!folders.empty()) {
    const std::string_view folder = folders.substr(0, folders.find(':'));
    folders.remove_prefix(std::min(folder.size() + 1, folders.size()));
    if (!folder.empty()) paths.push_back(std::string(folder) + "/" + file);
  }
  paths.push_back(TRIGLUB_DATADIR "/" + file);
  return paths;
}

}  // namespace triglub::parfile
