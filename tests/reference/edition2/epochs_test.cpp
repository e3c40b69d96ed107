// The plain form's epochs, held against epochs told by hand.
#include "reference/edition2/epochs.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "reference/edition2/made_tables.h"
#include "reference/edition2/random_case.h"
#include "support/random_seed.h"

namespace triglub_reference::edition2 {

namespace {

std::string bound_text(Instant bound) { return std::isinf(bound) ? "open" : instant_text(bound).substr(5); }

std::string name_in(const Row* row, Table table, const char* field) {
  return text_in(row, table, field).value_or("none");
}

// BEGIN END CHANNEL PLACE SENSOR CALIBRATION STAGES, instants without their year.
std::string line_of(const Epoch& epoch) {
  std::string line = bound_text(epoch.span.begin) + " " + bound_text(epoch.span.end);
  line += " " + name_in(epoch.rows.sitechan, SITECHAN, "descrip") + " " + name_in(epoch.rows.site, SITE, "staname");
  line +=
      " " + name_in(epoch.rows.sensor, SENSOR, "inid") + " " + name_in(epoch.rows.calibration, CALIBRATION, "units");
  for (const Row* stage : epoch.rows.stages) line += " " + name_in(stage, STAGE, "ssident");
  return line;
}

std::vector<std::string> lines_of(const Tables& tables) {
  std::vector<std::string> lines;
  for (const Epoch& epoch : channel_epochs(tables)) lines.push_back(line_of(epoch));
  return lines;
}

// The days around the new year of 2000.
const char* const k30 = "1999364";
const char* const k31 = "1999365";
const char* const k1 = "2000001";
const char* const k2 = "2000002";

std::pair<Table, Row> channel(const char* name, const char* on, const char* off) {
  return {SITECHAN, {{"descrip", name}, {"ondate", on}, {"offdate", off}}};
}
std::pair<Table, Row> place(const char* name, const char* on, const char* off) {
  return {SITE, {{"staname", name}, {"ondate", on}, {"offdate", off}}};
}
std::pair<Table, Row> sensor(const char* inid, const std::string& begin, const std::string& end) {
  return {SENSOR, {{"inid", inid}, {"time", begin}, {"endtime", end}}};
}
std::pair<Table, Row> calibration(const char* units, const std::string& begin, const std::string& end) {
  return {CALIBRATION, {{"units", units}, {"time", begin}, {"endtime", end}}};
}
std::pair<Table, Row> stage(const char* name, const char* id, const std::string& begin, const std::string& end) {
  return {STAGE, {{"ssident", name}, {"stageid", id}, {"time", begin}, {"endtime", end}}};
}
std::pair<Table, Row> with(std::pair<Table, Row> row, const char* field, const char* value) {
  row.second[field] = value;
  return row;
}

struct Case {
  const char* name;
  TableRows rows;
  std::vector<std::string> epochs;
};

class EpochsOf : public testing::TestWithParam<Case> {};

TEST_P(EpochsOf, AreThoseToldByHand) { EXPECT_EQ(lines_of(tables_of(GetParam().rows)), GetParam().epochs); }

const Case kCases[] = {
    {"channel_and_place_alone",
     {channel("c", k1, k1), place("s", "", "")},
     {"01-01T00:00:00Z 01-02T00:00:00Z c s none none"}},
    {"all_open", {channel("c", "", ""), place("s", "", "")}, {"open open c s none none"}},
    {"an_end_beyond_2286", {channel("c", k1, "2999001"), place("s", "", "")}, {"01-01T00:00:00Z open c s none none"}},
    {"no_place", {channel("c", k1, k1)}, {}},
    {"place_of_another_station", {channel("c", k1, k1), with(place("s", "", ""), "sta", "AA")}, {}},
    {"meeting_at_midnight",
     {channel("a", k30, k1), channel("b", k1, k2), place("s", "", "")},
     {"12-30T00:00:00Z 01-01T00:00:00Z a s none none", "01-01T00:00:00Z 01-03T00:00:00Z b s none none"}},
    {"meeting_where_a_sensor_begins",
     {channel("a", k30, k1), channel("b", k1, k2), place("s", "", ""), sensor("1", at_hour(-24), at_hour(5)),
      sensor("2", at_hour(5), at_hour(24))},
     {"12-31T00:00:00Z 01-01T05:00:00Z a s 1 none", "01-01T05:00:00Z 01-02T00:00:00Z b s 2 none"}},
    {"places_meeting_where_a_sensor_begins",
     {channel("c", "", ""), place("s", k30, k1), place("t", k1, ""), sensor("1", at_hour(-24), at_hour(5)),
      sensor("2", at_hour(5), "")},
     {"12-31T00:00:00Z 01-01T05:00:00Z c s 1 none", "01-01T05:00:00Z open c t 2 none"}},
    {"a_sensor_that_is_rounded_into_the_next_day",
     {channel("a", k30, k1), channel("b", k1, k2), place("s", "", ""),
      sensor("1", std::to_string(kMidnight + 86399.9996), "")},
     {"12-30T00:00:00Z 01-01T00:00:00Z a s none none", "01-02T00:00:00Z 01-03T00:00:00Z b s 1 none"}},
    {"overlapping_the_later_begin_stands",
     {channel("a", k30, k2), channel("b", k1, k1), place("s", "", "")},
     {"12-30T00:00:00Z 01-01T00:00:00Z a s none none", "01-01T00:00:00Z 01-02T00:00:00Z b s none none",
      "01-02T00:00:00Z 01-03T00:00:00Z a s none none"}},
    {"equal_begins_the_later_load_date_stands",
     {with(channel("a", k1, k1), "lddate", "2"), with(channel("b", k1, k2), "lddate", "1"), place("s", "", "")},
     {"01-01T00:00:00Z 01-02T00:00:00Z a s none none", "01-02T00:00:00Z 01-03T00:00:00Z b s none none"}},
    {"equal_rows_the_later_one_stands",
     {channel("a", k1, k1), channel("b", k1, k1), place("s", "", "")},
     {"01-01T00:00:00Z 01-02T00:00:00Z b s none none"}},
    {"a_gap_between_sensors",
     {channel("c", k1, k1), place("s", "", ""), sensor("1", at_hour(1), at_hour(2)),
      sensor("2", at_hour(3), at_hour(4))},
     {"01-01T01:00:00Z 01-01T02:00:00Z c s 1 none", "01-01T03:00:00Z 01-01T04:00:00Z c s 2 none"}},
    {"a_sensor_outside_the_channel_is_none",
     {channel("c", k1, k1), place("s", "", ""), sensor("1", at_hour(24), at_hour(25))},
     {"01-01T00:00:00Z 01-02T00:00:00Z c s none none"}},
    {"a_sensor_of_another_channel_row",
     {with(channel("c", k1, k1), "chanid", "7"), place("s", "", ""), with(sensor("1", "", ""), "chanid", "8")},
     {"01-01T00:00:00Z 01-02T00:00:00Z c s none none"}},
    {"the_sensor_below_that_of_another_channel_row",
     {with(channel("c", k1, k1), "chanid", "7"), place("s", "", ""), with(sensor("1", at_hour(2), ""), "chanid", "8"),
      sensor("2", at_hour(1), "")},
     {"01-01T01:00:00Z 01-02T00:00:00Z c s 2 none"}},
    {"a_sensor_with_the_end_before_its_begin",
     {channel("c", k1, k1), place("s", "", ""), sensor("1", at_hour(2), at_hour(1))},
     {"01-01T00:00:00Z 01-02T00:00:00Z c s none none"}},
    {"calibrations_and_stages_cut",
     {channel("c", k1, k1), place("s", "", ""), calibration("V", at_hour(1), at_hour(3)),
      stage("x", "2", "", at_hour(2)), stage("y", "1", "", "")},
     {"01-01T00:00:00Z 01-01T01:00:00Z c s none none y x", "01-01T01:00:00Z 01-01T02:00:00Z c s none V y x",
      "01-01T02:00:00Z 01-01T03:00:00Z c s none V y", "01-01T03:00:00Z 01-02T00:00:00Z c s none none y"}},
    {"what_does_not_stand_does_not_cut",
     {channel("c", k1, k1), place("s", "", ""), calibration("V", at_hour(0), at_hour(9)),
      calibration("m", "", at_hour(5))},
     {"01-01T00:00:00Z 01-01T09:00:00Z c s none V", "01-01T09:00:00Z 01-02T00:00:00Z c s none none"}},
    {"a_place_left_too_early",
     {channel("c", k31, k1), place("s", k30, k31)},
     {"12-31T00:00:00Z 01-02T00:00:00Z c s none none"}},
    {"a_place_taken_too_late",
     {channel("c", k31, k1), place("s", k1, "")},
     {"12-31T00:00:00Z 01-02T00:00:00Z c s none none"}},
    {"a_channel_between_two_places", {channel("c", k31, k1), place("s", "", k30), place("t", k2, "")}, {}},
    {"an_open_channel_of_a_closed_station",
     {channel("c", k31, ""), place("s", "", k1)},
     {"12-31T00:00:00Z 01-02T00:00:00Z c s none none"}},
    {"an_open_channel_whose_sensor_ends_behind_the_place",
     {channel("c", k31, ""), place("s", "", k31), sensor("1", at_hour(-1), at_hour(1))},
     {"12-31T23:00:00Z 01-01T01:00:00Z c s 1 none"}},
    {"a_channel_across_a_time_without_a_place",
     {channel("c", k30, k2), place("s", "", k30), place("t", k2, "")},
     {"12-30T00:00:00Z 12-31T00:00:00Z c s none none", "01-02T00:00:00Z 01-03T00:00:00Z c t none none"}},
    {"a_channel_that_ends_where_the_next_place_begins",
     {channel("c", k30, k31), place("s", "", k30), place("t", k1, "")},
     {"12-30T00:00:00Z 01-01T00:00:00Z c s none none"}},
    {"a_channel_that_begins_where_the_last_place_ends",
     {channel("c", k31, k1), place("s", "", k30), place("t", k1, "")},
     {"12-31T00:00:00Z 01-02T00:00:00Z c t none none"}},
    {"the_channel_is_asked_for_its_place_before_the_sensor",
     {channel("c", k30, k31), place("s", "", k30), place("t", k2, ""), sensor("1", "", at_hour(-18)),
      sensor("2", at_hour(-18), at_hour(48))},
     {"12-30T00:00:00Z 12-31T06:00:00Z c s 1 none", "12-31T06:00:00Z 01-01T00:00:00Z c s 2 none"}},
    {"a_sensor_of_a_channel_row_without_a_number",
     {channel("c", k1, k1), place("s", "", ""), with(sensor("1", "", ""), "chanid", "8")},
     {"01-01T00:00:00Z 01-02T00:00:00Z c s 1 none"}},
    {"instants_are_rounded",
     {channel("c", k1, k1), place("s", "", ""),
      sensor("1", std::to_string(kMidnight + 0.0004), std::to_string(kMidnight + 1.0005))},
     {"01-01T00:00:00Z 01-01T00:00:01.001Z c s 1 none"}},
    {"a_begin_that_never_comes",
     {channel("c", k1, k1), place("s", "", ""), sensor("1", "260000000000.0", "")},
     {"01-01T00:00:00Z 01-02T00:00:00Z c s none none"}},
    {"a_begin_before_all_years",
     {channel("c", "", k1), place("s", "", ""), sensor("1", "-70000000000.0", "")},
     {"open 01-02T00:00:00Z c s 1 none"}},
    {"keys_are_compared_without_blanks",
     {with(channel("c", k1, k1), "sta", " B"), with(place("s", "", ""), "sta", "B ")},
     {"01-01T00:00:00Z 01-02T00:00:00Z c s none none"}},
    {"a_station_without_a_name", {with(channel("c", k1, k1), "sta", "-"), with(place("s", "", ""), "sta", "-")}, {}},
};

INSTANTIATE_TEST_SUITE_P(PlainForm, EpochsOf, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(PlainEpochs, ADayThatIsNoDateIsAFault) {
  EXPECT_THROW(channel_epochs(tables_of({channel("c", "1999366", ""), place("s", "", "")})), std::runtime_error);
}

// True when no other row of the key that holds at the instant began later.
bool stands(const Row* row, const RowList& rows, Table table, Instant t) {
  const auto span = [&](const Row* of) {
    return Span{begin_of(number_in(of, table, "time")), end_of(number_in(of, table, "endtime"))};
  };
  for (const Row* other : rows) {
    const bool is_later = span(other).holds(t) && span(other).begin > span(row).begin;
    if (is_later) return false;
  }
  return span(row).holds(t);
}

void expect_rows_stand(const Epoch& epoch, const Tables& tables, Instant t) {
  const Key key = {{"sta", epoch.sta}, {"chan", epoch.chan}};
  const RowList calibrations = rows_with(tables, CALIBRATION, key);
  if (epoch.rows.calibration != nullptr) {
    EXPECT_TRUE(stands(epoch.rows.calibration, calibrations, CALIBRATION, t));
  }
  for (const Row* stage : epoch.rows.stages) {
    Key with_number = key;
    if (const auto id = text_in(stage, STAGE, "stageid")) with_number.emplace_back("stageid", *id);
    if (with_number.size() < 3) continue;
    EXPECT_TRUE(stands(stage, rows_with(tables, STAGE, with_number), STAGE, t));
  }
}

// An instant of the span.
Instant instant_in(const Span& span) {
  if (span.begin > -kForever) return span.begin;
  return span.end < kForever ? span.end - 1 : 0;
}

void expect_in_order(const std::vector<Epoch>& epochs) {
  for (std::size_t i = 0; i < epochs.size(); ++i) {
    EXPECT_LT(epochs[i].span.begin, epochs[i].span.end);
    if (i == 0) continue;
    EXPECT_LE(epochs[i - 1].span.end, epochs[i].span.begin);
    const bool touches = epochs[i - 1].span.end == epochs[i].span.begin;
    EXPECT_FALSE(touches && epochs[i - 1].rows == epochs[i].rows) << "one epoch in two parts";
  }
}

// Around each instant at which anything of the channel changes.
std::vector<Instant> probes(const Channel& channel) {
  std::vector<Instant> all = {-1e15, 1e15};
  for (const Instant cut : channel.cuts()) {
    if (cut > -kForever) all.insert(all.end(), {cut - 1, cut, cut + 1});
  }
  return all;
}

void expect_one_epoch_of_each_instant(const Channel& channel, const std::vector<Epoch>& epochs) {
  for (const Instant t : probes(channel)) {
    std::vector<Epoch> here;
    for (const Epoch& epoch : epochs) {
      if (epoch.span.holds(t)) here.push_back(epoch);
    }
    const auto rows = channel.at(t);
    ASSERT_EQ(here.size(), rows ? 1u : 0u);
    EXPECT_TRUE(!rows || here[0].rows == *rows);
  }
}

TEST(PlainEpochs, EachInstantOfAChannelIsInOneEpochWithTheRowsThatStandThen) {
  const std::uint64_t first = triglub_test::random_seed();
  int compared = 0;
  for (std::uint64_t i = 0; i < 300; ++i) {
    SCOPED_TRACE("case " + std::to_string(i));
    Random random(first + i);
    const Tables tables = random_tables(random);
    std::vector<Epoch> all;
    try {
      all = channel_epochs(tables);
    } catch (const std::runtime_error&) {
      continue;  // a date that is none
    }
    std::map<std::pair<std::string, std::string>, std::vector<Epoch>> channels;
    for (const Epoch& epoch : all) channels[{epoch.sta, epoch.chan}].push_back(epoch);
    for (const auto& [key, epochs] : channels) {
      expect_in_order(epochs);
      expect_one_epoch_of_each_instant(Channel(tables, key.first, key.second), epochs);
      for (const Epoch& epoch : epochs) expect_rows_stand(epoch, tables, instant_in(epoch.span));
      compared += static_cast<int>(epochs.size());
    }
    if (HasFailure()) return;
  }
  EXPECT_GT(compared, 500);
}

}  // namespace

}  // namespace triglub_reference::edition2
