// Groups are read from the root on, each once, however many lines lead to it. How they nest is looked at when all are
// there.
#include "element_tree.h"

#include <utility>

#include "tree/fault_list.h"
#include "tree/group_reader.h"
#include "tree/top_level.h"
#include "tree/tree_faults.h"
#include "tree/tree_options.h"

namespace triglub {

std::unique_ptr<const ElementTree> ElementTree::read(Pf* pf, const ExpressionCheck& check,
                                                     std::vector<std::string>* faults) {
  FaultList found(pf_path(pf));
  TreeGroups groups;
  check_top_level(pf, &found);
  TreeOptions options = read_options(pf, &found);
  const TreeGroup* root = GroupReader(pf, check, &groups, &found).read_all();
  if (root != nullptr) check_whole(*root, &found);
  *faults = found.texts();
  if (!faults->empty()) return nullptr;
  return std::unique_ptr<const ElementTree>(new ElementTree(pf_path(pf), std::move(options), std::move(groups), root));
}

// Groups of a map that is moved stay where they are.
ElementTree::ElementTree(std::string path, TreeOptions options, TreeGroups groups, const TreeGroup* root)
    : path_(std::move(path)), options_(std::move(options)), groups_(std::move(groups)), root_(root) {}

std::string ElementTree::place(const TreeLine& line) const { return place_text(path_, line.line); }

}  // namespace triglub
