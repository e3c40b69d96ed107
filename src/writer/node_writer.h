// The document writer: one group of the element tree for one set of records, and all groups below it.
//
// A node's own values come from the first of its records. Its lines are written in the order of the parameter file;
// groups are written over the same records, categorized groups once for each category over that category's records.
#ifndef TRIGLUB_SRC_WRITER_NODE_WRITER_H
#define TRIGLUB_SRC_WRITER_NODE_WRITER_H

#include <array>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "conversion.h"
#include "elements.h"
#include "platform/database.h"
#include "smartindex.h"
#include "state/conversion_state.h"
#include "writer/category_runs.h"
#include "writer/node_plan.h"

namespace triglub {

// Writes nodes over one view.
class NodeWriter {
 public:
  // Both must outlive the writer.
  NodeWriter(ConversionState& state, std::ostream& out) : state_(state), out_(out) {}

  // A node of the plan's group for the records, at one level below the present depth; nothing for no records. A handler
  // that is not null gets the node's own group lines instead of their being written. Throws FatalFailure beyond the
  // deepest level, and what values, tags and groups throw.
  void write_node(Dbptr db, NodePlan& plan, const SmartIndex& index, const GroupLineHandler* handler);
  // All that write_node would write for one group line of a node at the present depth.
  void write_line_of_groups(Dbptr db, NodePlan& plan, LinePlan& line, const SmartIndex& index);

 private:
  // One node in the making.
  struct Node {
    Dbptr db;  // at the first record
    NodePlan& plan;
    const SmartIndex& index;
    const GroupLineHandler* handler;
  };
  // What a node's lines evaluate to. Nodes nest, so each depth has its own; the memory serves node after node.
  struct Values {
    std::vector<std::string> attributes;
    std::vector<std::string> lines;
    CategoryRuns categories;
  };

  void evaluate(const Node& node);
  void note_samplerate(const Node& node);
  void open_tag(const Node& node);
  void close_tag(const Node& node);
  void write_line(const Node& node, std::size_t i);
  void write_leaf(LinePlan& line, const std::string& content);
  void write_count(const Node& node, LinePlan& line);
  void write_stage(const Node& node);
  void hand_over_or_write(const Node& node, LinePlan& line);
  void write_groups(const Node& node, LinePlan& line);
  void write_group(const Node& node, LinePlan& line);
  void write_categories(const Node& node, LinePlan& line);
  void write_runs(const Node& node, const LinePlan& line, NodePlan& child);
  void write_one_by_one(const Node& node, const LinePlan& line, NodePlan& child);

  void check_depth() const;
  NodePlan& child_of(LinePlan& line);
  Values& values() { return values_[state_.depth]; }
  void append_indentation();
  void end_tag_line();
  void write_out();

  ConversionState& state_;
  std::ostream& out_;
  NodePlans plans_;
  std::array<Values, MAX_NODE_DEPTH + 1> values_;
  // Lines that are complete. They go to the stream in one piece, with the next tag and before whatever may fail.
  std::string text_;
};

}  // namespace triglub

#endif
