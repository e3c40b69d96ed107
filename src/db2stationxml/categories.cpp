// The split of records by category in the classic interface.
#include "writer/categories.h"

#include <utility>

#include "db2stationxml.h"
#include "state/process_state.h"

std::vector<std::string> get_categories(Dbptr db, ElementDescription line, SmartIndex index) {
  return triglub::or_die([&] { return triglub::categories_of(triglub::process_state(), db, line, index); });
}

bool sort_strings_as_numeric(std::string const& a, std::string const& b) { return std::stoi(a) < std::stoi(b); }

SmartIndex pseudo_subset(Dbptr db, std::string expression, SmartIndex index) {
  return triglub::or_die([&] { return triglub::records_of_category(triglub::process_state(), db, expression, index); });
}
