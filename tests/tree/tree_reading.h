// Element trees of edition 2 read from texts.
#ifndef TRIGLUB_TESTS_TREE_TREE_READING_H
#define TRIGLUB_TESTS_TREE_TREE_READING_H

#include <memory>
#include <string>
#include <vector>

#include "element_tree.h"
#include "platform/parfile/pf_ptr.h"

namespace triglub_test {

struct Reading {
  std::unique_ptr<const triglub::ElementTree> tree;
  std::vector<std::string> faults;
};

// Expressions that name the field `nosuch` have a fault.
inline Reading read_tree(Pf* pf) {
  Reading reading;
  const auto check = [](const std::string& expression, const triglub::TreeLine& line) -> std::string {
    if (expression.find("nosuch") == std::string::npos) return "";
    return "no field nosuch for a " + line.keyword + "\n" + expression + "\n^";
  };
  reading.tree = triglub::ElementTree::read(pf, check, &reading.faults);
  return reading;
}

inline Reading read_tree(const std::string& text) { return read_tree(parsed(text).get()); }

// A group as a table. With the first two lines of `document`, its attributes begin in line 6, its elements, where it
// has no attributes, in line 8.
inline std::string group(const std::string& key, const std::string& name, const std::string& attributes,
                         const std::string& elements, const std::string& further = "") {
  return key + " &Arr{\nname " + name + "\nattributes &Tbl{\n" + attributes + "}\nelements &Tbl{\n" + elements + "}\n" +
         further + "}\n";
}

// A whole file whose root is a group `document` of the tag Root.
inline std::string document(const std::string& attributes, const std::string& elements, const std::string& further = "",
                            const std::string& groups = "") {
  return "edition 2\nroot_node document\n" + group("document", "Root", attributes, elements, further) + groups;
}

}  // namespace triglub_test

#endif
