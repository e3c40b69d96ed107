// The groups are walked as the conversion walks them, each once; places are lines of the parameter file.
#include "tool/check_tree.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "base/characters.h"
#include "element_tree.h"
#include "elements.h"
#include "platform/elog.h"
#include "tool/check_site.h"
#include "tool/written_tree.h"
#include "xml.h"

namespace triglub::tool {

namespace {

class TreeCheck {
 public:
  explicit TreeCheck(Pf* pf) : pf_(pf) {}

  std::unique_ptr<const WrittenTree> run() {
    const char* root = ::pfget_string(pf_, "root_node");
    if (root == nullptr) {
      complain("the key root_node, which names the root group, is missing");
    } else {
      check_group(root, "root_node");
    }
    if (!sound_) return nullptr;
    auto tree = written_tree(pf_);
    check_whole(*tree);
    return sound_ ? std::move(tree) : nullptr;
  }

 private:
  // `named_by` is the place that names the group.
  void check_group(const std::string& group, const std::string& named_by) {
    if (is_open(group, named_by) || !seen_.insert(group).second) return;
    if (!is_defined(group, named_by)) return;
    path_.push_back(group);
    check_lines(group, "{attributes}", false);
    check_lines(group, "{elements}", true);
    path_.pop_back();
  }

  void check_whole(const WrittenTree& tree) {
    tell_all(tree_faults(pf_path(pf_), *tree.root));
    tell_all(site_faults(pf_path(pf_), tree));
    if (!sound_) return;
    for (const auto& [key, group] : tree.groups) check_names(group);
  }

  // The library takes fewer names than XML has: a '.' in a tag is most often a field in the wrong column.
  void check_names(const TreeGroup& group) {
    if (!ElementTag::is_safe(group.tag)) refuse_name(group.tag_line, group.tag);
    for (const TreeLine& line : group.attributes) {
      if (!XmlAttribute().isvalid_name(line.name)) refuse_name(line.line, line.name);
    }
    for (const TreeLine& line : group.elements) {
      if (names_element(line.type) && !ElementTag::is_safe(line.name)) refuse_name(line.line, line.name);
    }
  }

  void refuse_name(long line, const std::string& name) {
    complain(std::to_string(line) + ": '" + name + "' is no name that edition 1 can write");
  }

  void tell_all(const std::vector<std::string>& faults) {
    for (const std::string& fault : faults) elog_complain(0, "%s", fault.c_str());
    if (!faults.empty()) sound_ = false;
  }

  bool is_open(const std::string& group, const std::string& named_by) {
    if (std::find(path_.begin(), path_.end(), group) != path_.end()) {
      complain(named_by + ": the group " + group + " contains itself");
      return true;
    }
    if (path_.size() < static_cast<std::size_t>(MAX_NODE_DEPTH)) return false;
    complain(named_by + ": more than " + std::to_string(MAX_NODE_DEPTH) + " groups inside one another");
    return true;
  }

  bool is_defined(const std::string& group, const std::string& named_by) {
    bool whole = true;
    for (const char* part : {"{name}", "{elements}", "{attributes}"}) {
      const std::string key = group + part;
      const bool is_there = part == std::string("{name}") ? ::pfget_string(pf_, key.c_str()) != nullptr
                                                          : pfget_tbl(pf_, key.c_str()) != nullptr;
      if (is_there) continue;
      complain(std::string(named_by).append(": the group ").append(group).append(" has no ").append(part));
      whole = false;
    }
    return whole;
  }

  void check_lines(const std::string& group, const char* part, bool may_nest) {
    const std::string key = group + part;
    Tbl* lines = pfget_tbl(pf_, key.c_str());
    for (long i = 0; i < maxtbl(lines); ++i) {
      const std::string text = static_cast<const char*>(gettbl(lines, i));
      const ElementDescription line(text.c_str());
      const std::string place = std::to_string(pf_line(pf_, key.c_str(), i)) + ": " + key;
      if (line.is_ignored()) continue;
      if (!is_type_keyword(line.type())) warn_of_type(place, text, line.type());
      if (may_nest && line.leads_to_group()) check_group(line.name(), place);
    }
  }

  // Parameter files live with it that an unknown type is taken as degrees of latitude, so it is no more than
  // suspicious.
  void warn_of_type(const std::string& place, const std::string& line, const std::string& type) const {
    elog_complain(0, "%s:%s: '%s': the type '%s' is not known and is taken as deg_lat", pf_path(pf_), place.c_str(),
                  line.c_str(), type.c_str());
  }

  void complain(const std::string& fault) {
    elog_complain(0, "%s:%s%s", pf_path(pf_), is_digit(fault[0]) ? "" : " ", fault.c_str());
    sound_ = false;
  }

  Pf* pf_;
  std::vector<std::string> path_;  // the groups that are being looked at, from the root down
  std::set<std::string> seen_;
  bool sound_ = true;
};

}  // namespace

std::unique_ptr<const WrittenTree> check_tree(Pf* pf) { return TreeCheck(pf).run(); }

}  // namespace triglub::tool
