// The master view keeps a channel epoch only where it finds its station codes, channel codes, network, site, sensor and
// calibration. The epochs that are not in it are joined once more, with outer joins, to see which of these is missing.
#include "tool/check_channels.h"

#include <algorithm>
#include <array>

#include "dbhelper.h"
#include "station_views.h"
#include "tool/late_conditions.h"

namespace triglub::tool {

namespace {

// In the order in which the master view joins them.
constexpr std::array<const char*, 6> kNeeded = {"snetsta", "schanloc", "network", "site", "sensor", "calibration"};

Dbptr table_of(Dbptr db, const char* table) { return dblookup(db, nullptr, table, nullptr, nullptr); }

std::vector<std::uint32_t> rows_not_in(Dbptr sitechan, Dbptr view) {
  std::vector<bool> seen(static_cast<std::size_t>(db_nrecs(sitechan)), false);
  for (const std::uint32_t row : base_rows(view, "sitechan")) seen[row] = true;
  std::vector<std::uint32_t> rows;
  for (std::uint32_t row = 0; row < seen.size(); ++row) {
    if (!seen[row]) rows.push_back(row);
  }
  return rows;
}

// The rows with what can be found for them; restricted as the master view is, with the same tables at hand.
Dbptr join_what_there_is(const Request& request, Dbptr rows) {
  Subset subset(request.conditions);
  const Dbptr coded = coded_channels(rows, Partners::optional, subset.array(), false);
  const Dbptr with_network = with_networks(coded, Partners::optional, nullptr);
  const Dbptr joined = with_station_tables(with_network, Partners::optional, false);
  release_view(coded);
  release_view(with_network);
  if (request.late_conditions.empty()) return joined;
  const Dbptr whole = joined_with_stages(joined);
  release_view(joined);
  return meeting(whole, request.late_conditions);
}

std::string reason_for(std::size_t missing, Dbptr db) {
  if (missing == kNeeded.size())
    return "channel epochs left out: the same sta, chan and ondate as another row of sitechan";
  const std::string table = kNeeded[missing];
  const std::string no_file = table_path(db, kNeeded[missing]).empty() ? " (the table has no file)" : "";
  return "channel epochs left out: no row of " + table + no_file;
}

std::string name_of(Dbptr record) {
  return db_fieldlookup(record, "sitechan.sta") + " " + db_fieldlookup(record, "sitechan.chan") + " " +
         db_fieldlookup(record, "sitechan.ondate");
}

// For each record the number in kNeeded of the first table that has no row for it.
std::vector<std::size_t> first_missing(Dbptr joined) {
  std::vector<std::size_t> missing(static_cast<std::size_t>(db_nrecs(joined)), kNeeded.size());
  for (std::size_t t = kNeeded.size(); t-- > 0;) {
    const std::vector<std::uint32_t> rows = base_rows(joined, kNeeded[t]);
    for (std::size_t r = 0; r < rows.size(); ++r) {
      if (rows[r] == NO_BASE_ROW) missing[r] = t;
    }
  }
  return missing;
}

void tell_missing(Dbptr joined, Gaps* gaps) {
  const std::vector<std::size_t> missing = first_missing(joined);
  const std::vector<std::uint32_t> epochs = base_rows(joined, "sitechan");
  for (std::size_t r = 0; r < epochs.size();) {
    // The records of one epoch lie together; the one that came furthest tells what was missing.
    std::size_t furthest = missing[r];
    std::size_t end = r + 1;
    for (; end < epochs.size() && epochs[end] == epochs[r]; ++end) furthest = std::max(furthest, missing[end]);
    joined.record = static_cast<std::int64_t>(r);
    gaps->left_out(reason_for(furthest, joined), name_of(joined));
    r = end;
  }
}

}  // namespace

void check_channels(const Request& request, Dbptr everything, Gaps* gaps) {
  const Dbptr sitechan = table_of(request.db, "sitechan");
  const std::vector<std::uint32_t> rows = rows_not_in(sitechan, everything);
  if (rows.empty()) return;
  const Dbptr dropped = view_of_records(sitechan, rows, nullptr);
  const Dbptr joined = join_what_there_is(request, dropped);
  tell_missing(joined, gaps);
  release_view(dropped);
  release_view(joined);
}

}  // namespace triglub::tool
