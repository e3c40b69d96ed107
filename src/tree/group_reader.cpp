// Groups that are yet to be read wait in a list: however deep they nest, reading them does not.
#include "tree/group_reader.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "tree/names.h"
#include "tree/top_level.h"
#include "xml_text.h"

namespace triglub {

namespace {

constexpr const char* kName = "name";
constexpr const char* kAttributes = "attributes";
constexpr const char* kElements = "elements";
constexpr const char* kOptional = "optional";
constexpr std::string_view kTransparent = "-";

const std::vector<std::string>& group_keys() {
  static const std::vector<std::string> keys = {kName, kAttributes, kElements, kOptional};
  return keys;
}

std::string inner_key(const std::string& group, const std::string& key) { return group + "{" + key + "}"; }

const char* list_key(LinePart part) { return part == LinePart::attributes ? kAttributes : kElements; }

std::string_view text_at(Tbl* list, long i) { return static_cast<const char*>(gettbl(list, i)); }

using LinesByName = std::multimap<std::string_view, TreeLine*>;

LinesByName lines_by_name(TreeGroup* group) {
  LinesByName lines;
  for (TreeLine& line : group->attributes) lines.emplace(line.name, &line);
  for (TreeLine& line : group->elements) lines.emplace(line.name, &line);
  return lines;
}

// What a message calls the group.
std::string called(const TreeGroup& group) { return "the group '" + group.key + "'"; }

}  // namespace

GroupReader::GroupReader(Pf* pf, const ExpressionCheck& check, TreeGroups* groups, FaultList* faults)
    : pf_(pf), groups_(groups), faults_(faults), line_reader_(check, faults), tables_(table_keys(pf)) {
  std::ranges::sort(tables_);
}

const TreeGroup* GroupReader::read_all() {
  const char* key = pfget_string(pf_, kRootKey);
  if (key == nullptr) return nullptr;
  const TreeGroup* root = require_group(key, pf_key_line(pf_, kRootKey));
  while (!unread_.empty()) {
    TreeGroup* group = unread_.back();
    unread_.pop_back();
    read_group(group);
  }
  return root;
}

const TreeGroup* GroupReader::require_group(const std::string& key, long line) {
  if (!std::ranges::binary_search(tables_, key)) {
    faults_->add(line, "the group '" + key + "' is not defined" + meant(key, tables_));
    return nullptr;
  }
  const auto [entry, is_new] = groups_->try_emplace(key);
  if (is_new) {
    entry->second.key = key;
    entry->second.line = pf_key_line(pf_, key.c_str());
    unread_.push_back(&entry->second);
  }
  return &entry->second;
}

void GroupReader::read_group(TreeGroup* group) {
  check_keys(*group);
  read_tag(group);
  read_lines(*group, LinePart::attributes, &group->attributes);
  read_lines(*group, LinePart::elements, &group->elements);
  check_lines(*group, faults_);
  check_attributes(*group);
  check_content(*group);
  mark_optional(group);
}

void GroupReader::check_keys(const TreeGroup& group) {
  for (const std::string& key : pf_keys(pf_, group.key.c_str())) {
    if (std::ranges::count(group_keys(), key) > 0) continue;
    faults_->add(pf_key_line(pf_, inner_key(group.key, key).c_str()),
                 called(group) + " cannot have the key '" + key + "'" + did_you_mean(key, group_keys()));
  }
}

void GroupReader::read_tag(TreeGroup* group) {
  const std::string key = inner_key(group->key, kName);
  const char* name = pfget_string(pf_, key.c_str());
  group->tag_line = std::max(pf_key_line(pf_, key.c_str()), group->line);
  if (name == nullptr) {
    return faults_->add(group->tag_line, called(*group) + " has no name (the string 'name': a tag, or -)");
  }
  group->is_transparent = name == kTransparent;
  if (group->is_transparent) return;
  group->tag = name;
  check_tag(*group, faults_);
}

Tbl* GroupReader::require_list(const TreeGroup& group, const std::string& key) {
  Tbl* list = pfget_tbl(pf_, inner_key(group.key, key).c_str());
  if (list == nullptr) {
    const long line = std::max(pf_key_line(pf_, inner_key(group.key, key).c_str()), group.line);
    faults_->add(line, called(group) + " has no list '" + key + "'");
  }
  return list;
}

void GroupReader::read_lines(const TreeGroup& group, LinePart part, std::vector<TreeLine>* lines) {
  Tbl* list = require_list(group, list_key(part));
  for (long i = 0; i < maxtbl(list); ++i) {
    const long number = pf_line(pf_, inner_key(group.key, list_key(part)).c_str(), i);
    auto line = line_reader_.read(text_at(list, i), part, number);
    if (!line) continue;
    if (part == LinePart::elements && leads_to_group(line->type)) line->group = require_group(line->name, number);
    lines->push_back(std::move(*line));
  }
}

void GroupReader::check_content(const TreeGroup& group) {
  const auto content = std::ranges::find_if(group.elements, &TreeLine::is_content);
  if (content == group.elements.end()) return;
  if (group.elements.size() > 1) {
    faults_->add(content->line,
                 called(group) + " has other lines beside its text (-): an element holds one or the other");
  }
  if (group.is_transparent) faults_->add(content->line, called(group) + " has no tag that could hold a text");
}

void GroupReader::check_attributes(const TreeGroup& group) {
  for (const TreeLine& attribute : group.attributes) {
    if (xml_prefix(attribute.name) != "xmlns" || attribute.type == LineType::literal) continue;
    faults_->add(attribute.line,
                 "'" + attribute.name + "' must be a text: a prefix always stands for the same namespace");
  }
  if (group.is_transparent && !group.attributes.empty()) {
    faults_->add(group.attributes.front().line, called(group) + " has no tag that could have attributes");
  }
}

std::vector<std::string> GroupReader::names_of_lines(const std::string& key) const {
  std::vector<std::string> names;
  for (const char* part : {kAttributes, kElements}) {
    Tbl* list = pfget_tbl(pf_, inner_key(key, part).c_str());
    for (long i = 0; i < maxtbl(list); ++i) names.emplace_back(line_name(text_at(list, i)));
  }
  return names;
}

void GroupReader::mark_optional(TreeGroup* group) {
  if (std::ranges::count(pf_keys(pf_, group->key.c_str()), kOptional) == 0) return;
  Tbl* list = require_list(*group, kOptional);
  // The name may be that of a line that is left out for the time being.
  const std::vector<std::string> names = names_of_lines(group->key);
  const std::set<std::string_view> known(names.begin(), names.end());
  const LinesByName lines = lines_by_name(group);
  for (long i = 0; i < maxtbl(list); ++i) {
    const std::string name(text_at(list, i));
    const long number = pf_line(pf_, inner_key(group->key, kOptional).c_str(), i);
    if (!known.contains(name)) {
      faults_->add(number, "no line of " + called(*group) + " has the name '" + name + "'" + meant(name, names));
    }
    const auto [first, end] = lines.equal_range(name);
    for (auto line = first; line != end; ++line) mark_line(number, line->second);
  }
}

void GroupReader::mark_line(long number, TreeLine* line) {
  line->is_optional = true;
  if (!line->is_required) return;
  faults_->add(number,
               "'" + line->name + "' cannot be optional: it is required (r) in line " + std::to_string(line->line));
}

std::string GroupReader::meant(const std::string& word, const std::vector<std::string>& names) const {
  return faults_->is_long() ? "" : did_you_mean(word, names);
}

}  // namespace triglub
