// The tables of a database that epochs are made of, as columns.
#ifndef TRIGLUB_SRC_EPOCHS_STATION_TABLES_H
#define TRIGLUB_SRC_EPOCHS_STATION_TABLES_H

#include <cstdint>
#include <span>
#include <string>

#include "epochs/held_row.h"
#include "epochs/keyed_rows.h"
#include "platform/columns.h"
#include "platform/database.h"

namespace triglub {

// A base table of the session. Throws FatalFailure where it refuses to load.
Dbptr open_table(Dbptr db, const char* name);

// A table with its load dates, if it has any.
class LoadedTable {
 public:
  // Throws FatalFailure where the table refuses to load.
  LoadedTable(Dbptr db, const char* name) : LoadedTable(name, open_table(db, name)) {}
  // Of a base table.
  LoadedTable(const char* name, Dbptr table);

  const char* name() const { return name_; }
  Dbptr handle() const { return handle_; }
  const TableColumns& columns() const { return columns_; }
  std::uint32_t row_count() const { return columns_.row_count(); }
  // A null load date is less than any.
  double load_date(std::uint32_t row) const;

 private:
  const char* name_;
  Dbptr handle_;
  TableColumns columns_;
  std::span<const double> load_dates_;
  double null_load_date_ = 0;
};

// A table whose rows hold from one instant to another: `time` and `endtime`.
class TimeTable : public LoadedTable {
 public:
  TimeTable(Dbptr db, const char* name) : TimeTable(name, open_table(db, name)) {}
  TimeTable(const char* name, Dbptr table);

  HeldRow held(std::uint32_t row) const {
    return {{begin_at(times_[row], null_time_), end_at(end_times_[row], null_end_time_)}, load_date(row), row};
  }

 private:
  std::span<const double> times_;
  std::span<const double> end_times_;
  double null_time_;
  double null_end_time_;
};

// A table whose rows hold from their first day to their last: `ondate` and `offdate`.
class DayTable : public LoadedTable {
 public:
  DayTable(Dbptr db, const char* name);

  // The days as numbers; those that are null have `null_day`.
  std::int64_t first_day(std::uint32_t row) const { return first_days_[row]; }
  std::int64_t last_day(std::uint32_t row) const { return last_days_[row]; }
  std::int64_t null_day() const { return null_day_; }
  // REQUIRES: check_days().
  HeldRow held(std::uint32_t row) const;
  // Throws FatalFailure, after a complaint for each of the first, when days of rows are no dates.
  void check_days() const;

 private:
  bool is_day(std::int64_t day) const;

  std::span<const std::int64_t> first_days_;
  std::span<const std::int64_t> last_days_;
  std::int64_t null_day_;
};

// Those that lack rows of snetsta, calibration or stage are given them while epochs are made; rows of the database keep
// their numbers.
struct StationTables {
  explicit StationTables(Dbptr db);

  DayTable sitechan;
  LoadedTable snetsta;
  LoadedTable schanloc;
  LoadedTable network;
  DayTable site;
  TimeTable sensor;
  LoadedTable instrument;
  TimeTable calibration;
  TimeTable stage;
};

// A table with further rows. Throws FatalFailure where it would have more than a table can.
Dbptr with_rows(const LoadedTable& table, const AddedRows& rows);

}  // namespace triglub

#endif
