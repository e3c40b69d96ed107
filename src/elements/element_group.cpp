// Group definitions of the element tree, and the walk over all of them.
#include <algorithm>
#include <stdexcept>

#include "elements.h"
#include "platform/parfile.h"

namespace {

[[noreturn]] void fail_missing(const std::string& group, const char* what) {
  throw std::runtime_error("parameter file: group [" + group + "] has no " + what);
}

// A list may be empty, but not missing: a group without one is a misspelt name more often than an empty group.
std::vector<ElementDescription> lines_of(Tbl* list, const std::string& group, const char* what) {
  if (list == nullptr) fail_missing(group, what);
  return Tbl2ElementDescription(list);
}

}  // namespace

std::string get_group_name(Pf* pf, std::string group) {
  const char* name = pfget_string(pf, (group + "{name}").c_str());
  if (name == nullptr) fail_missing(group, "name");
  return name;
}

Tbl* get_group_elements(Pf* pf, std::string group) { return pfget_tbl(pf, (group + "{elements}").c_str()); }

Tbl* get_group_attributes(Pf* pf, std::string group) { return pfget_tbl(pf, (group + "{attributes}").c_str()); }

ElementGroup::ElementGroup(Pf* pf, std::string group) : name_(get_group_name(pf, group)) {
  elements_ = lines_of(get_group_elements(pf, group), group, "list of elements");
  attributes_ = lines_of(get_group_attributes(pf, group), group, "list of attributes");
}

std::string ElementGroup::name() const { return name_; }

const ElementDescription& ElementGroup::operator[](std::size_t i) const { return elements_[i]; }

std::size_t ElementGroup::element_count() const { return elements_.size(); }

const ElementDescription& ElementGroup::attribute(std::size_t i) const { return attributes_[i]; }

std::size_t ElementGroup::attribute_count() const { return attributes_.size(); }

int ElementGroup::find_element(std::string name) const {
  const auto found = std::find_if(elements_.begin(), elements_.end(),
                                  [&](const ElementDescription& line) { return line.name() == name; });
  return found == elements_.end() ? -1 : static_cast<int>(found - elements_.begin());
}

std::string ElementGroup::value_of_element(std::string name, std::string fallback) const {
  const int i = find_element(std::move(name));
  return i < 0 ? fallback : elements_[static_cast<std::size_t>(i)].value();
}

bool ElementGroup::has_children() const {
  return std::any_of(elements_.begin(), elements_.end(),
                     [](const ElementDescription& line) { return line.is_group() && !line.is_ignored(); });
}

void ElementGroup::updateFromDatabase(Dbptr db) {
  for (ElementDescription& line : attributes_) {
    if (!line.is_ignored()) line.evaluate(db);
  }
  for (ElementDescription& line : elements_) {
    if (!line.is_ignored() && !line.is_group()) line.evaluate(db);
  }
}

std::string ElementGroup::attribs_as_xml() const {
  // The blank behind each attribute leaves two between them and one before the bracket. Documents are compared as
  // text by those who archive them, so it stays.
  std::string text;
  for (const ElementDescription& line : attributes_) text += line.as_xml_attribute() + " ";
  return text;
}

std::string ElementGroup::report() const {
  std::string text = "Name: " + name_ + "\n   Attribute List: \n";
  for (const ElementDescription& line : attributes_) text += "      " + line.as_string() + "\n";
  text += "   Element List: \n";
  for (const ElementDescription& line : elements_) {
    text += "      " + line.as_string();
    const auto subset = line.is_group() ? subsets_.find(line.name()) : subsets_.end();
    if (subset != subsets_.end()) text += " * Subset by:" + subset->second;
    text += "\n";
  }
  return text;
}

void navigateElementTree(Pf* pf, std::string group, unsigned long depth) {
  if (depth > MAX_NODE_DEPTH) throw std::runtime_error("Exceeded maximum node depth");
  const ElementGroup node(pf, std::move(group));
  for (std::size_t i = 0; i < node.element_count(); ++i) {
    if (node[i].leads_to_group()) navigateElementTree(pf, node[i].name(), depth + 1);
  }
}
