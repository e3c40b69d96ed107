// The document writer: one group of the element tree for one set of records, and all groups below it.
//
// A node's own values come from the first of its records. Its lines are written in the order of the parameter file;
// groups are written over the same records, categorized groups once for each category over that category's records.
#include <array>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "db2stationxml.h"
#include "db2stationxml/category_runs.h"
#include "db2stationxml/conversion.h"
#include "dbhelper.h"
#include "platform/elog.h"
#include "resp_helper.h"
#include "writer/node_plan.h"
#include "xml.h"

namespace triglub {

namespace {

// Whether the latest channel written had no sample rate, or one of "0". A channel without samples has no response to
// describe. Kept beyond the channel and the conversion: only a channel sets it.
bool samplerate_is_zero = false;

// Null is the only value: the records have no such category.
constexpr std::string_view NULL_CATEGORY = "-1";

// As get_categories traces itself.
void trace_categories(const ElementDescription& line) {
  if (verbosity > 0) show_func("get_categories(" + line.name() + ")");
}

std::vector<std::string> texts_of(const CategoryRuns& runs) {
  std::vector<std::string> texts;
  for (const TextRun& run : runs) texts.emplace_back(run.text);
  return texts;
}

// Writes nodes over one view.
class NodeWriter {
 public:
  explicit NodeWriter(std::ostream& out) : out_(out) {}

  // `group_lines`: who writes the node's own group lines instead; null: this writer.
  void write_node(Dbptr db, NodePlan& plan, const SmartIndex& index, const GroupLineWriter* group_lines);
  void write_group_line(Dbptr db, NodePlan& plan, LinePlan& line, const SmartIndex& index);

 private:
  // One node in the making.
  struct Node {
    Dbptr db;  // at the first record
    NodePlan& plan;
    const SmartIndex& index;
    const GroupLineWriter* group_lines;
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
  void write_group_line(const Node& node, LinePlan& line);
  void write_group(const Node& node, LinePlan& line);
  void write_categories(const Node& node, LinePlan& line);
  void write_runs(const Node& node, const LinePlan& line, NodePlan& child);
  void write_one_by_one(const Node& node, const LinePlan& line, NodePlan& child);

  NodePlan& child_of(LinePlan& line);
  Values& values() { return values_[xml_depth]; }
  void end_tag_line();
  void write_out();

  std::ostream& out_;
  NodePlans plans_;
  std::array<Values, MAX_NODE_DEPTH + 1> values_;
  // Lines that are complete. They go to the stream in one piece, with the next tag and before whatever may fail.
  std::string text_;
};

void NodeWriter::write_out() {
  out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
  text_.clear();
}

void NodeWriter::end_tag_line() {
  text_ += '\n';
  write_out();
  out_.flush();  // who reads along sees each element when it begins and ends
}

NodePlan& NodeWriter::child_of(LinePlan& line) {
  if (line.child == nullptr) line.child = &plans_.of(line.name);
  return *line.child;
}

void NodeWriter::evaluate(const Node& node) {
  Values& values = this->values();
  std::vector<AttributePlan>& attributes = node.plan.attributes;
  values.attributes.resize(std::max(values.attributes.size(), attributes.size()));
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    if (!attributes[i].is_ignored) attributes[i].value.write(node.db, &values.attributes[i]);
  }
  std::vector<LinePlan>& lines = node.plan.lines;
  values.lines.resize(std::max(values.lines.size(), lines.size()));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    lines[i].value.write(node.db, &values.lines[i]);
  }
}

void NodeWriter::note_samplerate(const Node& node) {
  if (!node.plan.is_channel) return;
  // The line is looked up whatever it is; one that is ignored or a group has the text that stands in the file.
  samplerate_is_zero = !node.plan.samplerate || values().lines[*node.plan.samplerate] == "0";
}

void NodeWriter::open_tag(const Node& node) {
  node.plan.check_names();
  note_samplerate(node);
  // A transparent group has no tags, and then no lines for them; what is below it is indented all the same.
  if (node.plan.is_transparent) return;
  text_.append(xml_depth, ' ').append(1, '<').append(node.plan.name);
  for (std::size_t i = 0; i < node.plan.attributes.size(); ++i) {
    const AttributePlan& attribute = node.plan.attributes[i];
    if (!attribute.is_ignored) {
      text_ += attribute.head;
      XmlAttribute().append_safe(values().attributes[i], &text_);
      text_ += '"';
    }
    text_ += ' ';  // as ElementGroup::attribs_as_xml has it
  }
  text_ += '>';
  end_tag_line();
}

void NodeWriter::close_tag(const Node& node) {
  if (node.plan.is_transparent) return write_out();
  text_.append(xml_depth, ' ').append("</").append(node.plan.name).append(1, '>');
  end_tag_line();
}

void NodeWriter::write_leaf(LinePlan& line, const std::string& content) {
  if (!line.tag) {
    write_out();
    line.tag.emplace(line.name);  // throws for a name that is not safe
  }
  line.tag->append_wrapped(content, xml_depth + 1, &text_);
}

void NodeWriter::write_count(const Node& node, LinePlan& line) {
  write_out();
  CategoryRuns& runs = values().categories;
  const bool found = find_category_runs(node.db, line.line, &line.field, node.index, &runs);
  if (found) trace_categories(line.line);
  const std::size_t count = found ? runs.size() : get_categories(node.db, line.line, node.index).size();
  write_leaf(line, std::to_string(count));
}

void NodeWriter::write_stage(const Node& node) {
  write_out();
  try {
    XmlResponse writer(node.db, "stage");
    writer.write_stage(out_, -1);
    out_ << writer.stagegain_as_xml();
  } catch (const std::runtime_error& e) {
    // The base's text: of a dbquery_error it tells which query failed, which its own never does.
    elog_complain(0, "Problem with Response: %s [%s]", e.std::runtime_error::what(), as_string(node.db).c_str());
  }
}

void NodeWriter::write_group(const Node& node, LinePlan& line) {
  if (samplerate_is_zero && node.plan.is_channel && line.name == "response_group") return;
  NodePlan& child = child_of(line);
  if (!is_cut(child.name)) write_node(node.db, child, node.index, nullptr);
}

void NodeWriter::write_categories(const Node& node, LinePlan& line) {
  NodePlan& child = child_of(line);
  if (is_cut(child.name)) return;
  if (find_category_runs(node.db, line.line, &line.field, node.index, &values().categories)) {
    write_runs(node, line, child);
  } else {
    write_one_by_one(node, line, child);
  }
}

void NodeWriter::write_runs(const Node& node, const LinePlan& line, NodePlan& child) {
  const CategoryRuns& runs = values().categories;
  trace_categories(line.line);
  if (info_level()) elog_debug(0, "%s", as_string(texts_of(runs), "Categorized Group:").c_str());
  if (runs.size() == 1 && runs[0].text == NULL_CATEGORY) return;
  for (const TextRun& run : runs) {
    show_func("pseudo_subset");
    write_node(node.db, child, SmartIndex::of_range(node.index.size(), run.begin, run.end), nullptr);
  }
}

void NodeWriter::write_one_by_one(const Node& node, const LinePlan& line, NodePlan& child) {
  const std::vector<std::string> categories = get_categories(node.db, line.line, node.index);
  if (info_level()) elog_debug(0, "%s", as_string(categories, "Categorized Group:").c_str());
  if (categories.size() == 1 && categories[0] == NULL_CATEGORY) return;
  // What one category takes is no longer there for the next, so that no record is written twice.
  SmartIndex remaining = node.index;
  for (const std::string& category : categories) {
    // The category goes in as it stands. Codes hold no characters that mean something in a regular expression, and
    // a parameter file that categorizes by something else can rely on what it sees.
    SmartIndex current = pseudo_subset(node.db, line.line.value() + " =~ /" + category + "/", remaining);
    current.limit_to(remaining);
    remaining.remove(current);
    write_node(node.db, child, current, nullptr);
  }
}

void NodeWriter::write_group_line(const Node& node, LinePlan& line) {
  write_out();
  if (node.group_lines != nullptr) return (*node.group_lines)(line.line);
  if (line.kind == LineKind::group) return write_group(node, line);
  write_categories(node, line);
}

void NodeWriter::write_line(const Node& node, std::size_t i) {
  LinePlan& line = node.plan.lines[i];
  switch (line.kind) {
    case LineKind::ignored:
      return;
    case LineKind::categories:
    case LineKind::group:
      return write_group_line(node, line);
    case LineKind::stage:
      return write_stage(node);
    case LineKind::count:
      return write_count(node, line);
    case LineKind::leaf:
      return write_leaf(line, values().lines[i]);
  }
}

void NodeWriter::write_node(Dbptr db, NodePlan& plan, const SmartIndex& index, const GroupLineWriter* group_lines) {
  show_func("xml_create_node");
  db.record = static_cast<std::int64_t>(index.first());
  if (db.record == db_nrecs(db)) return;
  if (++xml_depth > MAX_NODE_DEPTH) {
    elog_die(0, "Exceeded maximum node level. Group recursion in parameter file?");
  }
  const Node node{db, plan, index, group_lines};
  evaluate(node);
  open_tag(node);
  for (std::size_t i = 0; i < plan.lines.size(); ++i) write_line(node, i);
  close_tag(node);
  --xml_depth;
}

void NodeWriter::write_group_line(Dbptr db, NodePlan& plan, LinePlan& line, const SmartIndex& index) {
  db.record = static_cast<std::int64_t>(index.first());
  if (db.record == db_nrecs(db)) return;
  write_group_line({db, plan, index, nullptr}, line);
}

}  // namespace

}  // namespace triglub

void xml_create_node(std::ostream& out, Dbptr db, ElementGroup group, SmartIndex index) {
  triglub::NodePlan plan(group);
  triglub::NodeWriter(out).write_node(db, plan, index, nullptr);
}

void xml_create_node(std::ostream& out, Dbptr db, ElementGroup group, SmartIndex index,
                     const GroupLineWriter& write_group_line) {
  triglub::NodePlan plan(group);
  triglub::NodeWriter(out).write_node(db, plan, index, &write_group_line);
}

void xml_create_group_line(std::ostream& out, Dbptr db, const ElementGroup& group, const ElementDescription& line,
                           const SmartIndex& index) {
  triglub::NodePlan plan(group);
  triglub::LinePlan line_plan(line);
  triglub::NodeWriter(out).write_group_line(db, plan, line_plan, index);
}
