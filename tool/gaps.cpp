// What is missing is told at the end, a fault at once: the conversion goes no further.
#include "tool/gaps.h"

#include "platform/elog.h"

namespace triglub::tool {

void Gaps::left_out(const std::string& reason, const std::string& name) { findings_.add(Rank::warning, reason, name); }

void Gaps::fault(const std::string& text) {
  if (++faults_ <= kFaultsTold) elog_complain(0, "%s", text.c_str());
}

}  // namespace triglub::tool
