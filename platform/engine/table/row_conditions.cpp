// Starts from all rows and takes away those that miss a condition; text fields are decided by code.
#include "engine/table/row_conditions.h"

#include <algorithm>
#include <numeric>

#include "engine/table/table.h"
#include "platform/database.h"
#include "platform/elog.h"
#include "platform/text.h"

namespace triglub {

namespace {

bool has(const RowCondition& condition, std::string_view text) {
  return condition.texts.contains(utf8_prefix(text, MAX_VALUE_BYTES));
}

// A text is looked at once, however many rows have it.
void keep_by_code(const Column& column, const RowCondition& condition, std::vector<std::uint32_t>* rows) {
  std::vector<char> is_wanted;
  for (std::uint32_t code = 0; code < column.dictionary.size(); ++code) {
    is_wanted.push_back(has(condition, column.dictionary[code]) ? 1 : 0);
  }
  std::erase_if(*rows, [&](std::uint32_t row) { return is_wanted[column.codes[row]] == 0; });
}

void keep(const Table& table, std::size_t field, const RowCondition& condition, std::vector<std::uint32_t>* rows) {
  if (table.schema().fields[field].storage() == Storage::text) {
    keep_by_code(table.column(field), condition, rows);
  } else {
    std::erase_if(*rows, [&](std::uint32_t row) { return !has(condition, table.text(field, row)); });
  }
}

}  // namespace

std::optional<std::vector<std::uint32_t>> rows_meeting(const Table& table, const RowConditions& conditions) {
  std::vector<std::uint32_t> rows(table.row_count());
  std::iota(rows.begin(), rows.end(), 0);
  for (const RowCondition& condition : conditions) {
    const int field = table.schema().find(condition.field);
    if (field < 0) {
      elog_complain(0, "table %s has no field '%s' to choose rows by", table.schema().name.c_str(),
                    condition.field.c_str());
      return std::nullopt;
    }
    keep(table, static_cast<std::size_t>(field), condition, &rows);
  }
  return rows;
}

}  // namespace triglub
