// The file is looked for where the library looks for it, and only when a line asks for it.
#include "tool/check_site.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "platform/parfile.h"

namespace triglub::tool {

namespace {

constexpr const char* kSite = "site";
constexpr const char* kSiteKeyword = "other_pf:site";

class SiteCheck {
 public:
  explicit SiteCheck(std::string path) : path_(std::move(path)) {}

  void look_at(const std::vector<TreeLine>& lines) {
    for (const TreeLine& line : lines) {
      if (line.keyword != kSiteKeyword) continue;
      const std::string fault = fault_of(line);
      if (!fault.empty()) faults_.push_back(path_ + ":" + std::to_string(line.line) + ": " + fault);
    }
  }
  std::vector<std::string> take() { return std::move(faults_); }

 private:
  std::string fault_of(const TreeLine& line) {
    if (line.value.empty()) return "'" + line.name + "' has no value: which key of the parameter file site?";
    if (!status_) read();
    const std::string key = "key '" + line.value + "'";
    if (*status_ != 0) {
      return "the " + key + ": the parameter file site " + (*status_ == -1 ? "is not found" : "cannot be read");
    }
    const bool is_there = ::pfget_string(site_.get(), line.value.c_str()) != nullptr;
    return is_there ? "" : pf_path(site_.get()) + (" has no " + key);
  }

  void read() {
    Pf* site = nullptr;
    status_ = pfread(kSite, &site);
    site_.reset(site);
  }

  std::string path_;
  std::optional<int> status_;  // of reading
  std::unique_ptr<Pf, decltype(&pffree)> site_{nullptr, &pffree};
  std::vector<std::string> faults_;
};

bool is_asked_for(const std::vector<TreeLine>& lines) {
  return std::any_of(lines.begin(), lines.end(), [](const TreeLine& line) { return line.keyword == kSiteKeyword; });
}

}  // namespace

std::vector<std::string> site_faults(const std::string& path, const WrittenTree& tree) {
  SiteCheck check(path);
  for (const auto& [key, group] : tree.groups) {
    check.look_at(group.attributes);
    check.look_at(group.elements);
  }
  return check.take();
}

Parameters read_site(Pf* pf) {
  const auto tree = written_tree(pf);
  const bool is_used = std::any_of(tree->groups.begin(), tree->groups.end(), [](const auto& entry) {
    return is_asked_for(entry.second.attributes) || is_asked_for(entry.second.elements);
  });
  return is_used ? read_parameters(kSite) : Parameters(nullptr, &pffree);
}

}  // namespace triglub::tool
