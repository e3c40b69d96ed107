#include "epochs/borders.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/made_database.h"

namespace triglub {
namespace {

using triglub_test::MadeDatabase;
using triglub_test::MadeRows;

constexpr Instant kNewYear = 946684800000;  // 2000-01-01
constexpr Instant kHour = 3600000;

// The rows of site as "BEGIN..END", in hours from the new year; "open" for none.
std::string hours_of(const HeldRows& rows) {
  const auto text = [](Instant instant) -> std::string {
    if (instant == kPast || instant == kFuture) return "open";
    return std::to_string((instant - kNewYear) / kHour);
  };
  std::string hours;
  for (const HeldRow& row : rows) {
    hours += (hours.empty() ? "" : " ") + text(row.span.begin) + ".." + text(row.span.end);
  }
  return hours;
}

struct Case {
  const char* what;
  MadeRows sites;
  std::vector<Instant> sensors;  // begins, ascending
  bool meet;
  std::string hours;
};

std::pair<std::string, triglub_test::FieldTexts> site(const char* on, const char* off) {
  return {"site", {{"ondate", on}, {"offdate", off}}};
}

const Case kCases[] = {
    {"apart", {site("1999364", "1999365"), site("2000001", "2000002")}, {kNewYear + kHour}, false, "-48..0 0..48"},
    {"without a sensor on the day at its begin",
     {site("1999365", "2000001"), site("2000001", "2000002")},
     {kNewYear - 1, kNewYear + kDay},
     true,
     "-24..0 0..48"},
    {"where the first sensor of the day begins",
     {site("1999365", "2000001"), site("2000001", "2000002")},
     {kPast, kNewYear - 1, kNewYear + 2 * kHour, kNewYear + 5 * kHour},
     true,
     "-24..2 2..48"},
    {"whatever the order of the table",
     {site("2000001", "2000002"), site("1999365", "2000001")},
     {kNewYear + 2 * kHour},
     true,
     "2..48 -24..2"},
    {"an open begin is the earliest",
     {site("-1", "2000001"), site("2000001", "-1")},
     {kNewYear + 2 * kHour},
     true,
     "open..2 2..open"},
    {"two rows that begin on one day do not follow each other",
     {site("2000001", "2000001"), site("2000001", "2000002")},
     {kNewYear + 2 * kHour},
     false,
     "0..24 0..48"},
    {"a row of one day between two others begins at the border and ends with the day",
     {site("1999365", "2000001"), site("2000001", "2000001"), site("2000001", "2000003")},
     {kNewYear + 2 * kHour},
     true,
     "-24..2 2..24 2..72"},
    {"a chain of three",
     {site("1999365", "2000001"), site("2000001", "2000002"), site("2000002", "-1")},
     {kNewYear + 2 * kHour, kNewYear + 25 * kHour},
     true,
     "-24..2 2..25 25..open"},
    {"a row that ends before it begins meets nobody",
     {site("2000002", "2000001"), site("2000001", "2000003")},
     {kNewYear + 2 * kHour},
     false,
     "24..24 0..72"},
};

TEST(Borders, RowsOfOneDayMeetWhereTheFirstSensorOfTheDayBegins) {
  for (const Case& c : kCases) {
    const MadeDatabase made(c.sites);
    const DayTable table(made.db(), "site");
    HeldRows rows;
    for (std::uint32_t row = 0; row < table.row_count(); ++row) rows.push_back(table.held(row));
    EXPECT_EQ(meet_at_borders(table, SensorBorders(c.sensors), &rows), c.meet) << c.what;
    EXPECT_EQ(hours_of(rows), c.hours) << c.what;
  }
}

}  // namespace
}  // namespace triglub
