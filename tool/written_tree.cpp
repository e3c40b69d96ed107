// Groups that are yet to be read wait in a list: how they nest is nobody's concern here.
#include "tool/written_tree.h"

#include <string>
#include <vector>

#include "elements.h"

namespace triglub::tool {

namespace {

constexpr const char* kTransparent = "-";

LineType type_of(const ElementDescription& line) {
  if (line.is_numeric_group()) return LineType::number_categories;
  if (line.is_categorized_group()) return LineType::categories;
  if (line.is_group()) return LineType::group;
  if (line.is_stage()) return LineType::stage;
  if (line.is_count()) return LineType::count;
  return line.is_constant() ? LineType::literal : LineType::string;
}

class Reader {
 public:
  explicit Reader(Pf* pf) : pf_(pf) {}

  std::unique_ptr<const WrittenTree> read() {
    tree_->root = group_of(pfget_string(pf_, "root_node"), pf_key_line(pf_, "root_node"));
    while (!unread_.empty()) {
      TreeGroup* const group = unread_.back();
      unread_.pop_back();
      read_group(group);
    }
    return std::move(tree_);
  }

 private:
  const TreeGroup* group_of(const std::string& key, long line) {
    const auto [entry, is_new] = tree_->groups.try_emplace(key);
    TreeGroup* const group = &entry->second;
    if (!is_new) return group;
    group->key = key;
    group->line = line;
    unread_.push_back(group);
    return group;
  }

  void read_group(TreeGroup* group) {
    const std::string name_key = group->key + "{name}";
    const std::string name = pfget_string(pf_, name_key.c_str());
    group->tag_line = pf_key_line(pf_, name_key.c_str());
    group->is_transparent = name == kTransparent;
    if (!group->is_transparent) group->tag = name;
    read_lines(group->key + "{attributes}", &group->attributes);
    read_lines(group->key + "{elements}", &group->elements);
    for (TreeLine& line : group->elements) {
      if (leads_to_group(line.type)) line.group = group_of(line.name, line.line);
    }
  }

  void read_lines(const std::string& key, std::vector<TreeLine>* lines) {
    Tbl* const list = pfget_tbl(pf_, key.c_str());
    for (long i = 0; i < maxtbl(list); ++i) {
      const ElementDescription read(static_cast<const char*>(gettbl(list, i)));
      if (read.is_ignored()) continue;
      TreeLine line;
      line.name = read.name();
      line.type = type_of(read);
      line.keyword = read.type();
      line.value = read.value();
      line.line = pf_line(pf_, key.c_str(), i);
      lines->push_back(std::move(line));
    }
  }

  Pf* pf_;
  std::unique_ptr<WrittenTree> tree_ = std::make_unique<WrittenTree>();
  std::vector<TreeGroup*> unread_;
};

}  // namespace

std::unique_ptr<const WrittenTree> written_tree(Pf* pf) { return Reader(pf).read(); }

}  // namespace triglub::tool
