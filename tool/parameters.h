// The parameter file that the command line names.
#ifndef TRIGLUB_TOOL_PARAMETERS_H
#define TRIGLUB_TOOL_PARAMETERS_H

#include <memory>
#include <string>

#include "platform/parfile.h"

namespace triglub::tool {

using Parameters = std::unique_ptr<Pf, decltype(&pffree)>;

// Ends the process, after a message, when there is none to be had.
Parameters read_parameters(const std::string& name);

}  // namespace triglub::tool

#endif
