// A dot is left alone: it matches itself, and mostly nothing else that there is.
#include "tool/check_categories.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/characters.h"
#include "dbhelper.h"
#include "platform/columns.h"
#include "tool/view_tables.h"

namespace triglub::tool {

namespace {

bool is_other_pattern(std::string_view text) { return text.find_first_of("*+?()[]{}|^$\\/") != std::string_view::npos; }

// As std::stoi reads it.
bool is_no_integer(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  int number = 0;
  return std::from_chars(text.data(), text.data() + text.size(), number).ec != std::errc();
}

class CategoryCheck {
 public:
  CategoryCheck(Dbptr everything, Gaps* gaps)
      : everything_(everything), fields_(fields_of_view(everything)), gaps_(*gaps) {}

  void look_at(const TreeLine& line) {
    if (!is_category(line.type)) return;
    const ViewField* const field = field_named(fields_, line.value);
    const bool is_numeric = line.type == LineType::number_categories;
    if (field == nullptr || !checked_.emplace(field, is_numeric).second) return;
    tell(*field, is_other_pattern, "no character that means something in a pattern");
    if (is_numeric) tell(*field, is_no_integer, "a whole number of 32 bits");
  }

 private:
  void tell(const ViewField& field, bool (*is_wrong)(std::string_view), const char* expected) {
    const auto rows = records_with_text(db_setfield(field.base, field.name), is_wrong);
    const auto what = [&](const std::string& value) {
      return "'" + value + "' tells no category: expected " + expected;
    };
    refuse_values(everything_, field, rows, what, &gaps_);
  }

  Dbptr everything_;
  std::vector<ViewField> fields_;
  Gaps& gaps_;
  std::set<std::pair<const ViewField*, bool>> checked_;
};

}  // namespace

void check_categories(Dbptr everything, const WrittenTree& tree, Gaps* gaps) {
  CategoryCheck check(everything, gaps);
  for (const auto& [key, group] : tree.groups) {
    for (const TreeLine& line : group.elements) check.look_at(line);
  }
}

}  // namespace triglub::tool
