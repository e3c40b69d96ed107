// At every instant a document has each channel of the tables once, with the rows that stand then.
//
// The tables are looked at in the plain form, instant by instant; the document is read back. Channels are told by what
// is written of them, so what must agree at an instant are the two lists of channels, whatever their order.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "properties/databases.h"
#include "properties/document_spans.h"
#include "properties/xml_reader.h"
#include "reference/edition2/epochs.h"
#include "reference/edition2/instants.h"
#include "reference/edition2/random_case.h"
#include "support/random_seed.h"

namespace triglub_properties {

namespace {

using triglub_reference::Random;
using namespace triglub_reference::edition2;

// What there is of a channel at an instant, in one line.
using Facts = std::multiset<std::string>;

std::string number_text(std::optional<double> number) {
  if (!number) return "none";
  std::ostringstream text;
  text.precision(9);
  text << *number + 0.0;
  return text.str();
}

std::string line_of(std::initializer_list<std::string> facts) {
  std::string line;
  for (const std::string& fact : facts) line += fact + "|";
  return line;
}

// --- tables

// Distinct places with coordinates, so that none is left out or taken for another.
void make_places_distinct(Random& random, Tables& tables) {
  std::set<std::tuple<std::string, std::string, std::string>> known;
  std::vector<Row> kept;
  for (Row row : tables.rows["site"]) {
    const auto text = [&row](const char* name) { return text_in(&row, SITE, name).value_or(""); };
    if (!known.emplace(text("sta"), text("ondate"), text("offdate")).second) continue;
    row["lat"] = std::to_string(random.between(-89, 89));
    row["lon"] = std::to_string(random.between(-180, 180));
    row["elev"] = random.pick({"1.6450", "0", "0.0123", "-0.0010", "3.3"});
    kept.push_back(row);
  }
  tables.rows["site"] = kept;
}

// A day that is none ends the conversion; nothing can be compared then.
void make_days_dates(Tables& tables) {
  for (const char* table : {"site", "sitechan"}) {
    for (Row& row : tables.rows[table]) {
      for (const char* day : {"ondate", "offdate"}) {
        if (row.at(day) == "1999366" || row.at(day) == "0" || row.at(day) == "2000000") row[day] = "-1";
      }
    }
  }
}

// Codes and calibrations that are worked out are in no row.
void leave_nothing_to_work_out(Tables& tables) {
  tables.rows.erase("affiliation");
  for (Row& row : tables.rows["instrument"]) {
    row["ncalib"] = "1.000000";
    row["ncalper"] = "-1.000000";
    row["dfile"] = "-";
  }
}

Tables tidy_tables(std::uint64_t seed) {
  Random random(seed);
  Tables tables = random_tables(random);
  make_days_dates(tables);
  make_places_distinct(random, tables);
  leave_nothing_to_work_out(tables);
  for (Row& row : tables.rows["calibration"]) {
    row["units"] = "nm/s";
    row["calper"] = random.pick({"1.0", "0.05", "-1.000000", "10"});
  }
  return tables;
}

struct NamedChannel {
  const Row* snetsta;
  std::string sta;
  std::string chan;
  Channel rows;
};

std::set<std::string> channel_names(const Tables& tables, const std::string& sta) {
  std::set<std::string> names;
  for (const Row* row : rows_with(tables, SITECHAN, {{"sta", sta}})) {
    if (const auto chan = text_in(row, SITECHAN, "chan")) names.insert(*chan);
  }
  return names;
}

std::vector<NamedChannel> channels_of(const Tables& tables) {
  std::vector<NamedChannel> channels;
  for (const Row& row : rows_of(tables, SNETSTA)) {
    if (!is_newest_of(row, tables, SNETSTA, {"snet", "fsta", "sta"})) continue;
    const std::string sta = *text_in(&row, SNETSTA, "sta");
    for (const std::string& chan : channel_names(tables, sta)) {
      channels.push_back({&row, sta, chan, Channel(tables, sta, chan)});
    }
  }
  return channels;
}

// Each instant at which anything changes, the ones beside it, and one long before and one long after.
std::vector<Instant> probes(const std::vector<NamedChannel>& channels) {
  std::set<Instant> instants = {begin_of(-60000000000.0), end_of(9000000000.0)};
  for (const NamedChannel& channel : channels) {
    for (const Instant cut : channel.rows.cuts()) {
      if (std::isfinite(cut)) instants.insert({cut - 1, cut, cut + 1});
    }
  }
  return {instants.begin(), instants.end()};
}

// --- documents

struct WrittenChannel {
  Span span;
  std::string facts;
};

Facts facts_at(const std::vector<WrittenChannel>& channels, Instant t) {
  Facts facts;
  for (const WrittenChannel& channel : channels) {
    if (channel.span.holds(t)) facts.insert(channel.facts);
  }
  return facts;
}

using FactsOfTables = std::function<std::string(const Tables&, const NamedChannel&, const Standing&)>;

Facts facts_at(const Tables& tables, const std::vector<NamedChannel>& channels, Instant t,
               const FactsOfTables& facts_of) {
  Facts facts;
  for (const NamedChannel& channel : channels) {
    if (const auto standing = channel.rows.at(t)) facts.insert(facts_of(tables, channel, *standing));
  }
  return facts;
}

// Adds to *met how many channels there were at the instants.
void compare(const Tables& tables, const std::vector<WrittenChannel>& written, const FactsOfTables& facts_of,
             std::size_t* met) {
  const std::vector<NamedChannel> channels = channels_of(tables);
  for (const Instant t : probes(channels)) {
    const Facts standing = facts_at(tables, channels, t, facts_of);
    ASSERT_EQ(standing, facts_at(written, t)) << "at " << instant_text(t);
    *met += standing.size();
  }
}

// --- the tree of row numbers

constexpr const char* kLedger = R"(edition 2
root_node ledger
ledger &Arr{
    name Ledger
    attributes &Tbl{
    }
    elements &Tbl{
        station - CATEGORIZED_GROUP snetsta.auth
    }
}
station &Arr{
    name -
    attributes &Tbl{
    }
    elements &Tbl{
        name - CATEGORIZED_GROUP sitechan.chan
    }
    optional &Tbl{
        name
    }
}
name &Arr{
    name -
    attributes &Tbl{
    }
    elements &Tbl{
        channel - CATEGORIZED_GROUP epoch.time
    }
}
channel &Arr{
    name Channel
    attributes &Tbl{
        startDate   - epoch epoch.time
        endDate     - epoch epoch.endtime
        snetsta     - string snetsta.auth
        sitechan    - string sitechan.descrip
        site        - string site.refsta
        sensor      - string sensor.tshift
        calibration - string calibration.snident
    }
    elements &Tbl{
        stage - CATEGORIZED_BY_NUMBER concat(stage.stageid)
    }
    optional &Tbl{
        startDate
        endDate
    }
}
stage &Arr{
    name -
    attributes &Tbl{
    }
    elements &Tbl{
        Row - string stage.ssident
    }
    optional &Tbl{
        Row
    }
}
)";

std::string ledger_facts(const Tables& /*tables*/, const NamedChannel& channel, const Standing& rows) {
  const auto number = [](const Row* row, Table table, const char* name) {
    return text_in(row, table, name).value_or("");
  };
  std::vector<std::string> stages;
  for (const Row* stage : rows.stages) stages.push_back(number(stage, STAGE, "ssident"));
  std::sort(stages.begin(), stages.end());
  std::string line = line_of({number(channel.snetsta, SNETSTA, "auth"), number(rows.sitechan, SITECHAN, "descrip"),
                              number(rows.site, SITE, "refsta"), number(rows.sensor, SENSOR, "tshift"),
                              number(rows.calibration, CALIBRATION, "snident")});
  for (const std::string& stage : stages) line += stage + "|";
  return line;
}

std::vector<WrittenChannel> ledger_channels(const Element& ledger) {
  std::vector<WrittenChannel> channels;
  for (const Element* channel : ledger.all("Channel")) {
    const auto number = [channel](const char* name) { return channel->attribute(name).value_or(""); };
    // Stations without channels are there too.
    if (number("sitechan").empty()) continue;
    std::string line =
        line_of({number("snetsta"), number("sitechan"), number("site"), number("sensor"), number("calibration")});
    std::vector<std::string> stages;
    for (const Element* stage : channel->all("Row")) stages.push_back(stage->text);
    std::sort(stages.begin(), stages.end());
    for (const std::string& stage : stages) line += stage + "|";
    channels.push_back({span_of(*channel), line});
  }
  return channels;
}

// --- the shipped tree

double rounded_angle(double degrees) { return std::round(degrees * 1e9) / 1e9; }

std::optional<double> azimuth(std::optional<double> hang) {
  if (!hang) return std::nullopt;
  const double wrapped = std::fmod(*hang, 360.0);
  return rounded_angle(wrapped < 0 ? wrapped + 360 : wrapped);
}

std::optional<double> dip(std::optional<double> vang) {
  if (!vang || std::abs(*vang - 90) > 90) return std::nullopt;
  return rounded_angle(*vang - 90);
}

// Counts per unit, to eight digits, where it has a frequency.
std::optional<double> sensitivity(const Row* calibration) {
  const auto calib = number_in(calibration, CALIBRATION, "calib");
  const auto calper = number_in(calibration, CALIBRATION, "calper");
  if (!calib || !calper || *calper <= 0) return std::nullopt;
  char text[40];
  std::snprintf(text, sizeof text, "%.8g", 1e9 / *calib);
  return std::strtod(text, nullptr);
}

const Row* newest_with(const Tables& tables, Table table, const Key& key) {
  return newest(rows_with(tables, table, key), table);
}

const Row* instrument_of(const Tables& tables, const Row* sensor) {
  const auto inid = text_in(sensor, SENSOR, "inid");
  return inid ? newest_with(tables, INSTRUMENT, {{"inid", *inid}}) : nullptr;
}

std::string location(const Row* schanloc) {
  const std::string loc = text_in(schanloc, SCHANLOC, "loc").value_or("");
  return loc.find_first_not_of('-') == std::string::npos ? "" : loc;
}

std::string shipped_facts(const Tables& tables, const NamedChannel& channel, const Standing& rows) {
  const Row* schanloc = newest_with(tables, SCHANLOC, {{"sta", channel.sta}, {"chan", channel.chan}});
  const Row* instrument = instrument_of(tables, rows.sensor);
  const double depth = number_in(rows.sitechan, SITECHAN, "edepth").value_or(0);
  const auto rate = number_in(rows.calibration, CALIBRATION, "samprate");
  return line_of({*text_in(channel.snetsta, SNETSTA, "snet"), *text_in(channel.snetsta, SNETSTA, "fsta"),
                  text_in(schanloc, SCHANLOC, "fchan").value_or(channel.chan), location(schanloc),
                  number_text(number_in(rows.site, SITE, "lat")), number_text(number_in(rows.site, SITE, "lon")),
                  number_text((*number_in(rows.site, SITE, "elev") - depth) * 1000), number_text(depth * 1000),
                  number_text(azimuth(number_in(rows.sitechan, SITECHAN, "hang"))),
                  number_text(dip(number_in(rows.sitechan, SITECHAN, "vang"))),
                  number_text(rate ? rate : number_in(instrument, INSTRUMENT, "samprate")),
                  text_in(instrument, INSTRUMENT, "insname").value_or(""), number_text(sensitivity(rows.calibration))});
}

std::optional<double> number_at(const Element& element, const std::vector<std::string>& way) {
  const auto text = element.text_at(way);
  return text ? number_in(*text) : std::nullopt;
}

std::string shipped_facts(const Element& network, const Element& station, const Element& channel) {
  return line_of({*network.attribute("code"), *station.attribute("code"), *channel.attribute("code"),
                  *channel.attribute("locationCode"), number_text(number_at(channel, {"Latitude"})),
                  number_text(number_at(channel, {"Longitude"})), number_text(number_at(channel, {"Elevation"})),
                  number_text(number_at(channel, {"Depth"})), number_text(number_at(channel, {"Azimuth"})),
                  number_text(number_at(channel, {"Dip"})), number_text(number_at(channel, {"SampleRate"})),
                  channel.text_at({"Sensor", "Description"}).value_or(""),
                  number_text(number_at(channel, {"Response", "InstrumentSensitivity", "Value"}))});
}

std::vector<WrittenChannel> shipped_channels(const Element& document) {
  expect_consistent(document);
  std::vector<WrittenChannel> channels;
  for (const Element* network : document.all("Network")) {
    for (const Element* station : network->all("Station")) {
      for (const Element* channel : station->all("Channel")) {
        channels.push_back({span_of(*channel), shipped_facts(*network, *station, *channel)});
      }
    }
  }
  return channels;
}

// --- the tests

using ReadChannels = std::vector<WrittenChannel> (*)(const Element&);

// CHANNELS_SEED in the environment repeats one case; CHANNELS_CASES sets their number. Until one does not agree.
void compare_cases(const std::function<std::string(const Database&)>& convert, ReadChannels read,
                   const FactsOfTables& facts_of) {
  const char* one = std::getenv("CHANNELS_SEED");
  const char* cases = std::getenv("CHANNELS_CASES");
  const std::uint64_t first = one ? std::strtoull(one, nullptr, 10) : triglub_test::random_seed();
  const std::uint64_t count = one ? 1 : cases ? std::strtoull(cases, nullptr, 10) : 150;
  std::size_t met = 0;
  for (std::uint64_t seed = first; seed < first + count && !::testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("CHANNELS_SEED=" + std::to_string(seed));
    const Tables tables = tidy_tables(seed);
    const std::string document = convert({tables, {}});
    compare(tables, document.empty() ? std::vector<WrittenChannel>() : read(read_xml(document)), facts_of, &met);
  }
  // Tables without channels would show nothing.
  EXPECT_TRUE(one || ::testing::Test::HasFailure() || met > 5 * count) << met;
}

TEST(ChannelsOfDocuments, AreThoseOfTheTablesAtEveryInstant) {
  compare_cases([](const Database& database) { return document_by(kLedger, database); }, ledger_channels, ledger_facts);
}

TEST(ChannelsOfDocuments, HaveTheValuesOfTheRowsThatStand) {
  compare_cases(shipped_document, shipped_channels,
                [](const Tables& tables, const NamedChannel& channel, const Standing& rows) {
                  return shipped_facts(tables, channel, rows);
                });
}

}  // namespace

}  // namespace triglub_properties
