#include "epochs/station_tables.h"

#include <gmock/gmock.h>

#include <limits>

#include "fatal_failure.h"
#include "support/collected_log.h"
#include "support/made_database.h"

namespace triglub {
namespace {

using testing::ElementsAre;
using triglub_test::at_hour;
using triglub_test::CollectedLog;
using triglub_test::MadeDatabase;
using triglub_test::MadeRows;

constexpr Instant kNewYear = 946684800000;

TEST(DayTable, RowsHoldToTheEndOfTheirLastDay) {
  const MadeDatabase made({{"site", {{"ondate", "2000001"}, {"offdate", "2000002"}}}, {"site", {}}});
  const DayTable table(made.db(), "site");
  EXPECT_EQ(table.held(0).span, (Span{kNewYear, kNewYear + 2 * kDay}));
  EXPECT_EQ(table.held(1).span, (Span{kPast, kFuture}));
}

TEST(LoadedTable, ANullLoadDateIsLessThanAny) {
  const MadeDatabase made({{"site", {}}, {"site", {{"lddate", "-9000000000.00000"}}}});
  const LoadedTable table(made.db(), "site");
  EXPECT_EQ(table.load_date(0), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(table.load_date(1), -9e9);
}

TEST(TimeTable, RowsHoldFromTheirTimeToTheirEnd) {
  const MadeDatabase made({{"sensor", {{"time", at_hour(0)}, {"endtime", at_hour(24)}}}, {"sensor", {}}});
  const TimeTable table(made.db(), "sensor");
  EXPECT_EQ(table.held(0).span, (Span{kNewYear, kNewYear + kDay}));
  EXPECT_EQ(table.held(1).span, (Span{kPast, kFuture}));
}

TEST(StationTables, DaysThatAreNoDatesAreToldByRowAndRefused) {
  const MadeDatabase made({{"site", {}}, {"site", {{"ondate", "1999366"}, {"offdate", "2000367"}}}});
  const CollectedLog log;
  EXPECT_THROW(StationTables(made.db()), FatalFailure);
  std::vector<std::string> lines = log.lines();
  for (std::string& line : lines) line = made.shortened(line);
  EXPECT_THAT(lines, ElementsAre("warning: site:2: ondate 1999366: expected a date (yyyyddd)",
                                 "warning: site:2: offdate 2000367: expected a date (yyyyddd)"));
}

TEST(StationTables, OfManyFaultsTheFirstTwentyAreTold) {
  MadeRows rows;
  for (int i = 0; i < 23; ++i) rows.push_back({"sitechan", {{"ondate", "2000999"}}});
  const MadeDatabase made(rows);
  const CollectedLog log;
  EXPECT_THROW(StationTables(made.db()), FatalFailure);
  ASSERT_EQ(log.lines().size(), 21U);
  EXPECT_EQ(log.lines().back(), "warning: sitechan: 3 more days that are no dates");
}

}  // namespace
}  // namespace triglub
