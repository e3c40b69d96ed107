// The file that a path leads to, also where there is none yet.
#ifndef TRIGLUB_TOOL_LINK_TARGET_H
#define TRIGLUB_TOOL_LINK_TARGET_H

#include <string>

namespace triglub::tool {

// The path behind the symbolic links that the last part of the path is, one after the other: no link itself, and
// perhaps nothing. The path as it was where the links go in a circle.
std::string link_target(std::string path);

}  // namespace triglub::tool

#endif
