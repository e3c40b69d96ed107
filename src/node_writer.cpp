// The document writer: one group of the element tree for one set of records, and all groups below it.
//
// A node's own values come from the first of its records. Its lines are written in the order of the parameter file;
// groups are written over the same records, categorized groups once for each category over that category's records.
#include <ostream>
#include <stdexcept>

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

// One node in the making: its group, evaluated, and its records.
struct Node {
  Dbptr db;  // at the first record
  const ElementGroup& group;
  const SmartIndex& index;
  const GroupLineWriter* group_lines = nullptr;  // who writes the node's group lines instead; null: this writer
};

void note_samplerate(const ElementGroup& group) {
  if (group.name() != "Channel") return;
  samplerate_is_zero = group.value_of_element("SampleRate", "0") == "0";
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

void write_group(std::ostream& out, const Node& node, const ElementDescription& line) {
  if (samplerate_is_zero && node.group.name() == "Channel" && line.name() == "response_group") return;
  ElementGroup child(triglub::conversion_parameters(), line.name());
  if (!triglub::is_cut(child)) xml_create_node(out, node.db, std::move(child), node.index);
}

// Null is the only value: the records have no such category.
bool is_only_null(const std::vector<std::string>& categories) {
  return categories.size() == 1 && categories[0] == "-1";
}

void write_categories(std::ostream& out, const Node& node, const ElementDescription& line) {
  const ElementGroup child(triglub::conversion_parameters(), line.name());
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
    xml_create_node(out, node.db, child, std::move(current));
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

void write_line(std::ostream& out, const Node& node, const ElementDescription& line) {
  if (line.is_ignored()) return;
  if (line.is_categorized_group() || line.is_group()) return write_group_line(out, node, line);
  if (line.is_stage()) return write_stage(out, node);
  if (line.is_count()) return write_count(out, node, line);
  write_leaf(out, line, line.value());
}

void create_node(std::ostream& out, Dbptr db, ElementGroup group, const SmartIndex& index,
                 const GroupLineWriter* group_lines) {
  show_func("xml_create_node");
  db.record = static_cast<std::int64_t>(index.first());
  if (db.record == db_nrecs(db)) return;
  if (++xml_depth > MAX_NODE_DEPTH) {
    elog_die(0, "Exceeded maximum node level. Group recursion in parameter file?");
  }
  group.updateFromDatabase(db);
  const ElementTag tag(group.name(), group.attribs_as_xml());
  note_samplerate(group);
  write_tag(out, tag.open_tag());
  const Node node{db, group, index, group_lines};
  for (std::size_t i = 0; i < group.element_count(); ++i) write_line(out, node, group[i]);
  write_tag(out, tag.close_tag());
  --xml_depth;
}

}  // namespace

void xml_create_node(std::ostream& out, Dbptr db, ElementGroup group, SmartIndex index) {
  create_node(out, db, std::move(group), index, nullptr);
}

void xml_create_node(std::ostream& out, Dbptr db, ElementGroup group, SmartIndex index,
                     const GroupLineWriter& write_group_line) {
  create_node(out, db, std::move(group), index, &write_group_line);
}

void xml_create_group_line(std::ostream& out, Dbptr db, const ElementGroup& group, const ElementDescription& line,
                           const SmartIndex& index) {
  db.record = static_cast<std::int64_t>(index.first());
  if (db.record == db_nrecs(db)) return;
  write_line(out, {db, group, index}, line);
}
