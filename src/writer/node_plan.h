// What the document writer knows of a group before it looks at a record: what each line is, and its value bound to the
// view. A document has a node of the same group for every channel epoch; all that they share is worked out once.
#ifndef TRIGLUB_SRC_WRITER_NODE_PLAN_H
#define TRIGLUB_SRC_WRITER_NODE_PLAN_H

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dbhelper/bound_value.h"
#include "elements.h"
#include "state/conversion_state.h"
#include "writer/category_runs.h"
#include "xml.h"

namespace triglub {

struct NodePlan;

// A value that stands in the file, or one that the records give.
class LineValue {
 public:
  // A group is taken as it stands where `groups_stand`, and fails to evaluate elsewhere.
  LineValue(const ElementDescription& line, bool groups_stand);
  // In place of what *result held. Throws as ElementDescription::evaluate.
  void write(ConversionState& state, Dbptr db, std::string* result);

 private:
  std::string constant_;
  std::optional<BoundValue> bound_;
  bool is_refused_;
};

struct AttributePlan {
  explicit AttributePlan(const ElementDescription& line);

  std::string name;
  std::string head;  // the text before the value: ' NAME="'
  bool is_ignored;
  LineValue value;
};

// In the order in which the writer asks what a line is.
enum class LineKind : std::uint8_t { ignored, categories, stage, group, count, leaf };

struct LinePlan {
  explicit LinePlan(const ElementDescription& line);

  ElementDescription line;
  std::string name;
  LineKind kind;
  LineValue value;
  // Each known once the line was written.
  std::optional<ElementTag> tag;  // of a leaf or count
  NodePlan* child = nullptr;      // of a group or categories
  CategoryField field;            // of categories or a count
};

struct NodePlan {
  explicit NodePlan(const ElementGroup& group);

  // Throws std::runtime_error for names that no attribute or tag can have, the attributes' first.
  void check_names();

  std::string name;
  bool is_channel;
  bool is_transparent;  // writes no tags
  bool are_names_checked = false;
  std::optional<std::size_t> samplerate;  // the element line of that name
  std::vector<AttributePlan> attributes;
  std::vector<LinePlan> lines;
};

// The plans of the groups below the root, made when first asked for.
class NodePlans {
 public:
  // The plan of a group of the parameter file, which is always the same. Throws as ElementGroup's constructor does.
  NodePlan& of(Pf* parameters, const std::string& group);

 private:
  std::map<std::string, std::unique_ptr<NodePlan>> plans_;
};

}  // namespace triglub

#endif
