// The document writer: one group of the element tree for one set of records, and all groups below it.
//
// A node's own values come from the first of its records. Its lines are written in the order of the parameter file;
// groups are written over the same records, categorized groups once for each category over that category's records.
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "conversion.h"
#include "db2stationxml.h"
#include "dbhelper.h"
#include "platform/elog.h"
#include "resp_helper.h"
#include "xml.h"

namespace {

// Whether the latest channel written had no sample rate, or one of "0". A channel without samples has no response to
// describe. Kept beyond the channel and the conversion: only a channel sets it.
bool samplerate_is_zero = false;

// One node in the making: its group, what its lines evaluate to, and its records.
struct Node {
  Dbptr db;  // at the first record
  const ElementGroup& group;
  const std::vector<std::string>& values;  // by element line
  const SmartIndex& index;
  const GroupLineWriter* group_lines = nullptr;  // who writes the node's group lines instead; null: this writer
};

void note_samplerate(const ElementGroup& group, const std::vector<std::string>& values) {
  if (group.name() != "Channel") return;
  const int line = group.find_element("SampleRate");
  samplerate_is_zero = line < 0 || values[static_cast<std::size_t>(line)] == "0";
}

void write_tag(std::ostream& out, const std::string& tag) {
  // A transparent group has no tags, and then no lines either; what is below it is indented all the same.
  if (!tag.empty()) out << ElementTag::get_spacer(xml_depth) << tag << std::endl;
}

void write_leaf(std::ostream& out, const ElementDescription& line, std::string content) {
  out << ElementTag(line.name()).wrap(std::move(content), xml_depth + 1);
}

void write_count(std::ostream& out, const Node& node, const ElementDescription& line) {
  write_leaf(out, line, std::to_string(get_categories(node.db, line, node.index).size()));
}

void create_node(std::ostream& out, Dbptr db, const ElementGroup& group, const SmartIndex& index,
                 const GroupLineWriter* group_lines);

void write_group(std::ostream& out, const Node& node, const ElementDescription& line) {
  if (samplerate_is_zero && node.group.name() == "Channel" && line.name() == "response_group") return;
  const ElementGroup& child = triglub::group_definition(line.name());
  if (!triglub::is_cut(child)) create_node(out, node.db, child, node.index, nullptr);
}

// Null is the only value: the records have no such category.
bool is_only_null(const std::vector<std::string>& categories) {
  return categories.size() == 1 && categories[0] == "-1";
}

void write_categories(std::ostream& out, const Node& node, const ElementDescription& line) {
  const ElementGroup& child = triglub::group_definition(line.name());
  if (triglub::is_cut(child)) return;
  const std::vector<std::string> categories = get_categories(node.db, line, node.index);
  if (info_level()) elog_debug(0, "%s", as_string(categories, "Categorized Group:").c_str());
  if (is_only_null(categories)) return;
  // What one category takes is no longer there for the next, so that no record is written twice.
  SmartIndex remaining = node.index;
  for (const std::string& category : categories) {
    // The category goes in as it stands. Codes hold no characters that mean something in a regular expression, and
    // a parameter file that categorizes by something else can rely on what it sees.
    SmartIndex current = pseudo_subset(node.db, line.value() + " =~ /" + category + "/", remaining);
    current.limit_to(remaining);
    remaining.remove(current);
    create_node(out, node.db, child, current, nullptr);
  }
}

void write_stage(std::ostream& out, const Node& node) {
  try {
    XmlResponse writer(node.db, "stage");
    out << writer.stage2xml(-1);
    out << writer.stagegain_as_xml();
  } catch (const std::runtime_error& e) {
    // The base's text: of a dbquery_error it tells which query failed, which its own never does.
    elog_complain(0, "Problem with Response: %s [%s]", e.std::runtime_error::what(), as_string(node.db).c_str());
  }
}

void write_group_line(std::ostream& out, const Node& node, const ElementDescription& line) {
  if (node.group_lines != nullptr) return (*node.group_lines)(line);
  if (line.is_group()) return write_group(out, node, line);
  write_categories(out, node, line);
}

void write_line(std::ostream& out, const Node& node, std::size_t i) {
  const ElementDescription& line = node.group[i];
  if (line.is_ignored()) return;
  if (line.is_categorized_group() || line.is_group()) return write_group_line(out, node, line);
  if (line.is_stage()) return write_stage(out, node);
  if (line.is_count()) return write_count(out, node, line);
  write_leaf(out, line, node.values[i]);
}

std::vector<std::string> attribute_values(Dbptr db, const ElementGroup& group) {
  std::vector<std::string> values(group.attribute_count());
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!group.attribute(i).is_ignored()) values[i] = group.attribute(i).evaluated(db);
  }
  return values;
}

std::vector<std::string> element_values(Dbptr db, const ElementGroup& group) {
  std::vector<std::string> values(group.element_count());
  for (std::size_t i = 0; i < values.size(); ++i) {
    // A line that is ignored has the value that stands in the file; the sample rate is looked up whether ignored or
    // not.
    values[i] = group[i].is_ignored() || group[i].is_group() ? group[i].value() : group[i].evaluated(db);
  }
  return values;
}

// As ElementGroup::attribs_as_xml, of values that are kept beside the group.
std::string attributes_text(const ElementGroup& group, std::vector<std::string> values) {
  std::string text;
  for (std::size_t i = 0; i < values.size(); ++i)
    text += group.attribute(i).as_xml_attribute(std::move(values[i])) + " ";
  return text;
}

void create_node(std::ostream& out, Dbptr db, const ElementGroup& group, const SmartIndex& index,
                 const GroupLineWriter* group_lines) {
  show_func("xml_create_node");
  db.record = static_cast<std::int64_t>(index.first());
  if (db.record == db_nrecs(db)) return;
  if (++xml_depth > MAX_NODE_DEPTH) {
    elog_die(0, "Exceeded maximum node level. Group recursion in parameter file?");
  }
  std::vector<std::string> attributes = attribute_values(db, group);
  const std::vector<std::string> values = element_values(db, group);
  const ElementTag tag(group.name(), attributes_text(group, std::move(attributes)));
  note_samplerate(group, values);
  write_tag(out, tag.open_tag());
  const Node node{db, group, values, index, group_lines};
  for (std::size_t i = 0; i < group.element_count(); ++i) write_line(out, node, i);
  write_tag(out, tag.close_tag());
  --xml_depth;
}

}  // namespace

void xml_create_node(std::ostream& out, Dbptr db, ElementGroup group, SmartIndex index) {
  create_node(out, db, group, index, nullptr);
}

void xml_create_node(std::ostream& out, Dbptr db, ElementGroup group, SmartIndex index,
                     const GroupLineWriter& write_group_line) {
  create_node(out, db, group, index, &write_group_line);
}

void xml_create_group_line(std::ostream& out, Dbptr db, const ElementGroup& group, const ElementDescription& line,
                           const SmartIndex& index) {
  db.record = static_cast<std::int64_t>(index.first());
  if (db.record == db_nrecs(db)) return;
  write_group_line(out, {db, group, {}, index}, line);
}
