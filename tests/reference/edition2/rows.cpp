#include "reference/edition2/rows.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "support/flat_database.h"

namespace triglub_reference::edition2 {

namespace {

using triglub_test::FlatField;

// Of all the numbers of the files, integers and dates are the ones that are eight bytes wide.
Kind kind_of(const FlatField& field) {
  if (field.is_text) return Kind::text;
  return field.width == 8 ? Kind::integer : Kind::real;
}

std::optional<Field> computed_field(Table table, const std::string& name) {
  if (table == CHAIN) return name == "number" ? std::optional(Field{table, name, Kind::integer, "-1"}) : std::nullopt;
  if (name == "time") return Field{table, name, Kind::real, "-9999999999.99900"};
  if (name == "endtime") return Field{table, name, Kind::real, "9999999999.99900"};
  if (table == STATION_EPOCH && name == "channels") return Field{table, name, Kind::integer, "-1"};
  if (table == NETWORK_EPOCH && name == "stations") return Field{table, name, Kind::integer, "-1"};
  return std::nullopt;
}

std::optional<Field> field_of_table(Table table, const std::string& name) {
  if (table >= EPOCH) return computed_field(table, name);
  for (const FlatField& field : triglub_test::flat_schema().at(kTableNames[table])) {
    if (field.name == name) return Field{table, name, kind_of(field), field.null_text};
  }
  return std::nullopt;
}

}  // namespace

std::optional<Field> find_field(const std::string& name) {
  const std::size_t point = name.find('.');
  const std::string bare = point == std::string::npos ? name : name.substr(point + 1);
  for (std::size_t table = 0; table < TABLES; ++table) {
    if (point != std::string::npos && name.substr(0, point) != kTableNames[table]) continue;
    if (auto field = field_of_table(static_cast<Table>(table), bare)) return field;
  }
  return std::nullopt;
}

std::string trimmed(const std::string& text) {
  constexpr const char* blanks = " \t\n\v\f\r";
  const std::size_t begin = text.find_first_not_of(blanks);
  if (begin == std::string::npos) return "";
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::optional<double> number_in(const std::string& text) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0') return std::nullopt;
  return number;
}

std::optional<std::string> text_in(const Row* row, const Field& field) {
  if (row == nullptr) return std::nullopt;
  const auto found = row->find(field.name);
  if (found == row->end()) return std::nullopt;
  const std::string text = trimmed(found->second);
  if (text.empty() || text == field.null_text) return std::nullopt;
  if (field.kind != Kind::text && number_in(text) == number_in(field.null_text)) return std::nullopt;
  return text;
}

std::optional<std::string> text_in(const Row* row, Table table, const char* name) {
  return text_in(row, field_of_table(table, name).value());
}

std::optional<double> number_in(const Row* row, Table table, const char* name) {
  const auto text = text_in(row, table, name);
  return text ? number_in(*text) : std::nullopt;
}

const std::vector<Row>& rows_of(const Tables& tables, Table table) {
  static const std::vector<Row> none;
  const auto found = tables.rows.find(kTableNames[table]);
  return found == tables.rows.end() ? none : found->second;
}

RowList rows_with(const Tables& tables, Table table, const Key& key) {
  RowList rows;
  for (const Row& row : rows_of(tables, table)) {
    const bool matches = std::all_of(key.begin(), key.end(),
                                     [&](const auto& part) { return text_in(&row, table, part.first) == part.second; });
    if (matches) rows.push_back(&row);
  }
  return rows;
}

bool is_newer(const Row* row, const Row* other, Table table) {
  constexpr double never = -std::numeric_limits<double>::infinity();
  const double loaded = number_in(row, table, "lddate").value_or(never);
  const double other_loaded = number_in(other, table, "lddate").value_or(never);
  return loaded != other_loaded ? loaded > other_loaded : row > other;
}

const Row* newest(const RowList& rows, Table table) {
  const Row* best = nullptr;
  for (const Row* row : rows) {
    if (best == nullptr || is_newer(row, best, table)) best = row;
  }
  return best;
}

bool is_newest_of(const Row& row, const Tables& tables, Table table, const std::vector<const char*>& key) {
  Key values;
  for (const char* name : key) {
    const auto text = text_in(&row, table, name);
    if (!text) return false;
    values.emplace_back(name, *text);
  }
  return newest(rows_with(tables, table, values), table) == &row;
}

}  // namespace triglub_reference::edition2
