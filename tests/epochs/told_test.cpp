// What is told of rows that are left out or contradict each other: the very texts, as a user reads them.
#include "epochs/told.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "epochs/record_view.h"
#include "epochs/remarks.h"
#include "support/made_database.h"

namespace triglub {
namespace {

using testing::ElementsAreArray;
using triglub_test::at_hour;
using triglub_test::FieldTexts;
using triglub_test::MadeDatabase;
using triglub_test::MadeRows;

const MadeRows kSound = {{"snetsta", {}}, {"site", {}}};

// The rows of `kSound` and more.
MadeRows with(MadeRows more) {
  more.insert(more.begin(), kSound.begin(), kSound.end());
  return more;
}

std::vector<std::string> told_of(const MadeRows& rows, FieldTexts conditions = {}) {
  const MadeDatabase made(rows);
  rbtree* array = newarr(nullptr);
  for (auto& [field, pattern] : conditions) setarr(array, field.c_str(), pattern.data());
  Findings findings;
  release_view(make_record_view(made.db(), {.conditions = array}, &findings).view);
  freearr(array, nullptr);
  return made.lines_of(findings);
}

struct Case {
  const char* what;
  MadeRows rows;
  std::vector<std::string> told;
};

const Case kCases[] = {
    {"nothing", with({{"sitechan", {}}, {"sensor", {}}, {"calibration", {}}, {"stage", {{"stageid", "1"}}}}), {}},
    {"a gap between sensors",
     with({{"sitechan", {}}, {"sensor", {{"endtime", at_hour(0)}}}, {"sensor", {{"time", at_hour(1)}}}}),
     {"note times without a sensor under rows of sitechan that have one at others: no epochs: 1 (sitechan:1)"}},
    {"a gap within the first day of a row is not",
     with({{"sitechan", {{"ondate", "2000001"}}}, {"sensor", {{"time", at_hour(13)}}}}),
     {}},
    {"a gap of places",
     {{"snetsta", {}},
      {"site", {{"offdate", "2000001"}}},
      {"site", {{"ondate", "2000005"}}},
      {"sitechan", {{"ondate", "2000001"}, {"offdate", "2000006"}}}},
     {"note times under rows of sitechan for which no row of site holds: no epochs: 1 (sitechan:1)"}},
    {"an open channel ends with its station",
     {{"snetsta", {}}, {"site", {{"offdate", "2000001"}}}, {"sitechan", {{"ondate", "2000001"}}}},
     {}},
    {"a channel that reaches out of its place",
     {{"snetsta", {}},
      {"site", {{"offdate", "2000001"}}},
      {"sitechan", {{"ondate", "2000001"}, {"offdate", "2000003"}}}},
     {"warning channels that reach out of their row of site: the station is widened: 1 (sitechan:1 and site:1)"}},
    {"a channel without a place",
     {{"snetsta", {}},
      {"site", {{"offdate", "2000001"}}},
      {"sitechan", {{"ondate", "2000003"}, {"offdate", "2000004"}}}},
     {"warning rows of sitechan left out: no row of site holds at their time: 1 (sitechan:1)",
      "note times under rows of sitechan for which no row of site holds: no epochs: 1 (sitechan:1)"}},
    {"a row that is covered all the time",
     with({{"sitechan", {{"ondate", "2000001"}, {"lddate", "2"}}}, {"sitechan", {{"ondate", "2000001"}}}}),
     {"warning rows of sitechan left out: others stand, or no sensor does, all the time: 1 (sitechan:2)",
      "warning rows of sitechan that hold at one time: the one that began later stands: 1 (sitechan:2 and "
      "sitechan:1)"}},
    {"no station, no channel",
     with({{"sitechan", {{"sta", "-"}}}, {"sitechan", {{"chan", "-"}}}}),
     {"warning rows of sitechan left out: they name no station or no channel: 2 (sitechan:1; sitechan:2)"}},
    {"a station of no network",
     {{"site", {}}, {"sitechan", {}}},
     {"warning rows of site left out: no row of snetsta or affiliation has their station: 1 (site:1)",
      "warning rows of sitechan left out: no row of snetsta or affiliation has their station: 1 (sitechan:1)"}},
    {"ends before begins",
     with({{"sitechan", {}},
           {"sitechan", {{"ondate", "2000002"}, {"offdate", "2000001"}}},
           {"site", {{"ondate", "2000002"}, {"offdate", "2000001"}}},
           {"sensor", {{"time", at_hour(2)}, {"endtime", at_hour(2)}}},
           {"calibration", {{"time", at_hour(2)}, {"endtime", at_hour(1)}}},
           {"stage", {{"time", at_hour(2)}, {"endtime", at_hour(1)}}}}),
     {"warning rows of calibration left out: they end before they begin: 1 (calibration:1)",
      "warning rows of sensor left out: they end before they begin: 1 (sensor:1)",
      "warning rows of site left out: they end before they begin: 1 (site:2)",
      "warning rows of sitechan left out: they end before they begin: 1 (sitechan:2)",
      "warning rows of stage left out: they end before they begin: 1 (stage:1)"}},
    {"rows that hold at one time",
     with({{"sitechan", {}},
           {"sitechan", {{"ondate", "2000001"}}},
           {"site", {{"ondate", "2000001"}}},
           {"sensor", {}},
           {"sensor", {{"time", at_hour(1)}}},
           {"calibration", {}},
           {"calibration", {{"time", at_hour(1)}}},
           {"stage", {{"stageid", "1"}}},
           {"stage", {{"stageid", "2"}}},
           {"stage", {{"stageid", "1"}, {"time", at_hour(1)}}}}),
     {"warning rows of calibration that hold at one time: the one that began later stands: 1 (calibration:1 and "
      "calibration:2)",
      "warning rows of sensor that hold at one time: the one that began later stands: 1 (sensor:1 and sensor:2)",
      "warning rows of site that hold at one time: the one that began later stands: 1 (site:1 and site:2)",
      "warning rows of sitechan that hold at one time: the one that began later stands: 1 (sitechan:1 and sitechan:2)",
      "warning rows of stage that hold at one time: the one that began later stands: 1 (stage:1 and stage:3)"}},
    {"sensors of two channel rows do not contradict each other",
     with({{"sitechan", {}}, {"sensor", {{"chanid", "7"}}}, {"sensor", {{"chanid", "8"}}}}),
     {}},
    {"sensors of one channel row do, whatever lies over them",
     with({{"sitechan", {}},
           {"sensor", {{"chanid", "7"}}},
           {"sensor", {{"chanid", "8"}, {"time", at_hour(1)}, {"endtime", at_hour(3)}}},
           {"sensor", {{"chanid", "8"}, {"time", at_hour(2)}, {"endtime", at_hour(4)}}}}),
     {"warning rows of sensor that hold at one time: the one that began later stands: 1 (sensor:2 and sensor:3)"}},
    {"rows of one key",
     with({{"sitechan", {}},
           {"snetsta", {}},
           {"schanloc", {}},
           {"schanloc", {}},
           {"network", {{"net", "KR"}}},
           {"network", {{"net", "KR"}}},
           {"instrument", {{"inid", "1"}}},
           {"instrument", {{"inid", "1"}}}}),
     {"warning rows of instrument with one key: the later one counts: 1 (instrument:1 and instrument:2)",
      "warning rows of network with one key: the later one counts: 1 (network:1 and network:2)",
      "warning rows of schanloc with one key: the later one counts: 1 (schanloc:1 and schanloc:2)",
      "warning rows of snetsta with one key: the later one counts: 1 (snetsta:1 and snetsta:2)"}},
    {"rows of no channel",
     with({{"sitechan", {}},
           {"sensor", {{"chan", "QQQ"}}},
           {"sensor", {{"chan", "-"}}},
           {"calibration", {{"sta", "Q"}}},
           {"stage", {{"sta", "Q"}}}}),
     {"warning rows of calibration left out: no row of sitechan has their channel: 1 (calibration:1)",
      "warning rows of sensor left out: no row of sitechan has their channel: 2 (sensor:1; sensor:2)",
      "warning rows of stage left out: no row of sitechan has their channel: 1 (stage:1)"}},
};

TEST(Told, EachRemarkHasItsTextAndItsRows) {
  for (const Case& c : kCases) EXPECT_THAT(told_of(c.rows), ElementsAreArray(c.told)) << c.what;
}

TEST(Told, EveryRemarkHasATextOfItsOwn) {
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < kRemarks; ++i) texts.emplace_back(text_of(static_cast<Remark>(i)).text);
  std::sort(texts.begin(), texts.end());
  EXPECT_EQ(std::adjacent_find(texts.begin(), texts.end()), texts.end());
}

// Two stations, TKM with faults of each kind, and the channel BHE of AAK without a place.
const MadeRows kTwoStations = {
    {"snetsta", {}},
    {"snetsta", {{"fsta", "TKM"}, {"sta", "TKM"}}},
    {"site", {{"offdate", "2000010"}}},
    {"site", {{"sta", "TKM"}}},
    {"site", {{"sta", "TKM"}, {"ondate", "2000001"}}},
    {"sitechan", {{"offdate", "2000009"}}},
    {"sitechan", {{"chan", "BHE"}, {"ondate", "2000020"}, {"offdate", "2000021"}}},
    {"sitechan", {{"sta", "TKM"}}},
    {"calibration", {{"sta", "TKM"}, {"time", at_hour(2)}, {"endtime", at_hour(1)}}},
    {"sensor", {{"sta", "TKM"}, {"chan", "QQQ"}}},
    {"network", {{"net", "KR"}}},
    {"network", {{"net", "KR"}}},
    {"sitechan", {{"sta", "-"}, {"chan", "BHN"}}},
    {"schanloc", {{"chan", "BHE"}, {"loc", "77"}}},
};

constexpr const char* kNetworks =
    "warning rows of network with one key: the later one counts: 1 (network:1 and network:2)";
constexpr const char* kNever = "warning rows of calibration left out: they end before they begin: 1 (calibration:1)";
constexpr const char* kStray = "warning rows of sensor left out: no row of sitechan has their channel: 1 (sensor:1)";
constexpr const char* kSites =
    "warning rows of site that hold at one time: the one that began later stands: 1 (site:2 and site:3)";
constexpr const char* kNoPlace =
    "warning rows of sitechan left out: no row of site holds at their time: 1 (sitechan:2)";
constexpr const char* kNameless =
    "warning rows of sitechan left out: they name no station or no channel: 1 (sitechan:4)";
constexpr const char* kGap =
    "note times under rows of sitechan for which no row of site holds: no epochs: 1 (sitechan:2)";

struct ChosenCase {
  const char* what;
  FieldTexts conditions;
  std::vector<std::string> told;
};

const ChosenCase kChosen[] = {
    {"all", {}, {kNever, kNetworks, kStray, kSites, kNoPlace, kNameless, kGap}},
    {"a station without faults", {{"snetsta.fsta", "/AAK/"}, {"sitechan.chan", "/BHZ/"}}, {kNetworks}},
    {"a channel that would be there", {{"snetsta.fsta", "/AAK/"}}, {kNetworks, kNoPlace, kGap}},
    {"such a channel alone", {{"sitechan.chan", "/BHE/"}}, {kNetworks, kNoPlace, kGap}},
    {"such a channel by its code", {{"schanloc.loc", "/77/"}}, {kNetworks, kNoPlace, kGap}},
    {"the other station", {{"sitechan.sta", "/TKM/"}}, {kNever, kNetworks, kStray, kSites}},
    {"a row without a station that would be there", {{"sitechan.chan", "/BHN/"}}, {kNetworks, kNameless}},
    {"nothing", {{"sitechan.sta", "/Q/"}}, {kNetworks}},
};

TEST(Told, WithConditionsIsAboutWhatIsChosen) {
  for (const ChosenCase& c : kChosen)
    EXPECT_THAT(told_of(kTwoStations, c.conditions), ElementsAreArray(c.told)) << c.what;
}

}  // namespace
}  // namespace triglub
