// In attributes the library writes entities for what is markup, but nothing for characters that XML does not have.
#include "tool/check_texts.h"

#include <algorithm>
#include <array>
#include <memory>

#include "dbhelper.h"
#include "platform/columns.h"
#include "platform/elog.h"
#include "platform/parfile.h"
#include "tool/well_formed.h"
#include "xml_text.h"

namespace triglub::tool {

namespace {

constexpr std::size_t kMostTold = 20;

// With one of these in reach, what is markup in a text may be torn.
constexpr std::array kTearing = {"substr", "replace", "upper", "lower"};

bool has_forbidden_character(std::string_view text) {
  const bool has_control = std::any_of(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  });
  return has_control || text.find("\xEF\xBF\xBE") != std::string_view::npos ||
         text.find("\xEF\xBF\xBF") != std::string_view::npos;
}

// Two texts may come to stand side by side: the end of ]]> shows itself in each of them.
bool may_end_section(std::string_view text) {
  return text.starts_with('>') || text.find("]>") != std::string_view::npos;
}

bool is_doubtful(std::string_view text, bool is_content) {
  if (!is_content) return has_forbidden_character(text);
  return may_end_section(text) || !xml_text_fault(text, false).empty();
}

std::string why(std::string_view text) {
  const std::string fault = xml_text_fault(text, false);
  return fault.empty() ? "the end of ]]>" : fault;
}

bool is_any_doubtful(const TextColumn& column, bool is_content) {
  for (std::uint32_t code = 0; code < column.code_count(); ++code) {
    if (is_doubtful(column.text_of(code), is_content)) return true;
  }
  return false;
}

// Markup in a text of the tree itself is meant; it must be whole.
bool is_sound_text(std::string_view text) {
  return !may_end_section(text) && (xml_text_fault(text, false).empty() || is_content(text));
}

bool is_declaration(const TreeLine& line) { return xml_prefix(line.name) == "xmlns" || line.name == "xmlns"; }

std::string site_text(const std::string& key) {
  Pf* site = nullptr;
  if (pfread("site", &site) != 0) return "";
  const std::unique_ptr<Pf, decltype(&pffree)> owner(site, &pffree);
  return pfget_string(site, key);
}

}  // namespace

TextCheck::TextCheck(Dbptr everything, const WrittenTree& tree) : everything_(everything) {
  for (const auto& [key, group] : tree.groups) read(group);
  look_at_tree();
  look_at_columns();
}

void TextCheck::read(const TreeGroup& group) {
  for (const TreeLine& line : group.attributes) {
    // What a prefix stands for is known only where it is written in the tree.
    if (is_declaration(line) && line.type != LineType::literal) is_tree_doubtful_ = true;
    read(line, &attributes_);
  }
  for (const TreeLine& line : group.elements) {
    if (line.type == LineType::stage) contents_.add("stage.iunits stage.ounits");
    read(line, &contents_);
  }
}

void TextCheck::read(const TreeLine& line, ValueWords* words) {
  if (line.keyword == "other_pf:site") return words->add_text(site_text(line.value));
  if (line.type == LineType::literal) return words->add_text(line.value);
  if (line.type == LineType::string) words->add(line.value);
}

void TextCheck::look_at_tree() {
  const auto& texts = contents_.texts();
  const bool is_torn =
      std::any_of(kTearing.begin(), kTearing.end(), [this](const char* name) { return contents_.has(name); });
  const bool has_markup = std::any_of(texts.begin(), texts.end(), [](const std::string& text) {
    return text.find_first_of("<&") != std::string::npos;
  });
  if (contents_.are_unclear() || (is_torn && has_markup)) is_tree_doubtful_ = true;
  if (!std::all_of(texts.begin(), texts.end(), is_sound_text)) is_tree_doubtful_ = true;
  const auto& others = attributes_.texts();
  if (std::any_of(others.begin(), others.end(), has_forbidden_character)) is_tree_doubtful_ = true;
}

void TextCheck::look_at_columns() {
  for (const ViewField& field : fields_of_view(everything_)) {
    if (field.type != dbSTRING) continue;
    const bool is_content = contents_.has(field.table, field.name);
    if (is_content || attributes_.has(field.table, field.name)) look_at(field, is_content);
  }
}

void TextCheck::look_at(const ViewField& field, bool is_content) {
  if (!is_any_doubtful(TableColumns(field.base).texts(field.name), is_content)) return;
  const auto is_wanted = [is_content](std::string_view text) { return is_doubtful(text, is_content); };
  const auto rows =
      selected_rows(everything_, field, records_with_text(db_setfield(field.base, field.name), is_wanted));
  count_ += rows.size();
  Dbptr row = field.base;
  for (const std::uint32_t number : rows) {
    if (doubts_.size() == kMostTold) return;
    row.record = number;
    const std::string text = db_fieldlookup(row, field.name);
    doubts_.push_back(fault_of_value(row, field, "'" + text + "' may not stand in XML as it is: " + why(text)));
  }
}

void TextCheck::tell() const {
  for (const std::string& doubt : doubts_) elog_complain(0, "%s", doubt.c_str());
  if (count_ > doubts_.size()) elog_complain(0, "and %ju such values more", std::uintmax_t{count_ - doubts_.size()});
}

}  // namespace triglub::tool
