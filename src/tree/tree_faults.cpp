// Groups that nest without an end have neither prefixes nor a size.
#include "tree/tree_faults.h"

#include <set>

#include "tree/names.h"
#include "tree/nesting.h"
#include "tree/prefixes.h"
#include "tree/tree_size.h"

namespace triglub {

namespace {

void check_names_below(const TreeGroup& group, std::set<const TreeGroup*>* seen, FaultList* faults) {
  if (!seen->insert(&group).second) return;
  if (!group.is_transparent) check_tag(group, faults);
  check_lines(group, faults);
  for (const TreeLine& line : group.elements) {
    if (line.group != nullptr) check_names_below(*line.group, seen, faults);
  }
}

}  // namespace

bool check_whole(const TreeGroup& root, FaultList* faults) {
  if (!check_nesting(root, faults)) return false;
  check_prefixes(root, faults);
  check_size(root, faults);
  return true;
}

std::vector<std::string> tree_faults(const std::string& path, const TreeGroup& root) {
  FaultList faults(path);
  std::set<const TreeGroup*> seen;
  if (check_whole(root, &faults)) check_names_below(root, &seen, &faults);
  return faults.texts();
}

}  // namespace triglub
