// Two attributes are one when their prefixes stand for the same namespace: what they stand for is known where the
// parameter file says it, and there it is asked.
#include "tree/names.h"

#include <array>
#include <map>
#include <string>
#include <string_view>

#include "xml_text.h"

namespace triglub {

namespace {

constexpr std::string_view kDeclaration = "xmlns";
constexpr std::array<std::string_view, 2> kReserved = {"http://www.w3.org/XML/1998/namespace",
                                                       "http://www.w3.org/2000/xmlns/"};

std::string_view local_name(std::string_view name) {
  const std::string_view prefix = xml_prefix(name);
  return prefix.empty() ? name : name.substr(prefix.size() + 1);
}

void check_name(const TreeLine& line, const char* what, FaultList* faults) {
  if (!names_element(line.type) || line.is_content() || is_xml_name(line.name)) return;
  faults->add(line.line, "'" + line.name + "' is no name that an " + what + " can have");
}

// `names`: the lines of the names so far. What a name of another prefix stands for is its namespace.
void check_twice(const TreeLine& line, const std::string& name, std::map<std::string, long>* names, FaultList* faults) {
  const auto [first, is_new] = names->emplace(name, line.line);
  if (is_new) return;
  faults->add(line.line,
              "the attribute '" + line.name + "' is given twice, first in line " + std::to_string(first->second));
}

// The namespaces that the group itself says its prefixes stand for.
std::map<std::string_view, std::string_view> namespaces_of(const TreeGroup& group) {
  std::map<std::string_view, std::string_view> namespaces;
  for (const TreeLine& line : group.attributes) {
    if (xml_prefix(line.name) == kDeclaration && line.type == LineType::literal) {
      namespaces.emplace(local_name(line.name), line.value);
    }
  }
  return namespaces;
}

void check_attributes_twice(const TreeGroup& group, FaultList* faults) {
  const auto namespaces = namespaces_of(group);
  std::map<std::string, long> names;
  for (const TreeLine& line : group.attributes) {
    const auto known = namespaces.find(xml_prefix(line.name));
    const bool is_known = known != namespaces.end();
    check_twice(line,
                is_known ? "{" + std::string(known->second) + "}" + std::string(local_name(line.name)) : line.name,
                &names, faults);
  }
}

// A prefix always stands for something, and two names are XML's own.
void check_declaration(const TreeLine& line, FaultList* faults) {
  const bool has_prefix = xml_prefix(line.name) == kDeclaration;
  if (!has_prefix && line.name != kDeclaration) return;
  const std::string_view prefix = has_prefix ? local_name(line.name) : "";
  if (prefix == "xml" || prefix == kDeclaration) {
    return faults->add(line.line, "'" + line.name + "': the prefix " + std::string(prefix) + " is XML's own");
  }
  if (line.type != LineType::literal) return;
  if (has_prefix && line.value.empty()) {
    return faults->add(line.line, "'" + line.name + "' has no value: a prefix stands for a namespace");
  }
  for (const std::string_view reserved : kReserved) {
    if (line.value == reserved) faults->add(line.line, "'" + line.name + "': that namespace is XML's own");
  }
}

void check_element_prefix(std::string_view name, long line, FaultList* faults) {
  if (xml_prefix(name) == kDeclaration) {
    faults->add(line, "'" + std::string(name) + "': no element can have the prefix xmlns");
  }
}

}  // namespace

void check_tag(const TreeGroup& group, FaultList* faults) {
  check_element_prefix(group.tag, group.tag_line, faults);
  if (is_xml_name(group.tag)) return;
  faults->add(group.tag_line, "'" + group.tag + "' is no name that an element can have");
}

void check_lines(const TreeGroup& group, FaultList* faults) {
  for (const TreeLine& line : group.attributes) {
    if (line.name == "-") faults->add(line.line, "'-' is no name that an attribute can have");
    check_name(line, "attribute", faults);
    check_declaration(line, faults);
  }
  check_attributes_twice(group, faults);
  for (const TreeLine& line : group.elements) {
    check_name(line, "element", faults);
    if (names_element(line.type)) check_element_prefix(line.name, line.line, faults);
  }
}

}  // namespace triglub
