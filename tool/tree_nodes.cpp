// Both editions have lines that lead to groups; they are brought into one form first.
#include "tool/tree_nodes.h"

#include <map>
#include <set>
#include <string_view>

#include "elements.h"

namespace triglub::tool {

namespace {

// The level of detail down to which a document has to go to hold an element of that tag; empty when any does.
std::string first_level(const std::string& tag) {
  static const std::map<std::string, std::string> levels = {
      {"Station", "station"}, {"Channel", "channel"}, {"Stage", "response"}};
  const auto found = levels.find(tag);
  return found == levels.end() ? "" : "(from level " + found->second + " on)";
}

std::string in_parentheses(const std::string& name) { return "(" + name + ")"; }

TreeNode stage_node(const std::string& name) {
  return {in_parentheses(name), "", "STAGE", "filter, decimation and gain of the stage", "", {}};
}

// How often a group is written, by the keyword of the line that leads to it.
void describe_group(const std::string& keyword, const std::string& value, TreeNode* node) {
  if (keyword == "GROUP") return;
  node->type = "for each";
  node->value = value + (keyword == "CATEGORIZED_BY_NUMBER" ? ", by number" : "");
}

// Of a text of site.pf the key is long enough.
std::string shown_type(const std::string& keyword) { return keyword == "other_pf:site" ? "site.pf" : keyword; }

class Nodes2 {
 public:
  TreeNode group_node(const TreeGroup& group) {
    TreeNode node;
    node.name = group.is_transparent ? in_parentheses(group.key) : group.tag;
    node.note = first_level(group.tag);
    if (seen_.insert(&group).second) {
      add_children(group, &node);
    } else if (!group.attributes.empty() || !group.elements.empty()) {
      node.note += node.note.empty() ? "(as above)" : " (as above)";
    }
    return node;
  }

 private:
  void add_children(const TreeGroup& group, TreeNode* node) {
    for (const TreeLine& line : group.attributes) node->children.push_back(line_node(line, "@"));
    for (const TreeLine& line : group.elements) node->children.push_back(line_node(line, ""));
  }

  TreeNode line_node(const TreeLine& line, const std::string& before_name) {
    TreeNode node = unmarked(line, before_name);
    if (line.is_required) node.mark = "required";
    if (line.is_optional) node.mark = "optional";
    return node;
  }

  TreeNode unmarked(const TreeLine& line, const std::string& before_name) {
    if (line.type == LineType::stage) return stage_node(line.name);
    const std::string name = line.is_content() ? in_parentheses("text") : before_name + line.name;
    if (line.group == nullptr) return {name, "", shown_type(line.keyword), line.value, "", {}};
    TreeNode node = group_node(*line.group);
    describe_group(line.keyword, line.value, &node);
    return node;
  }

  std::set<const TreeGroup*> seen_;
};

class Nodes1 {
 public:
  explicit Nodes1(Pf* pf) : pf_(pf) {}

  TreeNode group_node(const std::string& key) {
    const ElementGroup group(pf_, key);
    TreeNode node;
    node.name = group.name() == "-" ? in_parentheses(key) : group.name();
    node.note = first_level(group.name());
    if (seen_.insert(key).second) {
      add_children(group, &node);
    } else if (group.attribute_count() + group.element_count() > 0) {
      node.note += node.note.empty() ? "(as above)" : " (as above)";
    }
    return node;
  }

 private:
  void add_children(const ElementGroup& group, TreeNode* node) {
    for (std::size_t i = 0; i < group.attribute_count(); ++i) add_line(group.attribute(i), "@", node);
    for (std::size_t i = 0; i < group.element_count(); ++i) add_line(group[i], "", node);
  }

  void add_line(const ElementDescription& line, const std::string& before_name, TreeNode* node) {
    if (!line.is_ignored()) node->children.push_back(line_node(line, before_name));
  }

  TreeNode line_node(const ElementDescription& line, const std::string& before_name) {
    if (line.is_stage()) return stage_node(line.name());
    if (!line.leads_to_group()) return {before_name + line.name(), "", shown_type(line.type()), line.value(), "", {}};
    TreeNode node = group_node(line.name());
    describe_group(line.type(), line.value(), &node);
    return node;
  }

  Pf* pf_;
  std::set<std::string> seen_;
};

}  // namespace

TreeNode tree_nodes(const ElementTree& tree) { return Nodes2().group_node(tree.root()); }

TreeNode tree_nodes(Pf* pf) { return Nodes1(pf).group_node(pfget_string(pf, "root_node")); }

}  // namespace triglub::tool
