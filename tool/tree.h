// `triglub tree`: the element tree of a parameter file, as the document will have it.
#ifndef TRIGLUB_TOOL_TREE_H
#define TRIGLUB_TOOL_TREE_H

#include <string>

namespace triglub::tool {

// What the command line asks for.
struct TreeOptions {
  std::string parameters = "stationxml";
};

// Prints the tree to standard output. The exit status: 0, or 1 when the parameter file has faults (after messages).
int tree(const TreeOptions& options);

}  // namespace triglub::tool

#endif
