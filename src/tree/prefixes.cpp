// From the leaves up: a group needs the prefixes of its own names and of what is in it, less those that it declares.
// What the root still needs is declared nowhere.
#include "tree/prefixes.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "xml_text.h"

namespace triglub {

namespace {

constexpr std::string_view kDeclaration = "xmlns";
constexpr std::string_view kBuiltIn = "xml";

struct Use {
  std::string_view name;
  long line;
};
using Uses = std::map<std::string_view, Use>;  // the first of each prefix

void add_use(std::string_view name, long line, Uses* uses) {
  const std::string_view prefix = xml_prefix(name);
  if (!prefix.empty() && prefix != kBuiltIn) uses->emplace(prefix, Use{name, line});
}

bool is_declaration(const TreeLine& attribute) { return xml_prefix(attribute.name) == kDeclaration; }

class Prefixes {
 public:
  const Uses& needed_by(const TreeGroup& group) {
    const auto known = needed_.find(&group);
    if (known != needed_.end()) return known->second;
    Uses uses = used_in(group);
    for (const TreeLine& attribute : group.attributes) {
      if (is_declaration(attribute)) uses.erase(std::string_view(attribute.name).substr(kDeclaration.size() + 1));
    }
    return needed_.emplace(&group, std::move(uses)).first->second;
  }

 private:
  Uses used_in(const TreeGroup& group) {
    Uses uses;
    add_use(group.tag, group.line, &uses);
    for (const TreeLine& attribute : group.attributes) {
      if (!is_declaration(attribute)) add_use(attribute.name, attribute.line, &uses);
    }
    for (const TreeLine& element : group.elements) {
      if (names_element(element.type)) add_use(element.name, element.line, &uses);
      if (element.group != nullptr) uses.merge(Uses(needed_by(*element.group)));
    }
    return uses;
  }

  std::unordered_map<const TreeGroup*, Uses> needed_;
};

}  // namespace

void check_prefixes(const TreeGroup& root, FaultList* faults) {
  Prefixes prefixes;
  for (const auto& [prefix, use] : prefixes.needed_by(root)) {
    faults->add(use.line, "the prefix of '" + std::string(use.name) + "' is not declared: no group around it has an " +
                              "attribute xmlns:" + std::string(prefix));
  }
}

}  // namespace triglub
