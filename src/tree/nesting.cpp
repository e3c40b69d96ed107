// A group is looked at again only where it stands deeper than before, so each is looked at a few times at most, however
// many ways lead to it.
#include "tree/nesting.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "elements.h"

namespace triglub {

namespace {

class Nesting {
 public:
  explicit Nesting(FaultList* faults) : faults_(faults) {}

  // `line` leads to the group.
  void visit(const TreeGroup& group, long line) {
    if (is_refused(group, line)) return;
    const std::size_t depth = path_.size() + 1;
    std::size_t& seen = depths_[&group];
    if (depth <= seen) return;
    seen = depth;
    path_.push_back(&group);
    for (const TreeLine& element : group.elements) {
      if (element.group != nullptr) visit(*element.group, element.line);
    }
    path_.pop_back();
  }

  bool is_sound() const { return is_sound_; }

 private:
  bool is_refused(const TreeGroup& group, long line) {
    if (std::ranges::count(path_, &group) > 0) return refuse(line, "the group '" + group.key + "' contains itself");
    if (path_.size() < static_cast<std::size_t>(MAX_NODE_DEPTH)) return false;
    return refuse(line, "more than " + std::to_string(MAX_NODE_DEPTH) + " groups inside one another");
  }

  bool refuse(long line, const std::string& what) {
    faults_->add(line, what);
    is_sound_ = false;
    return true;
  }

  FaultList* faults_;
  std::vector<const TreeGroup*> path_;  // from the root down
  std::unordered_map<const TreeGroup*, std::size_t> depths_;
  bool is_sound_ = true;
};

}  // namespace

bool check_nesting(const TreeGroup& root, FaultList* faults) {
  Nesting nesting(faults);
  nesting.visit(root, root.line);
  return nesting.is_sound();
}

}  // namespace triglub
