// `triglub check`: a document against the rules of data centres.
#ifndef TRIGLUB_TOOL_CHECK_H
#define TRIGLUB_TOOL_CHECK_H

#include <string>

namespace triglub::tool {

// What the command line asks for.
struct CheckOptions {
  std::string document;  // a file; -: standard input
  bool strict = false;
};

// Prints the findings to standard output, those of a station below its codes, and a line that sums them up. The exit
// status: 0, or 1 when there are errors, or warnings where `strict` is set. Ends the process, after a message, when the
// document cannot be read.
int check(const CheckOptions& options);

}  // namespace triglub::tool

#endif
