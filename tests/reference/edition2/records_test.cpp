// The plain form's records, held against records told by hand.
#include "reference/edition2/records.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reference/edition2/instants.h"
#include "reference/edition2/made_tables.h"

namespace triglub_reference::edition2 {

namespace {

std::string name_in(const Record& record, Table table, const char* field) {
  return text_in(record[table], table, field).value_or("none");
}

// NETWORK STATION CHANNEL PLACE STAGE
std::string line_of(const Record& record) {
  return name_in(record, SNETSTA, "snet") + " " + name_in(record, SNETSTA, "fsta") + " " +
         name_in(record, SITECHAN, "chan") + " " + name_in(record, SITE, "staname") + " " +
         name_in(record, STAGE, "stageid");
}

std::vector<std::string> lines_of(const Request& request) {
  const View view = view_of(request);
  std::vector<std::string> lines;
  for (const Record& record : view.records) lines.push_back(line_of(record));
  return lines;
}

Request request_for(const TableRows& rows, const Conditions& conditions = {}, Level level = Level::response) {
  Request request;
  request.tables = tables_of(rows);
  request.conditions = conditions;
  request.level = level;
  return request;
}

using Lines = std::vector<std::string>;

const std::pair<Table, Row> kPlace = {SITE, {{"staname", "s"}}};
const std::pair<Table, Row> kLaterPlace = {SITE, {{"staname", "t"}, {"ondate", "2000002"}}};

TEST(PlainRecords, AreThoseOfEachPublishedStationAndStage) {
  const TableRows rows = {{SITECHAN, {}},
                          kPlace,
                          {STAGE, {{"stageid", "10"}}},
                          {STAGE, {{"stageid", "2"}}},
                          {SNETSTA, {}},
                          {SNETSTA, {{"snet", "A"}}}};
  EXPECT_EQ(lines_of(request_for(rows)),
            (Lines{"A AAK BHZ s 2", "A AAK BHZ s 10", "KR AAK BHZ s 2", "KR AAK BHZ s 10"}));
}

TEST(PlainRecords, LeaveOutStationsThatAreNotPublished) {
  EXPECT_EQ(lines_of(request_for({{SITECHAN, {}}, kPlace})), Lines{});
  EXPECT_EQ(lines_of(request_for({{SITECHAN, {}}, kPlace, {SNETSTA, {{"snet", "-"}}}})), Lines{});
}

TEST(PlainRecords, ARowThatStandsTwiceCountsOnce) {
  const TableRows rows = {{SITECHAN, {}}, kPlace, {SNETSTA, {{"auth", "a"}}}, {SNETSTA, {{"auth", "b"}}}};
  const Request request = request_for(rows);  // whose rows the view points to
  const View view = view_of(request);
  ASSERT_EQ(view.records.size(), 1u);
  EXPECT_EQ(name_in(view.records[0], SNETSTA, "auth"), "b");
}

TEST(PlainRecords, HoldPlacesWithoutChannels) {
  EXPECT_EQ(lines_of(request_for({kPlace, {SNETSTA, {}}})), (Lines{"KR AAK none s none"}));
  EXPECT_EQ(lines_of(request_for({kPlace, {SITECHAN, {{"offdate", "2000001"}}}, kLaterPlace, {SNETSTA, {}}})),
            (Lines{"KR AAK BHZ s none", "KR AAK none t none"}));
}

TEST(PlainRecords, APlaceThatNeverStandsIsNone) {
  EXPECT_EQ(lines_of(request_for({kPlace, {SITE, {{"staname", "t"}}}, {SNETSTA, {}}})), (Lines{"KR AAK none t none"}));
}

TEST(PlainRecords, PlacesWithoutChannelsAreLeftOutWhereAConditionIsOnChannels) {
  const TableRows rows = {kPlace, {SNETSTA, {}}};
  EXPECT_EQ(lines_of(request_for(rows, {{"site.sta", "AAK"}})).size(), 1u);
  for (const char* field : {"sta", "chan", "sensor.inid", "instrument.insname", "calib", "stageid", "epoch.time"}) {
    EXPECT_EQ(lines_of(request_for(rows, {{field, ".*"}})), Lines{}) << field;
  }
}

TEST(PlainRecords, HoldNetworksWithoutStationsAtTheirLevelOnly) {
  const TableRows rows = {
      kPlace, {SNETSTA, {}}, {NETWORK, {{"net", "KR"}}}, {NETWORK, {{"net", "A"}}}, {NETWORK, {{"net", "-"}}}};
  EXPECT_EQ(lines_of(request_for(rows, {}, Level::network)), (Lines{"KR AAK none s none", "none none none none none"}));
  EXPECT_EQ(lines_of(request_for(rows, {}, Level::station)).size(), 1u);
  EXPECT_EQ(lines_of(request_for(rows, {{"site.sta", ".*"}}, Level::network)).size(), 1u);
  EXPECT_EQ(lines_of(request_for(rows, {{"network.net", ".*"}}, Level::network)).size(), 2u);
}

TEST(PlainRecords, ConditionsMatchTheWholeTextAndTheTextOfANull) {
  const TableRows rows = {{SITECHAN, {}}, {SITECHAN, {{"chan", "LHZ"}, {"chanid", "3"}}}, kPlace, {SNETSTA, {}}};
  EXPECT_EQ(lines_of(request_for(rows, {{"chan", "BH"}})), Lines{});
  EXPECT_EQ(lines_of(request_for(rows, {{"chan", "BH.|x"}})), (Lines{"KR AAK BHZ s none"}));
  EXPECT_EQ(lines_of(request_for(rows, {{"sitechan.chanid", "-1"}})), (Lines{"KR AAK BHZ s none"}));
  EXPECT_EQ(lines_of(request_for(rows, {{"sitechan.chanid", "3"}, {"chan", "BHZ"}})), Lines{});
}

TEST(PlainRecords, AreInTheOrderOfPlacesChannelsAndTimes) {
  const TableRows rows = {{SITECHAN, {{"chan", "LHZ"}}},
                          {SITECHAN, {}},
                          {SITE, {{"staname", "s"}, {"offdate", "2000001"}}},
                          kLaterPlace,
                          {SNETSTA, {}}};
  EXPECT_EQ(lines_of(request_for(rows)),
            (Lines{"KR AAK BHZ s none", "KR AAK LHZ s none", "KR AAK BHZ t none", "KR AAK LHZ t none"}));
}

std::string times_in(const Record& record, Table table) {
  const auto begin = number_in(record[table], table, "time");
  const auto end = number_in(record[table], table, "endtime");
  return (begin ? instant_text(rounded(*begin)) : "open") + " " + (end ? instant_text(rounded(*end)) : "open");
}

TEST(PlainRecords, AStationIsAsLongAsItsPlaceWidenedByItsChannels) {
  const TableRows rows = {{SITECHAN, {{"ondate", "1999365"}, {"offdate", "2000002"}}},
                          {SITE, {{"ondate", "2000001"}, {"offdate", "2000001"}}},
                          {SNETSTA, {}}};
  const Request request = request_for(rows);  // whose rows the view points to
  const View view = view_of(request);
  ASSERT_EQ(view.records.size(), 1u);
  EXPECT_EQ(times_in(view.records[0], STATION_EPOCH), "1999-12-31T00:00:00Z 2000-01-03T00:00:00Z");
  EXPECT_EQ(times_in(view.records[0], NETWORK_EPOCH), "1999-12-31T00:00:00Z 2000-01-03T00:00:00Z");
  EXPECT_EQ(name_in(view.records[0], STATION_EPOCH, "channels"), "1");
}

TEST(PlainRecords, AStationHasTheEarliestBorderOfItsChannels) {
  const TableRows rows = {{SITECHAN, {}},
                          {SITECHAN, {{"chan", "LHZ"}}},
                          {SITE, {{"offdate", "2000001"}}},
                          {SITE, {{"ondate", "2000001"}}},
                          {SENSOR, {{"time", at_hour(7)}}},
                          {SENSOR, {{"time", at_hour(5)}, {"chan", "LHZ"}}},
                          {SNETSTA, {}}};
  const Request request = request_for(rows, {{"chan", "BHZ"}});
  const View view = view_of(request);
  ASSERT_EQ(view.records.size(), 1u);
  EXPECT_EQ(times_in(view.records[0], STATION_EPOCH), "2000-01-01T05:00:00Z open");
  EXPECT_EQ(times_in(view.records[0], EPOCH), "2000-01-01T07:00:00Z open");
  EXPECT_EQ(name_in(view.records[0], STATION_EPOCH, "channels"), "2");
}

TEST(PlainRecords, AChannelOfSeveralEpochsCountsOnce) {
  const Request request = request_for({{SITECHAN, {{"offdate", "1999365"}}},
                                       {SITECHAN, {{"ondate", "2000001"}}},
                                       {SITECHAN, {{"chan", "LHZ"}}},
                                       {SITE, {}},
                                       {SNETSTA, {}}});
  const View view = view_of(request);
  ASSERT_EQ(view.records.size(), 3u);
  EXPECT_EQ(name_in(view.records[0], STATION_EPOCH, "channels"), "2");
}

TEST(PlainRecords, ANetworkIsAsLongAsAllItsPlacesWhateverIsChosen) {
  const TableRows rows = {{SITE, {{"ondate", "2000001"}, {"offdate", "2000001"}}},
                          {SITE, {{"ondate", "2000003"}, {"offdate", "2000003"}, {"sta", "B"}}},
                          {SNETSTA, {}},
                          {SNETSTA, {{"sta", "B"}, {"fsta", "B"}}}};
  const Request request = request_for(rows, {{"snetsta.fsta", "B"}});
  const View view = view_of(request);
  ASSERT_EQ(view.records.size(), 1u);
  EXPECT_EQ(times_in(view.records[0], STATION_EPOCH), "2000-01-03T00:00:00Z 2000-01-04T00:00:00Z");
  EXPECT_EQ(times_in(view.records[0], NETWORK_EPOCH), "2000-01-01T00:00:00Z 2000-01-04T00:00:00Z");
  EXPECT_EQ(name_in(view.records[0], NETWORK_EPOCH, "stations"), "2");
}

}  // namespace

}  // namespace triglub_reference::edition2
