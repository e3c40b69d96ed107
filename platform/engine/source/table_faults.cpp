// Counts every fault and words the complaints.
#include "engine/source/table_faults.h"

#include "platform/elog.h"

namespace triglub {

namespace {

constexpr std::uint64_t kMaxComplaints = 20;

}  // namespace

void TableFaults::tell(const std::string& row, const std::string& field, const std::string& fault) {
  if (++count_ > kMaxComplaints) return;
  const std::string where = field.empty() ? "" : " field " + table_ + "." + field + ":";
  elog_complain(0, "%s:%s %s", row.c_str(), where.c_str(), fault.c_str());
}

void TableFaults::conclude() const {
  if (count_ > kMaxComplaints) {
    elog_complain(0, "%s: %llu faults in all, the first %llu are named", place_.c_str(),
                  static_cast<unsigned long long>(count_), static_cast<unsigned long long>(kMaxComplaints));
  }
  elog_complain(0, "%s: table %s is not loaded", place_.c_str(), table_.c_str());
}

}  // namespace triglub
