// Which rows of a table are wanted.
#ifndef TRIGLUB_ENGINE_TABLE_ROW_CONDITIONS_H
#define TRIGLUB_ENGINE_TABLE_ROW_CONDITIONS_H

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace triglub {

// A row meets it when the text of the field, as dbget gives it, is one of the texts.
struct RowCondition {
  std::string field;  // the bare name
  std::set<std::string, std::less<>> texts;
};

// A row is wanted when it meets each of them; every row when there are none.
using RowConditions = std::vector<RowCondition>;

}  // namespace triglub

#endif
