// The tables of the example database: their layout, their keys, their epochs, and the cases they are there to show.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "examples/example_reader.h"

namespace {

using example::day;
using example::Field;
using example::fields;
using example::lines;
using example::matching;
using example::Row;
using example::rows;
using example::table_names;
using example::text;
using example::value;

constexpr long kOpen = 9999999;  // later than any day

long end_day(const Row& row, const std::string& field) {
  const long end = day(row, field);
  return end < 0 ? kOpen : end;
}

// A number as its table writes it. Sampling rates from 1000 up give up decimals to stay within their columns.
std::string written(const Field& field, double number) {
  char buffer[64];
  const int width = static_cast<int>(field.width);
  const char* format = field.type == 'g' ? "%*.*g" : "%*.*f";
  std::snprintf(buffer, sizeof buffer, format, width, field.decimals, number);
  return std::string(buffer).substr(0, field.name == "samprate" ? field.width : std::string::npos);
}

using Key = std::vector<std::variant<std::string, double>>;

Key key_of(const std::string& table, const Row& row, const std::vector<std::string>& names) {
  Key key;
  for (const std::string& name : names) {
    const std::vector<Field> layout = fields(table);
    const auto field = std::find_if(layout.begin(), layout.end(), [&](const Field& f) { return f.name == name; });
    if (field->type == 't') {
      key.emplace_back(text(row, name));
    } else {
      key.emplace_back(value(row, name));
    }
  }
  return key;
}

template <typename Condition>
long count(const std::string& table, Condition condition) {
  const std::vector<Row>& all = rows(table);
  return std::count_if(all.begin(), all.end(), condition);
}

// Whether some row of the table has exactly that text in the field.
bool holds(const std::string& table, const std::string& field, const std::string& wanted) {
  return count(table, [&](const Row& row) { return text(row, field) == wanted; }) > 0;
}

bool somewhere(const std::string& table, const std::string& field, const std::string& part) {
  return count(table, [&](const Row& row) { return text(row, field).find(part) != std::string::npos; }) > 0;
}

std::map<std::string, std::string> networks_of_stations() {
  std::map<std::string, std::string> networks;
  for (const Row& row : rows("snetsta")) networks[text(row, "sta")] = text(row, "snet");
  return networks;
}

// ---------------------------------------------------------------- layout

TEST(ExampleLayout, EveryLineHasTheTablesLengthAndBlanksBetweenItsFields) {
  for (const std::string& table : table_names()) {
    for (const std::string& line : lines(table)) {
      std::size_t end = 0;
      for (const Field& field : fields(table)) {
        end += field.width;
        ASSERT_LE(end, line.size()) << table << ": " << line;
        EXPECT_EQ((line + " ")[end], ' ') << table << ": " << line;
        ++end;
      }
      EXPECT_EQ(line.size(), end - 1) << table << ": " << line;
    }
  }
}

TEST(ExampleLayout, EveryFileEndsWithALineEnd) {
  for (const std::string& table : table_names()) {
    EXPECT_EQ(example::read_file(example::folder() / ("observatory." + table)).back(), '\n') << table;
  }
}

TEST(ExampleLayout, NumbersFillTheirColumnsInTheirFormat) {
  for (const std::string& table : table_names()) {
    for (const Row& row : rows(table)) {
      for (const Field& field : fields(table)) {
        if (field.type == 't') continue;
        const std::string& columns = row.at(field.name);
        char* end = nullptr;
        const double number = std::strtod(columns.c_str(), &end);
        ASSERT_EQ(end, columns.c_str() + columns.size()) << table << "." << field.name << ": " << columns;
        EXPECT_EQ(columns, written(field, number)) << table << "." << field.name;
      }
    }
  }
}

TEST(ExampleLayout, TextsStandAtTheLeftAndOnlyLocationCodesAreBlank) {
  for (const std::string& table : table_names()) {
    for (const Row& row : rows(table)) {
      for (const Field& field : fields(table)) {
        if (field.type != 't' || field.name == "loc") continue;
        EXPECT_NE(row.at(field.name).front(), ' ') << table << "." << field.name;
      }
    }
  }
}

TEST(ExampleLayout, RowsStandInTheOrderOfTheirPrimaryKeysWithoutRepeats) {
  const std::map<std::string, std::vector<std::string>> keys = {
      {"site", {"sta", "ondate"}},
      {"sitechan", {"sta", "chan", "ondate"}},
      {"sensor", {"sta", "chan", "time"}},
      {"instrument", {"inid"}},
      {"network", {"net"}},
      {"affiliation", {"net", "sta"}},
      {"snetsta", {"snet", "fsta"}},
      {"schanloc", {"sta", "chan"}},
      {"calibration", {"sta", "chan", "time"}},
      {"stage", {"sta", "chan", "time", "stageid"}},
  };
  for (const std::string& table : table_names()) {
    const std::vector<Row>& all = rows(table);
    ASSERT_FALSE(all.empty()) << table;
    for (std::size_t i = 1; i < all.size(); ++i) {
      EXPECT_LT(key_of(table, all[i - 1], keys.at(table)), key_of(table, all[i], keys.at(table))) << table << " " << i;
    }
  }
}

TEST(ExampleLayout, AlternateKeysAndPublishedCodesAreUnique) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> keys = {
      {"sitechan", {"chanid"}}, {"snetsta", {"sta"}}, {"schanloc", {"sta", "fchan", "loc"}}};
  for (const auto& [table, names] : keys) {
    std::set<Key> seen;
    for (const Row& row : rows(table)) EXPECT_TRUE(seen.insert(key_of(table, row, names)).second) << table;
  }
}

TEST(ExampleLayout, EveryRowCarriesTheSameLoadDate) {
  for (const std::string& table : table_names()) {
    for (const Row& row : rows(table)) EXPECT_EQ(value(row, "lddate"), 1704067200) << table;
  }
}

// ---------------------------------------------------------------- references

TEST(ExampleReferences, EveryStationAndChannelIsNamedInTheTablesThatPublishThem) {
  for (const Row& row : rows("sitechan")) {
    EXPECT_EQ(matching("snetsta", row, {"sta"}).size(), 1U) << text(row, "sta");
    EXPECT_EQ(matching("schanloc", row, {"sta", "chan"}).size(), 1U) << text(row, "sta") << " " << text(row, "chan");
  }
  for (const Row& row : rows("snetsta")) {
    EXPECT_TRUE(holds("network", "net", text(row, "snet")));
    EXPECT_TRUE(holds("site", "sta", text(row, "sta")));
    EXPECT_TRUE(holds("sitechan", "sta", text(row, "sta")));
  }
  for (const Row& row : rows("affiliation")) EXPECT_EQ(networks_of_stations().at(text(row, "sta")), text(row, "net"));
  EXPECT_EQ(rows("affiliation").size(), rows("snetsta").size());
}

TEST(ExampleReferences, EveryInstrumentIsUsedAndEveryNumberOfOneIsKnownOrNull) {
  std::set<std::string> known, used;
  for (const Row& row : rows("instrument")) known.insert(row.at("inid"));
  for (const Row& row : rows("sensor")) {
    if (value(row, "inid") != -1) used.insert(row.at("inid"));
  }
  EXPECT_EQ(known, used);
  EXPECT_EQ(count("sensor", [](const Row& row) { return value(row, "inid") == -1; }), 1);
}

TEST(ExampleReferences, TheInstrumentAgreesWithTheCalibrationOfItsChannel) {
  for (const Row& sensor : rows("sensor")) {
    const Row calibration = matching("calibration", sensor, {"sta", "chan", "time"}).at(0);
    EXPECT_EQ(sensor.at("calper"), calibration.at("calper"));
    if (value(sensor, "inid") == -1) continue;
    const Row instrument = matching("instrument", sensor, {"inid"}).at(0);
    EXPECT_EQ(instrument.at("samprate"), calibration.at("samprate"));
    EXPECT_EQ(instrument.at("ncalper"), calibration.at("calper"));
    const double calib = value(calibration, "calib");
    // A null calib is 0, a null ncalib is 1.
    const double expected = calib == 0 ? 1 : calib;
    EXPECT_NEAR(value(instrument, "ncalib"), expected, 1e-6 + 1e-7 * expected);
  }
}

// ---------------------------------------------------------------- epochs

TEST(ExampleEpochs, EveryChannelEpochLiesInsideOneSiteEpoch) {
  for (const Row& channel : rows("sitechan")) {
    int around = 0;
    for (const Row& site : matching("site", channel, {"sta"})) {
      around +=
          day(site, "ondate") <= day(channel, "ondate") && end_day(channel, "offdate") <= end_day(site, "offdate");
    }
    EXPECT_EQ(around, 1) << text(channel, "sta") << " " << text(channel, "chan");
  }
}

TEST(ExampleEpochs, SensorCalibrationAndStagesHaveTheDaysOfTheirChannel) {
  for (const Row& channel : rows("sitechan")) {
    const std::vector<Row> sensors = matching("sensor", channel, {"sta", "chan", "chanid"});
    ASSERT_EQ(sensors.size(), 1U);
    EXPECT_EQ(day(sensors[0], "time"), day(channel, "ondate"));
    EXPECT_EQ(day(sensors[0], "endtime"), day(channel, "offdate"));
    EXPECT_EQ(day(sensors[0], "jdate"), day(channel, "ondate"));
    EXPECT_EQ(matching("calibration", sensors[0], {"sta", "chan", "time", "endtime"}).size(), 1U);
  }
  EXPECT_EQ(rows("sensor").size(), rows("sitechan").size());
  EXPECT_EQ(rows("calibration").size(), rows("sitechan").size());
  for (const Row& stage : rows("stage")) {
    EXPECT_EQ(matching("sensor", stage, {"sta", "chan", "time", "endtime"}).size(), 1U);
  }
}

TEST(ExampleEpochs, EpochsFollowOneAnotherWithoutOverlap) {
  long without_gap = 0;
  const std::vector<Row>& all = rows("sensor");
  for (std::size_t i = 1; i < all.size(); ++i) {
    if (all[i].at("sta") + all[i].at("chan") != all[i - 1].at("sta") + all[i - 1].at("chan")) continue;
    EXPECT_LE(value(all[i - 1], "endtime"), value(all[i], "time"));
    without_gap += all[i - 1].at("endtime") == all[i].at("time");
  }
  EXPECT_GE(without_gap, 10);
}

TEST(ExampleEpochs, OneChannelHasFourEpochs) {
  std::map<std::string, int> epochs;
  for (const Row& row : rows("sitechan")) ++epochs[row.at("sta") + row.at("chan")];
  int most = 0;
  for (const auto& [channel, number] : epochs) most = std::max(most, number);
  EXPECT_EQ(most, 4);
}

TEST(ExampleEpochs, TheStationThatMovedHasItsChannelsInBothPlaces) {
  std::map<std::string, std::vector<Row>> places;
  for (const Row& row : rows("site")) places[text(row, "sta")].push_back(row);
  std::set<std::string> moved;
  for (const auto& [sta, epochs] : places) {
    if (epochs.size() < 2) continue;
    moved.insert(sta);
    ASSERT_EQ(epochs.size(), 2U);
    EXPECT_EQ(epochs[0].at("offdate"), epochs[1].at("ondate"));
    EXPECT_NE(epochs[0].at("lat"), epochs[1].at("lat"));
    EXPECT_NE(epochs[0].at("lon"), epochs[1].at("lon"));
    std::set<std::string> before, after;
    for (const Row& channel : matching("sitechan", epochs[0], {"sta"})) {
      (channel.at("offdate") == epochs[0].at("offdate") ? before : after).insert(text(channel, "chan"));
    }
    EXPECT_EQ(before, (std::set<std::string>{"BHE_00", "BHN_00", "BHZ_00"}));
    EXPECT_EQ(after, before);
  }
  EXPECT_EQ(moved, std::set<std::string>{"FJORD"});
}

TEST(ExampleEpochs, OneEpochBeganBefore1970AndOneBetweenTwoSeconds) {
  EXPECT_GE(count("sensor", [](const Row& row) { return value(row, "time") < 0; }), 1);
  const auto between = [](const Row& row) { return value(row, "time") != std::floor(value(row, "time")); };
  EXPECT_GE(count("sensor", between), 1);
  EXPECT_GE(count("stage", between), 1);
}

// ---------------------------------------------------------------- what the database is there to show

TEST(ExampleContent, HasTheSizeOfASmallNetwork) {
  EXPECT_GE(rows("network").size(), 3U);
  EXPECT_GE(rows("snetsta").size(), 12U);
  EXPECT_GE(rows("sitechan").size(), 50U);
}

TEST(ExampleContent, NetworksTakeTurnsInTheOrderOfTheStations) {
  std::map<std::string, int> runs;
  std::string last;
  for (const auto& [sta, net] : networks_of_stations()) {
    if (net != last) ++runs[net];
    last = net;
  }
  for (const auto& [net, number] : runs) EXPECT_GE(number, 2) << net;
}

TEST(ExampleContent, SomeNamesDifferFromThePublishedCodes) {
  EXPECT_GE(count("snetsta", [](const Row& row) { return text(row, "sta") != text(row, "fsta"); }), 3);
  EXPECT_GE(count("snetsta", [](const Row& row) { return text(row, "sta").size() == 6; }), 3);
  EXPECT_GE(count("schanloc", [](const Row& row) { return text(row, "chan") != text(row, "fchan"); }), 20);
  EXPECT_GE(count("schanloc", [](const Row& row) { return text(row, "chan").size() == 8; }), 4);
}

TEST(ExampleContent, OneStationCodeBelongsToTwoNetworks) {
  std::map<std::string, std::set<std::string>> networks;
  for (const Row& row : rows("snetsta")) networks[text(row, "fsta")].insert(text(row, "snet"));
  EXPECT_EQ(networks.at("KELP"), (std::set<std::string>{"9K", "XA"}));
}

TEST(ExampleContent, LocationCodesAreBlankDashAndTwoKindsOfDigits) {
  for (const char* loc : {"", "-", "00", "10"}) EXPECT_TRUE(holds("schanloc", "loc", loc)) << loc;
}

TEST(ExampleContent, NamesHoldWhatMarkupMustEscapeAndAccents) {
  const std::vector<std::pair<std::string, std::string>> names = {
      {"network", "netname"}, {"site", "staname"}, {"instrument", "insname"}};
  for (const auto& [table, field] : names) {
    EXPECT_TRUE(somewhere(table, field, "&")) << table;
    EXPECT_TRUE(somewhere(table, field, "<")) << table;
    EXPECT_TRUE(somewhere(table, field, "\xC3")) << table;  // the first byte of an accented letter in UTF-8
  }
}

TEST(ExampleContent, OneNameIsInLatin1) {
  EXPECT_TRUE(somewhere("site", "staname",
                        "Isla Pe\xF1"
                        "a "));
}

TEST(ExampleContent, PlacesLieOnAllSidesOfTheEdges) {
  EXPECT_TRUE(holds("site", "lon", " 180.0000"));
  EXPECT_GE(count("site", [](const Row& row) { return value(row, "lon") < -179; }), 1);
  EXPECT_GE(count("site", [](const Row& row) { return value(row, "lat") < 0; }), 1);
  EXPECT_GE(count("site", [](const Row& row) { return value(row, "lat") > 0; }), 1);
  EXPECT_GE(count("site", [](const Row& row) { return value(row, "elev") < 0; }), 1);
  EXPECT_GE(count("site", [](const Row& row) { return value(row, "dnorth") != 0 && value(row, "deast") != 0; }), 1);
  EXPECT_GE(count("sitechan", [](const Row& row) { return value(row, "edepth") >= 0.1; }), 1);
}

TEST(ExampleContent, NullsStandWhereRealTablesHaveThem) {
  EXPECT_TRUE(holds("site", "staname", "-"));
  EXPECT_TRUE(holds("site", "refsta", "-"));
  EXPECT_TRUE(holds("sitechan", "descrip", "-"));
  EXPECT_TRUE(holds("stage", "dfile", "-"));
  EXPECT_TRUE(holds("stage", "iunits", "-"));
  EXPECT_TRUE(holds("stage", "ounits", "-"));
  for (const Row& row : rows("stage")) EXPECT_EQ(text(row, "dfile") == "-", text(row, "dir") == "-");
}

TEST(ExampleContent, DirectionsFitTheChannelCodes) {
  for (const Row& row : rows("sitechan")) {
    const std::string code = text(matching("schanloc", row, {"sta", "chan"}).at(0), "fchan");
    const bool directed = code[1] == 'H' || code[1] == 'N';  // a seismometer or an accelerometer
    const char orientation = directed ? code[2] : 'O';
    const double azimuth = value(row, "hang");
    const double dip = value(row, "vang");
    SCOPED_TRACE(text(row, "sta") + " " + text(row, "chan"));
    if (orientation == 'Z') {
      EXPECT_EQ(dip, 0);
    } else if (orientation == 'N') {
      EXPECT_EQ(dip, 90);
      EXPECT_EQ(std::fmod(azimuth, 360), 0);
    } else if (orientation == 'E') {
      EXPECT_EQ(dip, 90);
      EXPECT_EQ(azimuth, 90);
    } else if (orientation == '1' || orientation == '2') {
      EXPECT_EQ(dip, 90);
      EXPECT_GT(std::fmod(azimuth, 90), 5);
    } else {
      EXPECT_EQ(azimuth, -1);
      EXPECT_EQ(dip, -1);
    }
  }
  EXPECT_EQ(count("sitechan", [](const Row& row) { return value(row, "hang") == 360; }), 1);
}

TEST(ExampleContent, LogChannelsHaveNoSamplingRateAndNoStages) {
  std::set<std::string> logs;
  for (const Row& row : rows("calibration")) {
    if (value(row, "samprate") != 0) continue;
    logs.insert(text(row, "chan"));
    EXPECT_TRUE(matching("stage", row, {"sta", "chan"}).empty());
    EXPECT_EQ(value(row, "calib"), 0);
    const Row sensor = matching("sensor", row, {"sta", "chan"}).at(0);
    EXPECT_EQ(value(matching("instrument", sensor, {"inid"}).at(0), "samprate"), 0);
  }
  EXPECT_EQ(logs, (std::set<std::string>{"ACE", "LOG"}));
}

}  // namespace
