// Tables by hand: rows of one station AAK with one channel BHZ, unless they say otherwise.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_MADE_TABLES_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_MADE_TABLES_H

#include <string>
#include <utility>
#include <vector>

#include "reference/edition2/rows.h"

namespace triglub_reference::edition2 {

// Midnight of 2000-01-01, and some instants from there on, as files have them.
inline constexpr double kMidnight = 946684800.0;
inline std::string at_hour(double hour) { return std::to_string(kMidnight + hour * 3600.0); }

using TableRows = std::vector<std::pair<Table, Row>>;

inline Tables tables_of(const TableRows& rows) {
  Tables tables;
  for (auto [table, row] : rows) {
    const bool has_station = table != NETWORK && table != INSTRUMENT;
    if (has_station) row.insert({"sta", "AAK"});
    if (has_station && table != SNETSTA && table != SITE) row.insert({"chan", "BHZ"});
    if (table == SNETSTA) row.insert({{"snet", "KR"}, {"fsta", "AAK"}});
    tables.rows[kTableNames[table]].push_back(row);
  }
  return tables;
}

}  // namespace triglub_reference::edition2

#endif
