// Text is gathered line by line and goes to the stream at each tag and before whatever may fail, so that a failure
// leaves in the stream what came before it.
#include "writer/node_writer.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "dbhelper.h"
#include "platform/elog.h"
#include "resp_helper/stage_row.h"
#include "writer/categories.h"
#include "xml.h"

namespace triglub {

namespace {

// Null is the only value: the records have no such category.
constexpr std::string_view kNullCategory = "-1";

std::vector<std::string> texts_of(const CategoryRuns& runs) {
  std::vector<std::string> texts;
  for (const TextRun& run : runs) texts.emplace_back(run.text);
  return texts;
}

}  // namespace

void NodeWriter::write_out() {
  out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
  text_.clear();
}

// By the depth of the present node.
void NodeWriter::append_indentation() { text_.append(state_.depth * SPACES_PER_NEST, ' '); }

void NodeWriter::end_tag_line() {
  text_ += '\n';
  write_out();
  out_.flush();  // a reader at the other end of a pipe sees each element when it begins and ends
}

NodePlan& NodeWriter::child_of(LinePlan& line) {
  if (line.child == nullptr) line.child = &plans_.of(state_.parameters, line.name);
  return *line.child;
}

void NodeWriter::evaluate(const Node& node) {
  Values& values = this->values();
  std::vector<AttributePlan>& attributes = node.plan.attributes;
  values.attributes.resize(std::max(values.attributes.size(), attributes.size()));
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    if (!attributes[i].is_ignored) attributes[i].value.write(state_, node.db, &values.attributes[i]);
  }
  std::vector<LinePlan>& lines = node.plan.lines;
  values.lines.resize(std::max(values.lines.size(), lines.size()));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    lines[i].value.write(state_, node.db, &values.lines[i]);
  }
}

void NodeWriter::note_samplerate(const Node& node) {
  if (!node.plan.is_channel) return;
  // The line is looked up whatever it is; one that is ignored or a group has the text that stands in the file.
  state_.samplerate_is_zero = !node.plan.samplerate || values().lines[*node.plan.samplerate] == "0";
}

void NodeWriter::open_tag(const Node& node) {
  node.plan.check_names();
  note_samplerate(node);
  // A transparent group has no tags, and then no lines for them; what is below it is indented all the same.
  if (node.plan.is_transparent) return;
  append_indentation();
  text_.append(1, '<').append(node.plan.name);
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
  append_indentation();
  text_.append("</").append(node.plan.name).append(1, '>');
  end_tag_line();
}

void NodeWriter::write_leaf(LinePlan& line, const std::string& content) {
  if (!line.tag) {
    write_out();
    line.tag.emplace(line.name);  // throws for a name that is not safe
  }
  line.tag->append_wrapped(content, (state_.depth + 1) * SPACES_PER_NEST, &text_);
}

void NodeWriter::write_count(const Node& node, LinePlan& line) {
  write_out();
  CategoryRuns& runs = values().categories;
  const bool found = find_category_runs(node.db, line.line, &line.field, node.index, &runs);
  if (found) trace_categories(state_, line.line);
  const std::size_t count = found ? runs.size() : categories_of(state_, node.db, line.line, node.index).size();
  write_leaf(line, std::to_string(count));
}

void NodeWriter::write_stage(const Node& node) {
  write_out();
  try {
    StageRow stage(state_, node.db, "stage");
    stage.write_stage(out_, -1);
    out_ << stage.stagegain_as_xml();
  } catch (const std::runtime_error& e) {
    // The base's text: of a dbquery_error it tells which query failed, which its own never does.
    elog_complain(0, "Problem with Response: %s [%s]", e.std::runtime_error::what(), as_string(node.db).c_str());
  }
}

void NodeWriter::write_group(const Node& node, LinePlan& line) {
  if (state_.samplerate_is_zero && node.plan.is_channel && line.name == "response_group") return;
  NodePlan& child = child_of(line);
  if (!state_.is_cut(child.name)) write_node(node.db, child, node.index, nullptr);
}

void NodeWriter::write_categories(const Node& node, LinePlan& line) {
  NodePlan& child = child_of(line);
  if (state_.is_cut(child.name)) return;
  if (find_category_runs(node.db, line.line, &line.field, node.index, &values().categories)) {
    write_runs(node, line, child);
  } else {
    write_one_by_one(node, line, child);
  }
}

void NodeWriter::write_runs(const Node& node, const LinePlan& line, NodePlan& child) {
  const CategoryRuns& runs = values().categories;
  trace_categories(state_, line.line);
  if (state_.is_verbose()) elog_debug(0, "%s", as_string(texts_of(runs), "Categorized Group:").c_str());
  if (runs.size() == 1 && runs[0].text == kNullCategory) return;
  for (const TextRun& run : runs) {
    trace_call(state_, "pseudo_subset");
    write_node(node.db, child, SmartIndex::of_range(node.index.size(), run.begin, run.end), nullptr);
  }
}

void NodeWriter::write_one_by_one(const Node& node, const LinePlan& line, NodePlan& child) {
  const std::vector<std::string> categories = categories_of(state_, node.db, line.line, node.index);
  if (state_.is_verbose()) elog_debug(0, "%s", as_string(categories, "Categorized Group:").c_str());
  if (categories.size() == 1 && categories[0] == kNullCategory) return;
  // What one category takes is no longer there for the next, so that no record is written twice.
  SmartIndex remaining = node.index;
  for (const std::string& category : categories) {
    // The category goes in as it stands. Codes hold no characters that mean something in a regular expression, and
    // a parameter file that categorizes by something else can rely on what it sees.
    SmartIndex current = records_of_category(state_, node.db, line.line.value() + " =~ /" + category + "/", remaining);
    current.limit_to(remaining);
    remaining.remove(current);
    write_node(node.db, child, current, nullptr);
  }
}

void NodeWriter::write_groups(const Node& node, LinePlan& line) {
  if (line.kind == LineKind::group) return write_group(node, line);
  write_categories(node, line);
}

void NodeWriter::hand_over_or_write(const Node& node, LinePlan& line) {
  write_out();
  if (node.handler != nullptr) return (*node.handler)(line.line);
  write_groups(node, line);
}

void NodeWriter::write_line(const Node& node, std::size_t i) {
  LinePlan& line = node.plan.lines[i];
  switch (line.kind) {
    case LineKind::ignored:
      return;
    case LineKind::categories:
    case LineKind::group:
      return hand_over_or_write(node, line);
    case LineKind::stage:
      return write_stage(node);
    case LineKind::count:
      return write_count(node, line);
    case LineKind::leaf:
      return write_leaf(line, values().lines[i]);
  }
}

void NodeWriter::check_depth() const {
  if (state_.depth <= MAX_NODE_DEPTH) return;
  throw FatalFailure("Exceeded maximum node level. Group recursion in parameter file?");
}

void NodeWriter::write_node(Dbptr db, NodePlan& plan, const SmartIndex& index, const GroupLineHandler* handler) {
  trace_call(state_, "xml_create_node");
  db.record = static_cast<std::int64_t>(index.first());
  if (db.record == db_nrecs(db)) return;
  ++state_.depth;
  check_depth();
  const Node node{db, plan, index, handler};
  evaluate(node);
  open_tag(node);
  for (std::size_t i = 0; i < plan.lines.size(); ++i) write_line(node, i);
  close_tag(node);
  --state_.depth;
}

void NodeWriter::write_line_of_groups(Dbptr db, NodePlan& plan, LinePlan& line, const SmartIndex& index) {
  db.record = static_cast<std::int64_t>(index.first());
  if (db.record == db_nrecs(db)) return;
  check_depth();
  write_groups({db, plan, index, nullptr}, line);
}

}  // namespace triglub
