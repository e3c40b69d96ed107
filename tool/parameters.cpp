// A file with a fault has had it told by its reader, with the line.
#include "tool/parameters.h"

#include "platform/elog.h"

namespace triglub::tool {

Parameters read_parameters(const std::string& name) {
  Pf* pf = nullptr;
  switch (pfread(name.c_str(), &pf)) {
    case 0:
      return {pf, &pffree};
    case -1:
      elog_die(0, "parameter file %s: not found", name.c_str());
    case -2:
      elog_die(0, "parameter file %s: cannot be read", name.c_str());
    default:
      elog_die(0, "parameter file %s: cannot be used", name.c_str());
  }
}

}  // namespace triglub::tool
