// A tree of names drawn as text: branches at the left, what is said of each name in columns at the right.
#ifndef TRIGLUB_TOOL_TREE_DRAWING_H
#define TRIGLUB_TOOL_TREE_DRAWING_H

#include <string>
#include <vector>

namespace triglub::tool {

struct TreeNode {
  std::string name;
  std::string mark;
  std::string type;
  std::string value;
  std::string note;  // behind the value
  std::vector<TreeNode> children;
};

// One line a node, longer values broken at blanks where the line would be longer than 100 columns. A column that no
// node fills is not there. Control characters are made visible.
std::string draw_tree(const TreeNode& root);

}  // namespace triglub::tool

#endif
