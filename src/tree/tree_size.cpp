// A few groups of a few lines each that lead to one another make a tree without end in sight: each group is counted
// once, and counts as often as lines lead to it.
#include "tree/tree_size.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "platform/limits.h"

namespace triglub {

namespace {

class Sizes {
 public:
  explicit Sizes(FaultList* faults) : faults_(faults) {}

  // Of the group's element with all in it; more than the limit is one more. A group without an element of its own
  // counts too, for it takes its time.
  std::uint64_t of(const TreeGroup& group) {
    const auto known = sizes_.find(&group);
    if (known != sizes_.end()) return known->second;
    std::uint64_t size = 1 + group.attributes.size();
    for (const TreeLine& line : group.elements) {
      const std::uint64_t own = line.group == nullptr ? 1 : of(*line.group);
      // Told where it begins, not at all lines that lead there.
      if (size <= most_ && own <= most_ && size + own > most_) refuse(group, line);
      size += own;
    }
    return sizes_[&group] = std::min(size, most_ + 1);
  }

 private:
  void refuse(const TreeGroup& group, const TreeLine& line) {
    faults_->add(line.line, "'" + line.name + "' gives the group '" + group.key + "' " + beyond(Limit::tree_elements));
  }

  const std::uint64_t most_ = limit(Limit::tree_elements);
  FaultList* faults_;
  std::unordered_map<const TreeGroup*, std::uint64_t> sizes_;
};

}  // namespace

void check_size(const TreeGroup& root, FaultList* faults) { Sizes(faults).of(root); }

}  // namespace triglub
