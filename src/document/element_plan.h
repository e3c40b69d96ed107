// What the writer knows of a group before it looks at a record.
#ifndef TRIGLUB_SRC_DOCUMENT_ELEMENT_PLAN_H
#define TRIGLUB_SRC_DOCUMENT_ELEMENT_PLAN_H

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "document/line_value.h"
#include "document/record_groups.h"
#include "element_tree.h"

namespace triglub {

struct ElementPlan;

// One line of a group. No element is written inside itself, so what its lines hold while it is written stands here.
struct PlannedLine {
  const TreeLine* line = nullptr;
  std::string head;  // what stands before the value: ' NAME="' or '<NAME>'
  std::string tail;  // and behind it
  std::optional<TreeValue> value;
  std::optional<RecordSplit> split;  // of categories and counts
  ElementPlan* child = nullptr;      // of groups
  bool is_cut = false;               // beyond the level of the document
  bool is_code = false;              // that FDSN has rules for
  // Of the element being written.
  const std::string* text = nullptr;  // null for what is no attribute and no leaf
  bool has_written = false;           // of others: whether anything stands by it
  std::string count;
  RecordGroups groups;
};

struct ElementPlan {
  const TreeGroup* group = nullptr;
  std::string opening;  // "<TAG"
  std::string closing;  // "</TAG>"
  std::vector<PlannedLine> attributes;
  std::vector<PlannedLine> lines;
  TableMask tables = 0;             // that values of it depend on
  std::size_t required_groups = 0;  // lines without which the element is taken back
  bool holds_text = false;          // the one line is what the element holds
};

// The plans of a tree, each made when it is first asked for. One thread at a time.
class ElementPlans {
 public:
  // `cut`: the tag of the groups that are left out with all below; empty for none.
  ElementPlans(const ValueContext& context, std::string cut) : context_(context), cut_(std::move(cut)) {}

  ElementPlan& of(const TreeGroup& group);
  // What was worked out is worked out anew, as in plans just made.
  void forget_values();

 private:
  PlannedLine plan_attribute(const TreeGroup& group, const TreeLine& line) const;
  PlannedLine plan_line(const TreeLine& line);

  const ValueContext& context_;
  std::string cut_;
  std::map<const TreeGroup*, std::unique_ptr<ElementPlan>> plans_;
};

}  // namespace triglub

#endif
