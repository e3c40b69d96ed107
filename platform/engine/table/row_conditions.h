// Which rows of a table are wanted.
#ifndef TRIGLUB_ENGINE_TABLE_ROW_CONDITIONS_H
#define TRIGLUB_ENGINE_TABLE_ROW_CONDITIONS_H

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace triglub {

class Table;

// A row meets it when the text of the field, as dbget gives it, is one of the texts.
struct RowCondition {
  std::string field;  // the bare name
  std::set<std::string, std::less<>> texts;
};

// A row is wanted when it meets each of them; every row when there are none.
using RowConditions = std::vector<RowCondition>;

// The rows that are wanted, ascending. Nothing, after a complaint, when the table has no such field.
std::optional<std::vector<std::uint32_t>> rows_meeting(const Table& table, const RowConditions& conditions);

}  // namespace triglub

#endif
