// Epochs of tables made by hand. The plain form of edition 2 is held against the library on random tables; here is what
// must not be left to chance.
#include "epochs/all_epochs.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "epochs/station_choice.h"
#include "platform/engine/set_threads.h"
#include "support/made_database.h"

namespace triglub {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using triglub_test::at_hour;
using triglub_test::MadeDatabase;
using triglub_test::MadeRows;

using MadeRow = MadeRows::value_type;

// Hours from 2000-01-01.
std::string hour_text(Instant instant) {
  if (instant == kPast || instant == kFuture) return "open";
  return std::to_string((instant - 946684800000) / 3600000);
}

// Rows are counted from 1.
std::string row_text(std::uint32_t row) { return row == kAbsent ? "-" : std::to_string(row + 1); }

// "BEGIN..END cCHANNEL pPLACE sSENSOR kCALIBRATION STAGES".
std::vector<std::string> lines_of(const EpochList& list) {
  std::vector<std::string> lines;
  for (const Epoch& epoch : list.epochs) {
    std::string line = hour_text(epoch.span.begin) + ".." + hour_text(epoch.span.end) + " c" +
                       row_text(epoch.sitechan) + " p" + row_text(epoch.site) + " s" + row_text(epoch.sensor) + " k" +
                       row_text(epoch.calibration);
    for (std::uint32_t i = 0; i < epoch.stage_count; ++i) line += " " + row_text(list.stages[epoch.first_stage + i]);
    lines.push_back(line);
  }
  return lines;
}

std::vector<std::string> epochs_of(const MadeRows& rows) {
  const MadeDatabase made(rows);
  const StationTables tables(made.db());
  return lines_of(find_epochs(tables, ChannelOrder(tables), StationSet()));
}

MadeRow day_row(const char* table, const char* on, const char* off, const char* chanid = "-1") {
  MadeRow row = {table, {{"ondate", on}, {"offdate", off}}};
  if (row.first == "sitechan") row.second["chanid"] = chanid;
  return row;
}
MadeRow channel(const char* on, const char* off, const char* chanid = "-1") {
  return day_row("sitechan", on, off, chanid);
}
MadeRow place(const char* on, const char* off) { return day_row("site", on, off); }
MadeRow sensor(double begin, double end, const char* chanid = "-1") {
  return {"sensor", {{"time", at_hour(begin)}, {"endtime", at_hour(end)}, {"chanid", chanid}}};
}
MadeRow open_sensor(double begin) { return {"sensor", {{"time", at_hour(begin)}}}; }
MadeRow calibration(double begin, double end) {
  return {"calibration", {{"time", at_hour(begin)}, {"endtime", at_hour(end)}}};
}
MadeRow stage(const char* number, double begin, double end) {
  return {"stage", {{"stageid", number}, {"time", at_hour(begin)}, {"endtime", at_hour(end)}}};
}

struct Case {
  const char* what;
  MadeRows rows;
  std::vector<std::string> epochs;
};

const Case kCases[] = {
    {"two rows of sitechan that begin on one day: the later one stands, the longer one behind it",
     {place("-1", "-1"), channel("2000001", "2000003"), channel("2000001", "2000001"), open_sensor(-5)},
     {"0..24 c2 p1 s1 k-", "24..72 c1 p1 s1 k-"}},
    {"a row of sitechan that stands again",
     {place("-1", "-1"), channel("1999365", "2000004"), channel("2000001", "2000001"), open_sensor(-50)},
     {"-24..0 c1 p1 s1 k-", "0..24 c2 p1 s1 k-", "24..96 c1 p1 s1 k-"}},
    {"rows that meet on a day hold no instant twice",
     {place("-1", "-1"), channel("1999365", "2000001"), channel("2000001", "2000002"), sensor(-24, 10), sensor(10, 48)},
     {"-24..10 c1 p1 s1 k-", "10..48 c2 p1 s2 k-"}},
    {"a sensor that is changed does not change the channel",
     {place("-1", "-1"), channel("2000001", "2000001"), sensor(0, 10), sensor(10, 24)},
     {"0..10 c1 p1 s1 k-", "10..24 c1 p1 s2 k-"}},
    {"rows of the same span are one epoch",
     {place("-1", "-1"), channel("2000001", "2000001"), sensor(0, 24), calibration(0, 24), stage("2", 0, 24),
      stage("1", 0, 24)},
     {"0..24 c1 p1 s1 k1 2 1"}},
    {"a stage that is replaced by a row that looks the same begins an epoch",
     {place("-1", "-1"), channel("2000001", "2000001"), stage("1", 0, 10), stage("1", 10, 24)},
     {"0..10 c1 p1 s- k- 1", "10..24 c1 p1 s- k- 2"}},
    {"a stage without a number comes first",
     {place("-1", "-1"), channel("2000001", "2000001"), stage("1", 0, 24), stage("-1", 0, 24)},
     {"0..24 c1 p1 s- k- 2 1"}},
    {"an epoch is not cut where a covered row ends",
     {place("-1", "-1"), channel("2000001", "2000001"), calibration(-10, 5), calibration(0, 24), stage("1", -10, 5),
      stage("1", 0, 24)},
     {"0..24 c1 p1 s- k2 2"}},
    {"a time without a sensor is a gap",
     {place("-1", "-1"), channel("2000001", "2000002"), sensor(0, 10), sensor(20, 48)},
     {"0..10 c1 p1 s1 k-", "20..48 c1 p1 s2 k-"}},
    {"each row of sitechan takes its own of two sensors that hold at one time",
     {place("-1", "-1"), channel("2000001", "2000001", "7"), channel("2000002", "2000002", "8"), sensor(0, 48, "7"),
      sensor(0, 48, "8")},
     {"0..24 c1 p1 s1 k-", "24..48 c2 p1 s2 k-"}},
    {"a sensor of another chanid leaves the channel without one",
     {place("-1", "-1"), channel("2000001", "2000001", "7"), sensor(0, 24, "8")},
     {"0..24 c1 p1 s- k-"}},
    {"a station that moves at noon, as its channel sees it",
     {place("1999365", "2000001"), place("2000001", "-1"), channel("1999365", "-1"), sensor(-24, 12), open_sensor(12)},
     {"-24..12 c1 p1 s1 k-", "12..open c1 p2 s2 k-"}},
    {"a channel that outlives its place keeps it",
     {place("1999365", "2000001"), channel("1999365", "2000002")},
     {"-24..48 c1 p1 s- k-"}},
    {"a channel that is there before its place has it",
     {place("2000001", "-1"), channel("1999365", "2000002")},
     {"-24..48 c1 p1 s- k-"}},
    {"without a place there are no epochs", {channel("1999365", "2000002")}, {}},
    {"rows of stations and channels without a name are of no channel",
     {place("-1", "-1"),
      {"site", {{"sta", "-"}}},
      {"sitechan", {{"sta", "-"}}},
      {"sitechan", {{"chan", "-"}}},
      {"sensor", {{"chan", "-"}}}},
     {}},
};

TEST(Epochs, AreWhatTheRowsTellApart) {
  for (const Case& c : kCases) EXPECT_EQ(epochs_of(c.rows), c.epochs) << c.what;
}

TEST(Epochs, AnEmptyDatabaseHasNone) { EXPECT_THAT(epochs_of({{"network", {}}}), IsEmpty()); }

TEST(Epochs, AreByStationChannelAndTimeWhateverTheOrderOfTheTable) {
  const auto at = [](const char* sta, const char* chan) {
    return triglub_test::FieldTexts{{"sta", sta}, {"chan", chan}};
  };
  EXPECT_THAT(epochs_of({{"site", {{"sta", "B"}}},
                         {"site", {{"sta", "A"}}},
                         {"sitechan", at("B", "BHZ")},
                         {"sitechan", at("A", "BHZ")},
                         {"sitechan", at("B", "BHE")}}),
              ElementsAre("open..open c2 p2 s- k-", "open..open c3 p1 s- k-", "open..open c1 p1 s- k-"));
}

// Enough channels for several threads to have a part each.
TEST(EpochsThreads, AreTheSameForAnyNumberOfThreads) {
  MadeRows rows;
  for (int s = 0; s < 2500; ++s) {
    const std::string sta = "S" + std::to_string(s);
    rows.push_back({"site", {{"sta", sta}, {"ondate", s % 7 == 0 ? "2000002" : "1999001"}}});
    for (int c = 0; c < 2; ++c) {
      const std::string chan = "C" + std::to_string(c);
      for (const char* on : {"2000001", "2000003"}) {
        const char* off = s % 5 == 0 ? "2000003" : "2000002";
        rows.push_back(
            {"sitechan", {{"sta", sta}, {"chan", chan}, {"ondate", on}, {"offdate", on[6] == '1' ? off : "-1"}}});
      }
      rows.push_back({"sensor", {{"sta", sta}, {"chan", chan}, {"time", at_hour(s % 30)}}});
      rows.push_back({"stage", {{"sta", sta}, {"chan", chan}, {"time", at_hour(s % 11)}, {"stageid", "1"}}});
    }
  }
  const MadeDatabase made(rows);
  const StationTables tables(made.db());
  const ChannelOrder order(tables);
  const EpochList alone = find_epochs(tables, order, StationSet());
  EXPECT_GT(alone.epochs.size(), 5000U);
  for (const unsigned int threads : {2U, 3U, 8U}) {
    const triglub_test::SetThreads set(threads);
    const EpochList together = find_epochs(tables, order, StationSet());
    EXPECT_EQ(lines_of(together), lines_of(alone)) << threads;
    ASSERT_EQ(together.told.size(), alone.told.size()) << threads;
    for (std::size_t i = 0; i < alone.told.size(); ++i) {
      EXPECT_EQ(together.told[i].remark, alone.told[i].remark);
      EXPECT_EQ(together.told[i].row, alone.told[i].row);
    }
  }
}

}  // namespace
}  // namespace triglub
