// Chains that cannot be written whole, and why.
#include <gmock/gmock.h>

#include <string>

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
    {"no gain", chain({{"gnom", "-1"}}), "no gain (gnom): 1 (stage:2)"},
    {"no frequency", chain({}, {{"fc", "-1.0"}}), "no frequency of the gain (calibration.fc, calper): 1 (stage:1)"},
    {"no number", chain({{"stageid", "0"}}), "a stage number (stageid) below 1: 1 (stage:2)"},
    {"no file", chain({{"dfile", "nothing.paz"}}), "resp/nothing.paz: "},
    {"a damaged file", chain({{"dfile", "cut.paz"}}), "resp/cut.paz:"},
    {"several filters", chain({{"dfile", "two.paz"}}),
     "cannot be used: 1 (stage:2: resp/two.paz: 2 groups where one is meant)"},
    {"a type without a form", chain({{"dfile", "t.fap"}}), "'fap'"},
    {"a factor", chain({{"dfile", "f.fir"}, {"decifac", "0"}}), "a decimation factor (decifac) below 1: 1 (stage:2)"},
    {"no rate", chain({{"dfile", "f.fir"}}), "no sampling rate (samprate): 1 (stage:2)"},
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

TEST(ChainCheck, EachCodeOfAStationIsTold) {
  MadeRows rows = chain({{"gnom", "-1"}});
  rows.push_back({"snetsta", {{"snet", "XX"}}});
  const MadeDatabase made(rows, kFiles);
  EXPECT_THAT(write_document(made, kTree).told, ElementsAre(HasSubstr("no gain (gnom): 2 (stage:2; stage:2)")));
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
