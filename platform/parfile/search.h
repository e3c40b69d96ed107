// Where parameter files and schemas are looked for.
#ifndef TRIGLUB_PARFILE_SEARCH_H
#define TRIGLUB_PARFILE_SEARCH_H

#include <string>
#include <string_view>
#include <vector>

namespace triglub::parfile {

// The folders that data files are looked for in: those of TRIGLUB_PFPATH, then triglub's own, which is found from where
// the library is.
std::vector<std::string> data_folders();

// The paths to try for a name, the first one first.
std::vector<std::string> candidates(std::string_view name);

}  // namespace triglub::parfile

#endif
