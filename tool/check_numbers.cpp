// What the library does with a text is done here once more, where its row is known.
#include "tool/check_numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "dbhelper.h"
#include "elements.h"
#include "platform/columns.h"
#include "platform/record_expression.h"
#include "platform/timeconv.h"
#include "tool/value_words.h"
#include "tool/view_tables.h"

namespace triglub::tool {

namespace {

constexpr double kMetres = 1000;  // of a kilometre

// Types whose value is a field with a number. Unknown ones are taken for degrees of latitude.
bool is_of_numbers(const TreeLine& line) {
  static const std::vector<std::string> keywords = {"deg_lat", "deg_lon", "dip", "deg_az", "meters"};
  if (line.type != LineType::string) return false;
  return !is_type_keyword(line.keyword) || std::ranges::count(keywords, line.keyword) > 0;
}

// Too small counts as too large: the library's reading refuses both.
bool is_number(std::string_view text, double factor) {
  const std::optional<double> number = number_in(text);
  if (!number || !std::isfinite(*number * factor)) return false;
  if (*number != 0) return std::fabs(*number) >= std::numeric_limits<double>::min();
  return text.substr(0, text.find_first_of("eE")).find_first_of("123456789") == std::string_view::npos;
}

class NumberCheck {
 public:
  NumberCheck(Dbptr everything, Gaps* gaps)
      : everything_(everything), fields_(fields_of_view(everything)), gaps_(*gaps) {}

  void run(const WrittenTree& tree) {
    ValueWords words;
    for (const auto& [key, group] : tree.groups) {
      look_at(group.attributes, &words);
      look_at(group.elements, &words);
    }
    for (const ViewField& field : fields_) {
      if (field.type == dbTIME && words.has(field.table, field.name)) check_times(field);
    }
  }

 private:
  void look_at(const std::vector<TreeLine>& lines, ValueWords* words) {
    for (const TreeLine& line : lines) {
      if (line.type == LineType::string) words->add_words(line.value);
      if (is_of_numbers(line)) check_line(line);
    }
  }

  void check_line(const TreeLine& line) {
    const ViewField* const field = field_named(fields_, line.value);
    if (field == nullptr) return;  // which the library tells
    const double factor = line.keyword == "meters" ? kMetres : 1;
    if (!checked_.emplace(field, factor).second) return;
    std::string null_text;
    const Dbptr column = db_setfield(field->base, field->name);
    dbquery(column, dbNULL_VALUE, null_text);
    const bool may_be_null = line.keyword != "meters";
    const auto is_no_number = [&](std::string_view text) {
      return !(may_be_null && text == null_text) && !is_number(text, factor);
    };
    tell(*field, records_with_text(column, is_no_number),
         "a number for " + line.name + ", neither too large nor too small for a double");
  }

  void check_times(const ViewField& field) {
    const TableColumns columns(field.base);
    const std::span<const double> times = columns.reals(field.name);
    const double null_time = columns.null_real(field.name);
    std::vector<std::uint32_t> rows;
    for (std::uint32_t row = 0; row < times.size(); ++row) {
      if (times[row] != null_time && !has_year(times[row])) rows.push_back(row);
    }
    tell(field, rows, "a time of the years 1 to 9999");
  }

  static bool has_year(double time) {
    constexpr double kSurelyFirst = -62e9;  // in the years 6 and 9887
    constexpr double kSurelyLast = 25e10;
    return (time > kSurelyFirst && time < kSurelyLast) || *epoch2str(time, "%G%u") != '\0';
  }

  void tell(const ViewField& field, const std::vector<std::uint32_t>& rows, const std::string& expected) {
    const auto what = [&](const std::string& value) {
      return std::string("expected ").append(expected).append(", found '").append(value).append("'");
    };
    refuse_values(everything_, field, rows, what, &gaps_);
  }

  Dbptr everything_;
  std::vector<ViewField> fields_;
  Gaps& gaps_;
  std::set<std::pair<const ViewField*, double>> checked_;  // with the factor of the line
};

}  // namespace

void check_numbers(Dbptr everything, const WrittenTree& tree, Gaps* gaps) { NumberCheck(everything, gaps).run(tree); }

}  // namespace triglub::tool
