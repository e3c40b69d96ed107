// Chains that cannot be written whole, and why.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "document/written.h"
#include "tree/tree_reading.h"

namespace triglub_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const FieldTexts kFiles = {
    {"resp/s.paz", "theoretical 1 instrument paz\n1 1\n0\n0\n"},
    {"resp/f.fir", "theoretical 1 instrument fir\n0\n1\n1 0\n0\n"},
    {"resp/cut.paz", "theoretical 1 instrument paz\n1\n3\n"},
    {"resp/two.paz", "theoretical 1 a paz\n1 1\n0\n0\ntheoretical 2 b paz\n1 1\n0\n0\n"},
    {"resp/t.odd", "theoretical 1 instrument odd\n1\n"},
    {"resp/t.fap", "theoretical 1 instrument fap\n1\n1 1 0 0 0\n"},
};

const std::string kTree =
    document("", "channel - CATEGORIZED_GROUP chan\n", "",
             group("channel", "Channel", "code - string chan\n",
                   "C - float fc\nstage - CATEGORIZED_BY_NUMBER stageid\n", "optional &Tbl{\nC\nstage\n}\n") +
                 group("stage", "Stage", "number - integer stageid\n", "filter - STAGE\n"));

// BHZ has a sound stage 1, and stage 2 as given; BHE has a sound one.
MadeRows chain(FieldTexts second, const FieldTexts& calibration = {{"fc", "1"}}) {
  second.insert({{"stageid", "2"}, {"gnom", "2"}, {"dir", "resp"}});
  return {{"snetsta", {}},
          {"site", {}},
          {"sitechan", {}},
          {"sitechan", {{"chan", "BHE"}}},
          {"calibration", calibration},
          {"calibration", {{"chan", "BHE"}, {"fc", "1"}}},
          {"stage", {{"stageid", "1"}, {"gnom", "2"}, {"dir", "resp"}, {"dfile", "s.paz"}}},
          {"stage", second},
          {"stage", {{"chan", "BHE"}, {"stageid", "1"}, {"gnom", "2"}}}};
}

struct Case {
  const char* what;
  MadeRows rows;
  const char* told;
};

const Case kCases[] = {
    {"no gain", chain({{"gnom", "-1"}}), "no gain (gnom): 1 (stage:2 (AAK BHZ))"},
    {"a gain of nothing", chain({{"gnom", "0"}}), "a gain (gnom, gcalib) of 0: 1 (stage:2 (AAK BHZ))"},
    {"no frequency", chain({}, {{"fc", "-1.0"}}),
     "no frequency of the gain (calibration.fc, calper): 1 (stage:1 (AAK BHZ))"},
    {"a period of nothing", chain({}, {{"fc", "-1.0"}, {"calper", "0.0"}}),
     "no frequency of the gain (calibration.fc, calper): 1 (stage:1 (AAK BHZ))"},
    {"no number", chain({{"stageid", "0"}}), "a stage number (stageid) below 1: 1 (stage:2 (AAK BHZ))"},
    {"no file", chain({{"dfile", "nothing.paz"}}), "resp/nothing.paz: "},
    {"a damaged file", chain({{"dfile", "cut.paz"}}), "resp/cut.paz:"},
    {"several filters", chain({{"dfile", "two.paz"}}),
     "cannot be used: 1 (stage:2 (AAK BHZ): resp/two.paz: 2 groups where one is meant)"},
    {"a type without a form", chain({{"dfile", "t.odd"}}), "the type 'odd' has no form in a document"},
    {"a factor", chain({{"dfile", "f.fir"}, {"decifac", "0"}}),
     "a decimation factor (decifac) below 1: 1 (stage:2 (AAK BHZ))"},
    {"no rate", chain({{"dfile", "f.fir"}}), "no sampling rate (samprate): 1 (stage:2 (AAK BHZ))"},
    {"a stage is missing", chain({{"stageid", "3"}}), "a gap in the stage numbers (stageid) across which units or"},
    {"units that do not chain", chain({{"stageid", "3"}, {"iunits", "A"}}), "a gap in the stage numbers (stageid)"},
};

TEST(ChainCheck, AnEpochIsWrittenWithoutItsStagesWhereOneCannotBe) {
  for (const Case& c : kCases) {
    const MadeDatabase made(c.rows, kFiles);
    const Written written = write_document(made, kTree);
    EXPECT_THAT(written.told, ElementsAre(AllOf(StartsWith("warning channel epochs written without their stages: "),
                                                HasSubstr(c.told))))
        << c.what;
    EXPECT_THAT(written.text, HasSubstr("<Channel code=\"BHE\">\n   <C>1</C>\n   <Stage number=\"1\">")) << c.what;
    EXPECT_THAT(written.text.substr(written.text.find("BHZ")), Not(HasSubstr("<Stage"))) << c.what;
    EXPECT_THAT(written.text, HasSubstr("<Channel code=\"BHZ\">")) << c.what;
  }
}

TEST(ChainCheck, TheGainOfAnInstrumentsFileIsOfTheCalibration) {
  const MadeDatabase made({{"snetsta", {}},
                           {"site", {}},
                           {"sitechan", {}},
                           {"sensor", {{"inid", "1"}}},
                           {"instrument", {{"inid", "1"}, {"dir", "resp"}, {"dfile", "s.paz"}}}},
                          kFiles);
  EXPECT_THAT(write_document(made, kTree).told,
              ElementsAre("warning channel epochs written without their stages: no calibration to take the gain from "
                          "(calibration.calib, instrument.ncalib): 1 (instrument:1 (AAK BHZ))"));
}

// What is told of one chain whose stages are given, number and all.
std::vector<std::string> told_of(const std::vector<FieldTexts>& stages, FieldTexts calibration = {}) {
  calibration.insert({{"fc", "1"}, {"units", "m/s"}});
  MadeRows rows = {{"snetsta", {}}, {"site", {}}, {"sitechan", {}}, {"calibration", calibration}};
  for (FieldTexts stage : stages) {
    stage.insert({{"gnom", "2"}, {"dir", "resp"}});
    rows.push_back({"stage", stage});
  }
  const MadeDatabase made(rows, kFiles);
  return write_document(made, kTree).told;
}

const char* const kClosed = "warning gaps in the stage numbers (stageid) across which the stages chain: closed: 1 (";
const char* const kBroken = "warning channel epochs written without their stages: a gap in the stage numbers";

struct GapCase {
  const char* what;
  std::vector<FieldTexts> stages;
  const char* told;
};

TEST(ChainCheck, AGapIsClosedWhereUnitsAndRatesGoAcross) {
  const FieldTexts sensor = {{"stageid", "1"}, {"iunits", "m/s"}, {"ounits", "V"}};
  const FieldTexts counter = {
      {"stageid", "2"}, {"iunits", "V"}, {"ounits", "counts"}, {"samprate", "100"}, {"decifac", "1"}};
  const GapCase cases[] = {
      {"units", {sensor, {{"stageid", "3"}, {"iunits", "v"}}}, kClosed},
      {"other units", {sensor, {{"stageid", "3"}, {"iunits", "A"}}}, kBroken},
      {"units that are not told", {sensor, {{"stageid", "3"}}}, kBroken},
      {"units that a stage hands on",
       {{{"stageid", "1"}, {"iunits", "m/s"}}, {{"stageid", "3"}, {"iunits", "m/s"}}},
       kClosed},
      {"before the first", {{{"stageid", "2"}, {"iunits", "M/S"}}}, kClosed},
      {"before the first, other units", {{{"stageid", "2"}, {"iunits", "V"}}}, kBroken},
      {"rates",
       {sensor, counter, {{"stageid", "4"}, {"iunits", "counts"}, {"samprate", "50"}, {"decifac", "2"}}},
       kClosed},
      {"other rates",
       {sensor, counter, {{"stageid", "4"}, {"iunits", "counts"}, {"samprate", "20"}, {"decifac", "2"}}},
       kBroken},
      {"no rate behind one", {sensor, counter, {{"stageid", "4"}, {"iunits", "counts"}}}, kBroken},
  };
  for (const GapCase& c : cases) EXPECT_THAT(told_of(c.stages), ElementsAre(StartsWith(c.told))) << c.what;
}

TEST(ChainCheck, AFirstStageOfOtherUnitsThanTheCalibrationIsTold) {
  EXPECT_THAT(told_of({{{"stageid", "1"}, {"iunits", "M/S"}}}), IsEmpty());
  EXPECT_THAT(told_of({{{"stageid", "1"}}}), IsEmpty()) << "it has those of the calibration";
  EXPECT_THAT(told_of({{{"stageid", "1"}, {"iunits", "m"}}}),
              ElementsAre("warning first stages whose input unit is not the unit of the calibration: 1 "
                          "(stage:1 (AAK BHZ))"));
}

TEST(ChainCheck, RatesThatDoNotFollowAreTold) {
  const auto digital = [](const char* number, const char* rate, const char* factor) {
    return FieldTexts{{"stageid", number}, {"samprate", rate}, {"decifac", factor}};
  };
  const FieldTexts channel = {{"samprate", "20"}};
  EXPECT_THAT(told_of({digital("1", "100", "1"), digital("2", "20", "5")}, channel), IsEmpty());
  EXPECT_THAT(told_of({digital("1", "33.3333333", "3"), digital("2", "20", "1")}, channel),
              ElementsAre("warning stages whose input rate is not the output rate of the stage before: 1 "
                          "(stage:2 (AAK BHZ))"));
  EXPECT_THAT(told_of({digital("1", "100", "1"), digital("2", "50", "2")}, channel),
              ElementsAre("warning decimations that do not end at the rate of the channel: 1 (stage:2 (AAK BHZ))"));
  EXPECT_THAT(told_of({digital("1", "100", "1")}), IsEmpty()) << "a channel without a rate";
  EXPECT_THAT(told_of({{{"stageid", "1"}}}, channel), IsEmpty()) << "nothing digital";
}

TEST(ChainCheck, RatesAreTheSameWithinAMillionth) {
  const auto told = [](const char* rate) {
    return told_of({{{"stageid", "1"}, {"samprate", rate}}}, {{"samprate", "100"}});
  };
  EXPECT_THAT(told("100.00009"), IsEmpty());
  EXPECT_THAT(told("99.99991"), IsEmpty());
  EXPECT_THAT(told("100.00011"), ElementsAre(HasSubstr("do not end at the rate of the channel")));
  EXPECT_THAT(told("99.99989"), ElementsAre(HasSubstr("do not end at the rate of the channel")));
}

TEST(ChainCheck, EachCodeOfAStationIsTold) {
  MadeRows rows = chain({{"gnom", "-1"}});
  rows.push_back({"snetsta", {{"snet", "XX"}}});
  const MadeDatabase made(rows, kFiles);
  EXPECT_THAT(write_document(made, kTree).told,
              ElementsAre(HasSubstr("no gain (gnom): 2 (stage:2 (AAK BHZ); stage:2 (AAK BHZ))")));
}

TEST(ChainCheck, OnlyWhereFiltersAreWrittenAreFilesRead) {
  const MadeDatabase made(chain({{"dfile", "nothing.paz"}}), kFiles);
  EXPECT_THAT(write_document(made, kTree, triglub::DetailLevel::channel).told, IsEmpty());
  const std::string bare = document("", "stage - CATEGORIZED_BY_NUMBER stageid\n", "",
                                    group("stage", "Stage", "number - integer stageid\n", ""));
  const Written written = write_document(made, bare);
  EXPECT_THAT(written.told, IsEmpty());
  EXPECT_THAT(written.text, HasSubstr("<Stage number=\"2\">"));
}

TEST(ChainCheck, PlacesWithoutChannelsStay) {
  MadeRows rows = chain({{"gnom", "-1"}});
  rows.push_back({"site", {{"sta", "TKM"}}});
  rows.push_back({"snetsta", {{"fsta", "TKM"}, {"sta", "TKM"}}});
  const MadeDatabase made(rows, kFiles);
  const std::string tree = document("", "station - CATEGORIZED_GROUP fsta\n", "",
                                    group("station", "Station", "code - string fsta\n", "stage - GROUP\n") +
                                        group("stage", "-", "", "filter - STAGE\n"));
  EXPECT_THAT(write_document(made, tree).text, HasSubstr("<Station code=\"TKM\">\n  </Station>"));
}

}  // namespace
}  // namespace triglub_test
