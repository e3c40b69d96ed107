// Stands in for check.cpp where triglub is built without the checks, and so without libxml2.
#include "platform/elog.h"
#include "tool/check.h"

namespace triglub::tool {

int check(const CheckOptions& options) {
  elog_die(0, "%s: cannot be checked: this triglub was built without TRIGLUB_CHECKS", options.document.c_str());
}

}  // namespace triglub::tool
