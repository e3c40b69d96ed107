// Groups of a parameter file, from the root on.
#ifndef TRIGLUB_SRC_TREE_GROUP_READER_H
#define TRIGLUB_SRC_TREE_GROUP_READER_H

#include <string>
#include <vector>

#include "element_tree.h"
#include "tree/fault_list.h"
#include "tree/line_reader.h"

namespace triglub {

class GroupReader {
 public:
  // Fills *groups and *faults, which must live as long.
  GroupReader(Pf* pf, const ExpressionCheck& check, TreeGroups* groups, FaultList* faults);

  // Reads the root and every group that a line leads to; gives the root, null when there is none.
  const TreeGroup* read_all();

 private:
  // The group of that name, to be read when its turn comes; null after a fault when no table has the name. `line` asks.
  const TreeGroup* require_group(const std::string& key, long line);
  void read_group(TreeGroup* group);
  void check_keys(const TreeGroup& group);
  void read_tag(TreeGroup* group);
  void read_lines(const TreeGroup& group, LinePart part, std::vector<TreeLine>* lines);
  void check_attributes(const TreeGroup& group);
  void check_content(const TreeGroup& group);
  void mark_optional(TreeGroup* group);
  // `number`: of the line that lists the name.
  void mark_line(long number, TreeLine* line);
  // "; did you mean 'name'?", as long as there are not too many faults.
  std::string meant(const std::string& word, const std::vector<std::string>& names) const;
  std::vector<std::string> names_of_lines(const std::string& key) const;
  // The list at a key; null after a fault when it is missing or no list.
  Tbl* require_list(const TreeGroup& group, const std::string& key);

  Pf* pf_;
  TreeGroups* groups_;
  FaultList* faults_;
  LineReader line_reader_;
  std::vector<std::string> tables_;
  std::vector<TreeGroup*> unread_;
};

}  // namespace triglub

#endif
