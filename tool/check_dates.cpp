// Dates are judged by their distinct texts, then told row by row in the order of the view.
#include "tool/check_dates.h"

#include <charconv>
#include <unordered_set>

#include "dbhelper.h"
#include "platform/sources.h"
#include "platform/timeconv.h"

namespace triglub::tool {

namespace {

constexpr const char* kDates[] = {"ondate", "offdate"};

bool is_date(std::string_view text) {
  std::int64_t yyyyddd = 0;
  if (text.starts_with('+')) text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), yyyyddd);
  if (error != std::errc() || end != text.data() + text.size()) return false;
  return yyyyddd >= 0 && yyyyddd <= 9999999 && epoch(static_cast<int>(yyyyddd)) != NULL_EPOCH;
}

// The rows of the table whose date is neither null nor one that there is.
std::unordered_set<std::uint32_t> rows_without_date(Dbptr table, const char* field) {
  const Dbptr dates = db_setfield(table, field);
  // The null value is asked for here, not through get_nullvalue, which remembers answers for the conversion.
  std::string null_text;
  dbquery(dates, dbNULL_VALUE, null_text);
  const auto rows =
      records_with_text(dates, [&](std::string_view text) { return text != null_text && !is_date(text); });
  return {rows.begin(), rows.end()};
}

void tell(Dbptr row, const char* table, const char* field, Gaps* gaps) {
  gaps->fault(row_place(row) + ": field " + table + "." + field + ": expected a date (yyyyddd), found '" +
              db_fieldlookup(row, field) + "'");
}

void check_table(Dbptr everything, const char* table, Gaps* gaps) {
  Dbptr base = dblookup(everything, nullptr, table, nullptr, nullptr);
  std::unordered_set<std::uint32_t> faulty[] = {rows_without_date(base, kDates[0]), rows_without_date(base, kDates[1])};
  if (faulty[0].empty() && faulty[1].empty()) return;
  // Only what is selected counts, in the order in which it would be written.
  for (const std::uint32_t row : base_rows(everything, table)) {
    base.record = row;
    for (int i = 0; i < 2; ++i) {
      if (faulty[i].erase(row) > 0) tell(base, table, kDates[i], gaps);
    }
  }
}

}  // namespace

void check_dates(Dbptr everything, Gaps* gaps) {
  check_table(everything, "site", gaps);
  check_table(everything, "sitechan", gaps);
}

}  // namespace triglub::tool
