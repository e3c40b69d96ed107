#include "dbhelper.h"
#include "platform/timeconv.h"
#include "tool/findings.h"

namespace triglub::tool {

namespace {

bool is_date(std::int64_t yyyyddd) {
  return yyyyddd >= 0 && yyyyddd <= 9999999 && epoch(static_cast<int>(yyyyddd)) != NULL_EPOCH;
}

void check_date(Dbptr row, const char* table, const char* field, Findings* findings) {
  row = db_setfield(row, field);
  std::int64_t date = 0;
  std::string null_text;
  const std::string text = db_fieldlookup(row, field);
  // The null value is asked for here, not through get_nullvalue, which remembers answers for the conversion.
  dbquery(row, dbNULL_VALUE, null_text);
  if (text == null_text || dbgetv(row, nullptr, field, &date, nullptr) != 0 || is_date(date)) return;
  findings->fault(table_path(row, table) + ":" + std::to_string(row.record + 1) + ": field " + table + "." + field +
                  ": expected a date (yyyyddd), found '" + text + "'");
}

void check_table(Dbptr everything, const char* table, Findings* findings) {
  Dbptr base = dblookup(everything, nullptr, table, nullptr, nullptr);
  std::vector<bool> checked(static_cast<std::size_t>(db_nrecs(base)), false);
  for (const std::uint32_t row : base_rows(everything, table)) {
    if (checked[row]) continue;
    checked[row] = true;
    base.record = row;
    check_date(base, table, "ondate", findings);
    check_date(base, table, "offdate", findings);
  }
}

}  // namespace

void check_dates(Dbptr everything, Findings* findings) {
  check_table(everything, "site", findings);
  check_table(everything, "sitechan", findings);
}

}  // namespace triglub::tool
