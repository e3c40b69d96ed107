// Days are looked at once, before anything is made of them: a document could not say when an epoch begins that has
// none.
#include "epochs/station_tables.h"

#include <algorithm>
#include <limits>
#include <string>

#include "fatal_failure.h"
#include "platform/elog.h"

namespace triglub {

namespace {

constexpr std::uint32_t kFaultsTold = 20;

}  // namespace

Dbptr open_table(Dbptr db, const char* name) {
  const Dbptr table = dblookup(db, nullptr, name, nullptr, nullptr);
  if (table.table < 0) throw FatalFailure(std::string("the table ") + name + " cannot be used");
  return table;
}

LoadedTable::LoadedTable(const char* name, Dbptr table) : name_(name), handle_(table), columns_(table) {
  if (!columns_.has("lddate")) return;
  load_dates_ = columns_.reals("lddate");
  null_load_date_ = columns_.null_real("lddate");
}

double LoadedTable::load_date(std::uint32_t row) const {
  const bool is_null = load_dates_.empty() || load_dates_[row] == null_load_date_;
  return is_null ? -std::numeric_limits<double>::infinity() : load_dates_[row];
}

TimeTable::TimeTable(const char* name, Dbptr table)
    : LoadedTable(name, table),
      times_(columns().reals("time")),
      end_times_(columns().reals("endtime")),
      null_time_(columns().null_real("time")),
      null_end_time_(columns().null_real("endtime")) {}

DayTable::DayTable(Dbptr db, const char* name)
    : LoadedTable(db, name),
      first_days_(columns().integers("ondate")),
      last_days_(columns().integers("offdate")),
      null_day_(columns().null_integer("ondate")) {}

HeldRow DayTable::held(std::uint32_t row) const {
  HeldRow held{{}, load_date(row), row};
  if (first_days_[row] != null_day_) held.span.begin = start_of_day(first_days_[row]).value_or(kFuture);
  if (last_days_[row] != null_day_) held.span.end = end_of_day(start_of_day(last_days_[row]).value_or(kPast));
  return held;
}

bool DayTable::is_day(std::int64_t day) const { return day == null_day_ || start_of_day(day).has_value(); }

void DayTable::check_days() const {
  std::uint32_t faults = 0;
  for (std::uint32_t row = 0; row < row_count(); ++row) {
    for (const bool is_first : {true, false}) {
      const std::int64_t day = is_first ? first_days_[row] : last_days_[row];
      if (is_day(day) || ++faults > kFaultsTold) continue;
      elog_complain(0, "%s: %s %ld: expected a date (yyyyddd)", columns().place(row).c_str(),
                    is_first ? "ondate" : "offdate", static_cast<long>(day));
    }
  }
  if (faults > kFaultsTold) elog_complain(0, "%s: %u more days that are no dates", name(), faults - kFaultsTold);
  if (faults > 0) throw FatalFailure(std::string("days of the table ") + name() + " are no dates; nothing is written");
}

Dbptr with_rows(const LoadedTable& table, const AddedRows& rows) {
  const Dbptr made = with_added_rows(table.handle(), rows);
  if (made.table < 0) throw FatalFailure(std::string("the table ") + table.name() + " would have too many rows");
  return made;
}

StationTables::StationTables(Dbptr db)
    : sitechan(db, "sitechan"),
      snetsta(db, "snetsta"),
      schanloc(db, "schanloc"),
      network(db, "network"),
      site(db, "site"),
      sensor(db, "sensor"),
      instrument(db, "instrument"),
      calibration(db, "calibration"),
      stage(db, "stage") {
  site.check_days();
  sitechan.check_days();
}

}  // namespace triglub
