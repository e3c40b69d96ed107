#include "reference/edition2/writer.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "reference/edition2/expression.h"
#include "reference/edition2/records.h"
#include "reference/edition2/stages.h"
#include "reference/edition2/value_text.h"
#include "reference/edition2/xml_text.h"

namespace triglub_reference::edition2 {

namespace {

bool is_categorized(const Line& line) {
  return line.type == "CATEGORIZED_GROUP" || line.type == "CATEGORIZED_BY_NUMBER";
}
bool is_group(const Line& line) { return line.type == "GROUP" || is_categorized(line); }

// Records of one value; a text is trimmed.
struct Category {
  Value value;
  RecordList records;
};

Value category_at(const Node& node, const Record& record, const RecordList& records) {
  Value value = value_at(node, record, records);
  if (auto* text = std::get_if<std::string>(&value)) *text = trimmed(*text);
  return value;
}

bool is_empty(const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  return is_null(value) || (text != nullptr && text->empty());
}

bool is_same(const Value& a, const Value& b) {
  if (is_null(a) || is_null(b)) return is_null(a) && is_null(b);
  return !is_less(a, b) && !is_less(b, a);
}

// Texts by the numbers that they are, those that are none last.
bool is_less_number(const std::string& a, const std::string& b) {
  const auto number_a = number_in(a);
  const auto number_b = number_in(b);
  if (number_a && number_b && *number_a != *number_b) return *number_a < *number_b;
  if (number_a.has_value() != number_b.has_value()) return number_a.has_value();
  return a < b;
}

bool is_before(const Value& a, const Value& b, bool by_number) {
  if (is_null(a) || is_null(b)) return is_null(a) && !is_null(b);
  if (by_number && std::holds_alternative<std::string>(a)) {
    return is_less_number(std::get<std::string>(a), std::get<std::string>(b));
  }
  if (!by_number && std::holds_alternative<long>(a)) {
    return std::to_string(std::get<long>(a)) < std::to_string(std::get<long>(b));
  }
  return is_less(a, b);
}

std::vector<Category> categories(const Line& line, const RecordList& records) {
  const Node node = parsed(line.value);
  std::vector<Category> all;
  for (const Record* record : records) {
    const Value value = category_at(node, *record, records);
    const auto known =
        std::find_if(all.begin(), all.end(), [&](const Category& other) { return is_same(other.value, value); });
    if (known == all.end()) {
      all.push_back({value, {record}});
    } else {
      known->records.push_back(record);
    }
  }
  const bool by_number = line.type == "CATEGORIZED_BY_NUMBER";
  std::sort(all.begin(), all.end(),
            [&](const Category& a, const Category& b) { return is_before(a.value, b.value, by_number); });
  return all;
}

std::string tag_below(Level level) {
  switch (level) {
    case Level::network:
      return "Station";
    case Level::station:
      return "Channel";
    case Level::channel:
      return "Stage";
    default:
      return "";
  }
}

class Writer {
 public:
  Writer(const Request& request, const View& view) : request_(request), view_(view), cut_(tag_below(request.level)) {}

  // The group with all below, or the empty text where it is left out.
  std::string group_text(const Group& group, const RecordList& records, std::size_t depth, bool is_optional) const {
    const bool is_transparent = group.tag == "-";
    const auto attributes = attributes_of(group, records);
    const auto content = content_of(group, records, is_transparent ? depth : depth + 1);
    if (!attributes || !content) return "";
    if (is_transparent) return *content;
    if (is_optional && attributes->empty() && content->empty()) return "";
    const std::string indent(depth, ' ');
    return indent + "<" + group.tag + *attributes + ">\n" + *content + indent + "</" + group.tag + ">\n";
  }

 private:
  static bool is_optional(const Group& group, const Line& line) {
    return std::find(group.optional.begin(), group.optional.end(), line.name) != group.optional.end();
  }

  const Group& group_of(const Line& line) const { return request_.tree.groups.at(line.name); }

  bool is_left_out(const Line& line) const {
    return line.flag == "x" || (is_group(line) && group_of(line).tag == cut_);
  }

  std::string text_of(const Line& line, const RecordList& records, bool is_attribute) const {
    if (line.type != "unit") return value_text(line, records, request_.site, is_attribute);
    const auto unit = text_at(parsed(line.value), *records.front(), records);
    return unit ? xml_text(spelled(request_.tree, trimmed(*unit)), is_attribute) : "";
  }

  // Empty for a record without a stage.
  std::string stage_of(const Record& record, std::size_t depth) const {
    Chain chain;
    std::size_t place = 0;
    for (const Record& other : view_.records) {
      const bool is_of_chain = other[EPOCH] == record[EPOCH] && other[SNETSTA] == record[SNETSTA];
      if (!is_of_chain || other[STAGE] == nullptr) continue;
      if (other[STAGE] == record[STAGE]) place = chain.size();
      chain.push_back(other);
    }
    return record[STAGE] == nullptr ? "" : stage_text(chain, place, request_, depth);
  }

  // Nothing when one that is required has no value.
  std::optional<std::string> attributes_of(const Group& group, const RecordList& records) const {
    std::string text;
    for (const Line& line : group.attributes) {
      if (is_left_out(line)) continue;
      const std::string value = text_of(line, records, true);
      if (value.empty() && line.flag == "r") return std::nullopt;
      if (!value.empty() || !is_optional(group, line)) text.append(" " + line.name + "=\"" + value + "\"");
    }
    return text;
  }

  // Nothing when one that is required is not there.
  std::optional<std::string> content_of(const Group& group, const RecordList& records, std::size_t depth) const {
    std::string text;
    for (const Line& line : group.elements) {
      if (is_left_out(line)) continue;
      const std::string element = element_text(group, line, records, depth);
      if (element.empty() && line.flag == "r") return std::nullopt;
      text += element;
    }
    return text;
  }

  std::string element_text(const Group& group, const Line& line, const RecordList& records, std::size_t depth) const {
    const bool optional = is_optional(group, line);
    if (line.type == "GROUP") return group_text(group_of(line), records, depth, optional);
    if (is_categorized(line)) return categories_text(line, records, depth, optional);
    if (line.type == "STAGE") return stage_of(*records.front(), depth);
    const std::string value = text_of(line, records, false);
    if (value.empty() && (optional || line.flag == "r")) return "";
    return std::string(depth, ' ') + "<" + line.name + ">" + value + "</" + line.name + ">\n";
  }

  std::string categories_text(const Line& line, const RecordList& records, std::size_t depth, bool optional) const {
    std::string text;
    for (const Category& category : categories(line, records)) {
      if (optional && is_empty(category.value)) continue;
      text += group_text(group_of(line), category.records, depth, optional);
    }
    return text;
  }

  const Request& request_;
  const View& view_;
  std::string cut_;
};

std::string document(const Request& request) {
  const View view = view_of(request);
  RecordList records;
  for (const Record& record : view.records) records.push_back(&record);
  if (records.empty()) return "";
  return Writer(request, view).group_text(request.tree.groups.at(request.tree.root), records, 1, false);
}

std::string lines_text(const std::string& list, const std::vector<Line>& lines) {
  std::string text = "    " + list + " &Tbl{\n";
  for (const Line& line : lines) {
    text.append("        " + line.name + " " + line.flag + " " + line.type + " " + line.value + "\n");
  }
  return text + "    }\n";
}

std::string group_lines(const std::string& name, const Group& group) {
  std::string text = name + " &Arr{\n    name " + group.tag + "\n" + lines_text("attributes", group.attributes) +
                     lines_text("elements", group.elements);
  if (!group.optional.empty()) {
    text += "    optional &Tbl{\n";
    for (const std::string& line : group.optional) text.append("        " + line + "\n");
    text += "    }\n";
  }
  return text + "}\n";
}

std::string options_text(const Tree& tree) {
  std::string text = tree.fir_filters == "FIR" ? "" : "fir_filters " + tree.fir_filters + "\n";
  if (tree.calib_units != "m") text += "calib_units " + tree.calib_units + "\n";
  if (tree.unit_spellings.empty()) return text;
  text += "unit_spellings units\nunits &Arr{\n";
  for (const auto& [unit, spelling] : tree.unit_spellings) text.append("    " + unit + " " + spelling + "\n");
  return text + "}\n";
}

}  // namespace

Outcome plain_conversion(const Request& request) {
  try {
    return {document(request), ""};
  } catch (const std::runtime_error& e) {
    return {"", e.what()};
  }
}

std::string tree_text(const Tree& tree) {
  std::string text = "edition 2\nroot_node " + tree.root + "\n" + options_text(tree);
  for (const auto& [name, group] : tree.groups) text += group_lines(name, group);
  return text;
}

}  // namespace triglub_reference::edition2
