// What is left out is counted by reason and told in one line each; the first few are named.
#include "tool/findings.h"

#include "platform/elog.h"

namespace triglub::tool {

namespace {

constexpr std::size_t kNamesTold = 5;

}  // namespace

void Findings::left_out(const std::string& reason, const std::string& name) {
  Names& names = reasons_[reason];
  ++names.count;
  if (names.first.size() < kNamesTold) names.first.push_back(name);
}

void Findings::fault(const std::string& text) {
  any_fault_ = true;
  elog_complain(0, "%s", text.c_str());
}

void Findings::report() const {
  for (const auto& [reason, names] : reasons_) {
    std::string list;
    for (const std::string& name : names.first) list += (list.empty() ? "" : ", ") + name;
    const char* more = names.count > static_cast<long>(names.first.size()) ? ", ..." : "";
    elog_complain(0, "%s: %ld (%s%s)", reason.c_str(), names.count, list.c_str(), more);
  }
}

}  // namespace triglub::tool
