// Every rule: documents that break it, and it alone, and ones that hold to it just so.
#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "checks/good_document.h"
#include "document_checks.h"

namespace triglub {
namespace {

using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using triglub_test::kGoodDocument;
using triglub_test::replaced;

struct Edit {
  std::string behind;
  std::string from;
  std::string to;
};

struct RuleCase {
  std::string name;
  std::vector<Edit> edits;
  std::vector<std::string> codes;  // what is found, in the order of the document; none: the document is still good
  std::string path;                // the end of the first one's
};

void PrintTo(const RuleCase& one, std::ostream* out) { *out << one.name; }

std::string document_of(const RuleCase& one) {
  std::string document(kGoodDocument);
  for (const Edit& edit : one.edits) document = replaced(document, edit.behind, edit.from, edit.to);
  return document;
}

// Where things are in the document.
const std::string kNetwork = "<Network";
const std::string kStation = "<Station";
const std::string kHhz = "code=\"HHZ\"";
const std::string kHdf = "code=\"HDF\"";
const std::string kAce = "code=\"ACE\"";
const std::string kSensitivity = "<InstrumentSensitivity>";
const std::string kStage1 = "<Stage number=\"1\">";
const std::string kStage2 = "<Stage number=\"2\">";
const std::string kStage3 = "<Stage number=\"3\">";
const std::string kStage4 = "<Stage number=\"4\">";
const std::string kList = "<ResponseList>";

// A channel of its own behind the last one, with no more than it needs.
std::string bare_channel(const std::string& attributes, const std::string& angles, const std::string& rate) {
  return "</Channel>\n<Channel " + attributes +
         "><Latitude>10</Latitude><Longitude>20</Longitude><Elevation>100</Elevation><Depth>0</Depth>" + angles + rate +
         "<Response/></Channel></Station>";
}

Edit added_channel(const std::string& attributes, const std::string& angles = "",
                   const std::string& rate = "<SampleRate>1</SampleRate>") {
  return {kAce, "</Channel>\n  </Station>", bare_channel(attributes, angles, rate)};
}

std::string in_2003(const std::string& code, const std::string& location = "") {
  return "code=\"" + code + "\" locationCode=\"" + location +
         "\" startDate=\"2003-01-01T00:00:00Z\" endDate=\"2004-01-01T00:00:00Z\"";
}

std::string angles(const std::string& azimuth, const std::string& dip) {
  return "<Azimuth>" + azimuth + "</Azimuth><Dip>" + dip + "</Dip>";
}

std::string rate(const std::string& value) { return "<SampleRate>" + value + "</SampleRate>"; }

// A station behind the good one, without channels.
Edit added_station(const std::string& attributes) {
  return {kAce, "</Station>",
          "</Station><Station " + attributes +
              "><Latitude>0</Latitude><Longitude>0</Longitude><Elevation>0</Elevation></Station>"};
}

Edit added_network(const std::string& attributes) {
  return {kAce, "</Network>", "</Network><Network " + attributes + "/>"};
}

std::vector<RuleCase> code_cases() {
  return {
      {"NetworkCodeInSmallLetters", {{kNetwork, "\"XA\"", "\"xa\""}}, {"code-format"}, "xa 2000-01-01T00:00:00Z"},
      {"NetworkCodeWithADash", {{kNetwork, "\"XA\"", "\"X-\""}}, {"code-format"}, ""},
      {"NetworkCodeEmpty", {{kNetwork, "\"XA\"", "\"\""}}, {"code-format"}, ""},
      {"NetworkCodeMissing", {{kNetwork, "code=\"XA\"", ""}}, {"code-format"}, ""},
      {"NetworkCodeOfNine", {{kNetwork, "\"XA\"", "\"XA2000111\""}}, {"code-format"}, ""},
      {"NetworkCodeOfEight", {{kNetwork, "\"XA\"", "\"XA200011\""}}, {"code-length"}, ""},
      {"NetworkCodeOfThree", {{kNetwork, "\"XA\"", "\"XAB\""}}, {"code-length"}, ""},
      {"NetworkCodeOfOne", {{kNetwork, "\"XA\"", "\"X\""}}, {}, ""},
      {"StationCodeWithABlank", {{kStation, "\"GOOD\"", "\"GO D\""}}, {"code-format"}, "XA.GO D 2001-01-01T00:00:00Z"},
      {"StationCodeOfNine", {{kStation, "\"GOOD\"", "\"GOODGOODG\""}}, {"code-format"}, ""},
      {"StationCodeOfSix", {{kStation, "\"GOOD\"", "\"GOODGO\""}}, {"code-length"}, ""},
      {"StationCodeOfFive", {{kStation, "\"GOOD\"", "\"GOOD-\""}}, {}, ""},
      {"LocationOfNine",
       {added_channel(in_2003("LDO", "123456789"))},
       {"code-format"},
       "XA.GOOD.123456789.LDO 2003-01-01T00:00:00Z"},
      {"LocationOfThree", {added_channel(in_2003("LDO", "123"))}, {"code-length"}, ""},
      {"LocationOfTwo", {added_channel(in_2003("LDO", "1A"))}, {}, ""},
      {"LocationOfTwoBlanks", {added_channel(in_2003("LDO", "  "))}, {}, ""},
      {"LocationOfThreeBlanks", {added_channel(in_2003("LDO", "   "))}, {"code-format"}, ""},
      {"LocationOfTwoDashes", {added_channel(in_2003("LDO", "--"))}, {"code-format"}, ""},
      {"ChannelCodeOfFour", {added_channel(in_2003("TEMP"))}, {"code-format"}, "XA.GOOD..TEMP 2003-01-01T00:00:00Z"},
      {"ChannelCodeOfTwo", {added_channel(in_2003("LD"))}, {"code-format"}, ""},
      {"ChannelCodeInSmallLetters", {added_channel(in_2003("LDo"))}, {"code-format"}, ""},
      {"ChannelCodeOfWords", {added_channel(in_2003("L_DEW_T1"))}, {}, ""},
      {"ChannelCodeOfWordsWithoutEnds", {added_channel(in_2003("_D_"))}, {}, ""},
      {"ChannelCodeOfWordsWithoutSource", {added_channel(in_2003("L__Z"))}, {"code-format"}, ""},
      {"ChannelCodeOfTwoWords", {added_channel(in_2003("L_D"))}, {"code-format"}, ""},
  };
}

std::vector<RuleCase> span_cases() {
  return {
      {"BeginNoDate", {{kHhz, "2001-01-01T00:00:00Z", "2001-02-30T00:00:00Z"}}, {"date-format"}, ""},
      {"BeginADayAlone", {{kHhz, "2001-01-01T00:00:00Z", "2001-01-01"}}, {"date-format"}, ""},
      {"EndNoDate", {{kStation, "2010-01-01T00:00:00Z", "never"}}, {"date-format"}, "XA.GOOD 2001-01-01T00:00:00Z"},
      {"BeginWithoutZone", {{kHhz, "2001-01-01T00:00:00Z", "2001-01-01T00:00:00"}}, {"date-zone"}, ""},
      {"BeginWithAnotherZone", {{kHhz, "2001-01-01T00:00:00Z", "2001-01-01T01:00:00+01:00"}}, {}, ""},
      {"EndAtBegin",
       {{kHhz, "2005-06-01T12:00:00.5Z", "2001-01-01T00:00:00Z"}},
       {"date-order"},
       "XA.GOOD.00.HHZ 2001-01-01T00:00:00Z"},
      {"EndBeforeBegin", {{kHdf, "2010-01-01T00:00:00Z", "2001-12-31T23:59:59Z"}}, {"date-order"}, ""},
      {"EndJustAfterBegin", {{kHhz, "2005-06-01T12:00:00.5Z", "2001-01-01T00:00:00.000001Z"}}, {}, ""},
      {"EndFarAway",
       {{kNetwork, "startDate=\"2000-01-01T00:00:00Z\"",
         "startDate=\"2000-01-01T00:00:00Z\" endDate=\"2599-12-31T23:59:59Z\""}},
       {"date-far"},
       "XA 2000-01-01T00:00:00Z"},
      {"EndNotSoFarAway",
       {{kNetwork, "startDate=\"2000-01-01T00:00:00Z\"",
         "startDate=\"2000-01-01T00:00:00Z\" endDate=\"2099-12-31T23:59:59Z\""}},
       {},
       ""},
      {"ChannelWithoutBegin", {{kHdf, "startDate=\"2002-01-01T00:00:00Z\"", ""}}, {"begin-missing"}, "XA.GOOD..HDF"},
      {"StationWithoutBegin", {{kStation, "startDate=\"2001-01-01T00:00:00Z\"", ""}}, {"begin-missing"}, "XA.GOOD"},
      {"NetworkWithoutBegin", {{kNetwork, "startDate=\"2000-01-01T00:00:00Z\"", ""}}, {}, ""},
      {"ChannelBeforeItsStation",
       {{kHhz, "2001-01-01T00:00:00Z", "2000-12-31T23:59:59Z"}},
       {"epoch-outside"},
       "XA.GOOD.00.HHZ 2000-12-31T23:59:59Z"},
      {"ChannelBeyondItsStation", {{kHdf, "2010-01-01T00:00:00Z", "2010-01-01T00:00:00.001Z"}}, {"epoch-outside"}, ""},
      {"ChannelOpenInAStationThatEnded", {{kHdf, "endDate=\"2010-01-01T00:00:00Z\"", ""}}, {"epoch-outside"}, ""},
      {"StationBeforeItsNetwork",
       {{kNetwork, "2000-01-01T00:00:00Z", "2001-01-01T00:00:01Z"}},
       {"epoch-outside"},
       "XA.GOOD 2001-01-01T00:00:00Z"},
      {"StationBeyondItsNetwork",
       {{kNetwork, "startDate=\"2000-01-01T00:00:00Z\"",
         "startDate=\"2000-01-01T00:00:00Z\" endDate=\"2009-01-01T00:00:00Z\""}},
       {"epoch-outside"},
       ""},
      {"ChannelTwice",
       {added_channel(in_2003("LDO")),
        {"code=\"LDO\"", "</Station>", bare_channel(in_2003("LDO"), "", rate("1")).substr(10)}},
       {"epoch-overlap"},
       "XA.GOOD..LDO 2003-01-01T00:00:00Z"},
      {"ChannelOverlapping",
       {added_channel(
           "code=\"HDF\" locationCode=\"\" startDate=\"2001-06-01T00:00:00Z\" endDate=\"2002-01-01T00:00:00.001Z\"", "",
           rate("100"))},
       {"epoch-overlap"},
       "XA.GOOD..HDF 2002-01-01T00:00:00Z"},
      {"ChannelsOneAfterTheOther",
       {added_channel(
           "code=\"HDF\" locationCode=\"\" startDate=\"2001-06-01T00:00:00Z\" endDate=\"2002-01-01T00:00:00Z\"", "",
           rate("100"))},
       {},
       ""},
      {"ChannelOfAnotherLocation", {added_channel(in_2003("HDF", "10"), "", rate("100"))}, {}, ""},
      {"StationOverlapping",
       {added_station("code=\"GOOD\" startDate=\"2009-12-31T23:59:59Z\"")},
       {"epoch-overlap"},
       "XA.GOOD 2009-12-31T23:59:59Z"},
      {"StationsOneAfterTheOther", {added_station("code=\"GOOD\" startDate=\"2010-01-01T00:00:00Z\"")}, {}, ""},
      {"NetworkOverlapping",
       {added_network("code=\"XA\" startDate=\"2020-01-01T00:00:00Z\"")},
       {"epoch-overlap"},
       "XA 2020-01-01T00:00:00Z"},
      {"NetworkBeforeTheOther",
       {added_network("code=\"XA\" startDate=\"1990-01-01T00:00:00Z\" endDate=\"2000-01-01T00:00:00Z\"")},
       {},
       ""},
  };
}

std::vector<RuleCase> place_cases() {
  return {
      {"StationWithoutLatitude",
       {{kStation, "<Latitude unit=\"DEGREES\">10</Latitude>", ""}},
       {"place-missing"},
       "XA.GOOD 2001-01-01T00:00:00Z"},
      {"StationWithoutElevation", {{kStation, "<Elevation>100</Elevation>", ""}}, {"place-missing"}, ""},
      {"ChannelWithoutLongitude", {{kHhz, "<Longitude>20.001</Longitude>", ""}}, {"place-missing"}, ""},
      {"ChannelWithoutDepth", {{kHdf, "<Depth>0</Depth>", ""}}, {"place-missing"}, "XA.GOOD..HDF 2002-01-01T00:00:00Z"},
      {"LatitudeBeyondThePole",
       {added_station("code=\"B\" startDate=\"2001-01-01T00:00:00Z\""),
        {"code=\"B\"", "<Latitude>0<", "<Latitude>90.001<"}},
       {"place-range"},
       ""},
      {"LatitudeOfThePole",
       {added_station("code=\"B\" startDate=\"2001-01-01T00:00:00Z\""),
        {"code=\"B\"", "<Latitude>0<", "<Latitude>-90<"}},
       {},
       ""},
      {"LongitudeBeyondTheDateLine",
       {added_station("code=\"B\" startDate=\"2001-01-01T00:00:00Z\""),
        {"code=\"B\"", "<Longitude>0<", "<Longitude>-180.5<"}},
       {"place-range"},
       ""},
      {"LongitudeOfTheDateLine",
       {added_station("code=\"B\" startDate=\"2001-01-01T00:00:00Z\""),
        {"code=\"B\"", "<Longitude>0<", "<Longitude>180<"}},
       {},
       ""},
      {"ElevationInTheAir",
       {added_station("code=\"B\" startDate=\"2001-01-01T00:00:00Z\""),
        {"code=\"B\"", "<Elevation>0<", "<Elevation>9000.1<"}},
       {"place-range"},
       ""},
      {"DepthBelowAllBoreholes", {{kHhz, "<Depth>10<", "<Depth>13001<"}}, {"place-range"}, ""},
      {"ChannelTwoKilometresAway", {{kHhz, "<Latitude>10.001<", "<Latitude>10.018<"}}, {"place-far"}, ""},
      {"ChannelHardlyOneKilometreAway", {{kHhz, "<Latitude>10.001<", "<Latitude>10.0089<"}}, {}, ""},
      {"ChannelOverAKilometreAway", {{kHhz, "<Latitude>10.001<", "<Latitude>10.0091<"}}, {"place-far"}, ""},
      {"ChannelFarBelow", {{kHdf, "<Elevation>100<", "<Elevation>-901<"}}, {"place-far"}, ""},
      {"ChannelAKilometreBelow", {{kHdf, "<Elevation>100<", "<Elevation>-900<"}}, {}, ""},
      {"ChannelInADeepBorehole",
       {{kHdf, "<Elevation>100<", "<Elevation>-2900<"}, {kHdf, "<Depth>0<", "<Depth>3000<"}},
       {},
       ""},
  };
}

std::vector<RuleCase> orientation_cases() {
  return {
      {"AzimuthMissing",
       {{kHhz, "<Azimuth>0</Azimuth>", ""}},
       {"orientation-missing"},
       "XA.GOOD.00.HHZ 2001-01-01T00:00:00Z"},
      {"DipMissing", {{kHhz, "<Dip>-90</Dip>", ""}}, {"orientation-missing"}, ""},
      {"AnglesOfATemperature", {added_channel(in_2003("LKO"))}, {}, ""},
      {"AnglesOfAnAccelerometer", {added_channel(in_2003("LN1"))}, {"orientation-missing", "orientation-missing"}, ""},
      {"AzimuthOfAFullTurn", {{kHhz, "<Azimuth>0<", "<Azimuth>360<"}}, {"orientation-range"}, ""},
      {"AzimuthBelowAFullTurn", {{kHhz, "<Azimuth>0<", "<Azimuth>359.999<"}}, {}, ""},
      {"AzimuthNegative", {{kHhz, "<Azimuth>0<", "<Azimuth>-0.1<"}}, {"orientation-range"}, ""},
      {"DipBeyondTheVertical", {{kHhz, "<Dip>-90<", "<Dip>-90.1<"}}, {"orientation-range"}, ""},
      {"VerticalReversed", {{kHhz, "<Dip>-90<", "<Dip>90<"}}, {}, ""},
      {"VerticalLeaning", {{kHhz, "<Dip>-90<", "<Dip>-84.9<"}}, {"orientation-code"}, ""},
      {"VerticalHardlyLeaning", {{kHhz, "<Dip>-90<", "<Dip>-85<"}}, {}, ""},
      {"NorthAtFive", {added_channel(in_2003("LHN"), angles("5", "-5"))}, {}, ""},
      {"NorthBeyondFive", {added_channel(in_2003("LHN"), angles("5.1", "0"))}, {"orientation-code"}, ""},
      {"NorthFromTheOtherSide", {added_channel(in_2003("LHN"), angles("355", "0"))}, {}, ""},
      {"NorthReversed", {added_channel(in_2003("LHN"), angles("175", "0"))}, {}, ""},
      {"NorthNotLevel", {added_channel(in_2003("LHN"), angles("0", "5.1"))}, {"orientation-code"}, ""},
      {"EastAtFive", {added_channel(in_2003("LHE"), angles("85", "0"))}, {}, ""},
      {"EastReversed", {added_channel(in_2003("LHE"), angles("270", "0"))}, {}, ""},
      {"EastIsNorth", {added_channel(in_2003("LHE"), angles("0", "0"))}, {"orientation-code"}, ""},
      {"OneIsAnywhere", {added_channel(in_2003("LH1"), angles("45", "30"))}, {}, ""},
      {"PressureIsNowhere", {added_channel(in_2003("LDN"), angles("45", "30"))}, {}, ""},
      {"NorthInWords", {added_channel(in_2003("L_H_N"), angles("45", "0"))}, {"orientation-code"}, ""},
  };
}

std::vector<RuleCase> rate_cases() {
  return {
      {"RateMissing", {added_channel(in_2003("LDO"), "", "")}, {"rate-missing"}, "XA.GOOD..LDO 2003-01-01T00:00:00Z"},
      {"RateOfALogMissing", {{kAce, "<SampleRate>0</SampleRate>", ""}}, {}, ""},
      {"RateOfALogByName", {added_channel(in_2003("LOG"), "", rate("0"))}, {}, ""},
      {"RateZero", {added_channel(in_2003("LDO"), "", rate("0"))}, {"rate-range"}, ""},
      {"RateNegative", {{kAce, "<SampleRate>0<", "<SampleRate>-1<"}}, {"rate-range"}, ""},
      {"BandOfAnotherRate", {added_channel(in_2003("BDF"), "", rate("100"))}, {"band-code"}, ""},
      {"BandAtItsLowerEnd", {added_channel(in_2003("BDF"), "", rate("10"))}, {}, ""},
      {"BandMeasuredBelowItsLowerEnd", {added_channel(in_2003("BDF"), "", rate("9.99"))}, {}, ""},
      {"BandBelowItsLowerEnd", {added_channel(in_2003("BDF"), "", rate("9.8"))}, {"band-code"}, ""},
      {"BandAboveItsUpperEnd", {added_channel(in_2003("BDF"), "", rate("81"))}, {"band-code"}, ""},
      {"BandOfOneSample", {added_channel(in_2003("LDF"), "", rate("1.04"))}, {}, ""},
      {"BandOfTwoSamples", {added_channel(in_2003("LDF"), "", rate("2"))}, {"band-code"}, ""},
      {"BandOfVeryFastSamples", {added_channel(in_2003("JDF"), "", rate("50000"))}, {}, ""},
      {"BandWithoutMeaning", {added_channel(in_2003("XDF"), "", rate("100"))}, {"band-code"}, ""},
  };
}

std::vector<RuleCase> stage_cases() {
  return {
      {"ResponseMissing",
       {added_channel(in_2003("LDO")), {"code=\"LDO\"", "<Response/>", ""}},
       {"response-missing"},
       "XA.GOOD..LDO 2003-01-01T00:00:00Z"},
      {"ResponseEmpty", {added_channel(in_2003("LDO"))}, {}, ""},
      {"ResponseOfALogMissing",
       {{kAce, "</SampleRate>",
         "</SampleRate>"
         "<!-- -->"}},
       {},
       ""},
      {"StagesMissing",
       {added_channel(in_2003("LDO")),
        {"code=\"LDO\"", "<Response/>",
         "<Response><InstrumentSensitivity><Value>1</Value><Frequency>0.1</Frequency><InputUnits><Name>Pa</Name></"
         "InputUnits><OutputUnits><Name>V</Name></OutputUnits></InstrumentSensitivity></Response>"}},
       {"stages-missing"},
       ""},
      {"StageNumbersNotInOrder",
       {{kStage1, "number=\"1\"", "number=\"2\""}},
       {"stage-order"},
       "XA.GOOD.00.HHZ 2001-01-01T00:00:00Z"},
      {"StageNumbersFromZero",
       {{kList, "<ResponseList>",
         "<ResponseList>"
         "<!-- -->"},
        {kHdf, kStage1, "<Stage number=\"0\">"}},
       {"stage-order"},
       ""},
      {"StageNumberNone", {{kHdf, kStage1, "<Stage number=\"one\">"}}, {"stage-order"}, ""},
      {"StageNumberMissing", {{kHdf, kStage1, "<Stage>"}}, {"stage-order"}, ""},
      {"StageNumberWithAZero", {{kHdf, kStage1, "<Stage number=\"01\">"}}, {}, ""},
  };
}

std::vector<RuleCase> unit_cases() {
  return {
      {"UnitUnknown",
       {{kHdf, "<Name>Pa<", "<Name>pascals<"}, {kList, "<Name>Pa<", "<Name>pascals<"}},
       {"unit-unknown", "unit-unknown"},
       "sensitivity"},
      {"UnitMissing", {{kList, "<Name>Pa<", "<Name><"}}, {"unit-unknown"}, "stage 1"},
      {"UnitOfOldSpelling", {{kHdf, "<Name>Pa<", "<Name>HPA<"}, {kList, "<Name>Pa<", "<Name>hPa<"}}, {}, ""},
      {"UnitsNotJoined", {{kStage4, "<Name>count<", "<Name>V<"}}, {"unit-chain"}, "stage 4"},
      {"UnitsNotJoinedBySpelling", {{kStage4, "<Name>count<", "<Name>counts<"}}, {"unit-chain"}, "stage 4"},
      {"UnitsJoinedButForCase", {{kStage4, "<Name>count<", "<Name>COUNT<"}}, {}, ""},
      {"UnitsHiddenByAGain", {{kStage3, "<Name>V<", "<Name>A<"}}, {"unit-hidden"}, "stage 3"},
      {"SensitivityOfOtherInput", {{kSensitivity, "<Name>m/s<", "<Name>m<"}}, {"unit-sensitivity"}, "stage 1"},
      {"SensitivityOfOtherOutput", {{kSensitivity, "<Name>count<", "<Name>V<"}}, {"unit-sensitivity"}, "sensitivity"},
      {"SensitivityOfOtherCase", {{kSensitivity, "<Name>m/s<", "<Name>M/s<"}}, {}, ""},
  };
}

std::vector<RuleCase> decimation_cases() {
  return {
      {"DecimationMissing",
       {{kStage4, "<Decimation>", "<!--"},
        {kStage4, "</Decimation>", "-->"},
        {kStage4, "<Frequency>0<", "<Frequency>5<"}},
       {"decimation-missing"},
       "stage 4"},
      {"FactorZero", {{kStage4, "<Factor>4<", "<Factor>0<"}}, {"decimation-factor"}, "stage 4"},
      {"FactorBroken", {{kStage4, "<Factor>4<", "<Factor>4.5<"}}, {"decimation-factor", "decimation-rate"}, ""},
      {"FactorMissing", {{kStage4, "<Factor>4</Factor>", ""}}, {"decimation-factor"}, ""},
      {"OffsetAsLargeAsTheFactor", {{kStage4, "<Offset>0<", "<Offset>4<"}}, {"decimation-offset"}, "stage 4"},
      {"OffsetBelowTheFactor", {{kStage4, "<Offset>0<", "<Offset>3<"}}, {}, ""},
      {"OffsetNegative", {{kStage4, "<Offset>0<", "<Offset>-1<"}}, {"decimation-offset"}, ""},
      {"OffsetMissing", {{kStage4, "<Offset>0</Offset>", ""}}, {"decimation-offset"}, ""},
      {"RatesNotJoined",
       {{kStage3, "<InputSampleRate>800<", "<InputSampleRate>1600<"}},
       {"decimation-chain"},
       "stage 4"},
      {"RatesHardlyNotJoined",
       {{kStage3, "<InputSampleRate>800<", "<InputSampleRate>800.1<"}},
       {"decimation-chain"},
       ""},
      {"RatesRounded", {{kStage3, "<InputSampleRate>800<", "<InputSampleRate>800.05<"}}, {}, ""},
      {"RateZeroInAStage",
       {{kStage3, "<InputSampleRate>800<", "<InputSampleRate>0<"}},
       {"decimation-chain"},
       "stage 3"},
      {"RateMissingInAStage",
       {{kStage3, "<InputSampleRate>800</InputSampleRate>", ""}},
       {"decimation-chain"},
       "stage 3"},
      {"RateAtTheEndAnother",
       {{kHhz, "<SampleRate>100<", "<SampleRate>200<"}},
       {"decimation-rate"},
       "XA.GOOD.00.HHZ 2001-01-01T00:00:00Z"},
      {"RateAtTheEndRounded", {{kHhz, "<SampleRate>100<", "<SampleRate>100.005<"}}, {}, ""},
      {"DelayNegative", {{kStage4, "<Delay>0.005<", "<Delay>-0.005<"}}, {"delay-negative"}, "stage 4"},
      {"DelayNotCorrected", {{kStage4, "<Correction>0.005<", "<Correction>0<"}}, {"delay-correction"}, "stage 4"},
      {"DelayCorrectedToHalfASample", {{kStage4, "<Correction>0.005<", "<Correction>0.00375<"}}, {}, ""},
      {"DelayNotCorrectedToHalfASample",
       {{kStage4, "<Correction>0.005<", "<Correction>0.0063<"}},
       {"delay-correction"},
       ""},
      {"LongDelayCorrectedToOneInAHundred",
       {{kStage4, "<Delay>0.005<", "<Delay>1<"}, {kStage4, "<Correction>0.005<", "<Correction>1.01<"}},
       {},
       ""},
  };
}

std::vector<RuleCase> gain_cases() {
  return {
      {"GainMissing",
       {{kStage2, "<StageGain><Value>2</Value><Frequency>5</Frequency></StageGain>", ""}},
       {"gain-missing"},
       "stage 2"},
      {"GainWithoutValue", {{kStage2, "<Value>2</Value>", ""}}, {"gain-missing"}, "stage 2"},
      {"GainZero", {{kStage2, "<Value>2<", "<Value>0<"}}, {"gain-zero"}, "stage 2"},
      {"GainsNegativeInPairs",
       {{kStage2, "<Value>2<", "<Value>-2<"}, {kStage1, "<Value>1500<", "<Value>-1500<"}},
       {"gain-negative", "gain-negative"},
       "stage 1"},
      {"GainNegative", {{kStage2, "<Value>2<", "<Value>-2<"}}, {"gain-negative", "sensitivity-gains"}, "stage 2"},
      {"GainWithoutFrequency", {{kStage2, "<Frequency>5</Frequency>", ""}}, {"gain-frequency"}, "stage 2"},
      {"GainOfNegativeFrequency", {{kStage2, "<Frequency>5<", "<Frequency>-5<"}}, {"gain-frequency"}, "stage 2"},
      {"SensitivityZero", {{kSensitivity, "<Value>1.2e9<", "<Value>0<"}}, {"gain-zero"}, "sensitivity"},
      {"SensitivityMissing",
       {{kHdf, "<InstrumentSensitivity>", "<!--"}, {kHdf, "</InstrumentSensitivity>", "-->"}},
       {"sensitivity-missing"},
       "XA.GOOD..HDF 2002-01-01T00:00:00Z"},
      {"PolynomialInstead",
       {{kHdf, "<InstrumentSensitivity>", "<InstrumentPolynomial/><!--"}, {kHdf, "</InstrumentSensitivity>", "-->"}},
       {},
       ""},
      {"SensitivityAtNyquist", {{kHdf, "<Frequency>1<", "<Frequency>40<"}}, {"sensitivity-frequency"}, "sensitivity"},
      {"SensitivityWithoutSamples",
       {{kAce, "</SampleRate>",
         "</SampleRate><Response><InstrumentSensitivity><Value>1</Value><Frequency>1</Frequency><InputUnits><Name>V</"
         "Name></InputUnits><OutputUnits><Name>V</Name></OutputUnits></InstrumentSensitivity></Response>"}},
       {},
       ""},
      {"SensitivityBelowNyquist",
       {{kSensitivity, "<Frequency>5<", "<Frequency>49<"}, {kSensitivity, "<Value>1.2e9<", "<Value>0.82e9<"}},
       {},
       ""},
      {"SensitivityNotThatOfTheGains",
       {{kSensitivity, "<Value>1.2e9<", "<Value>1.23e9<"}},
       {"sensitivity-gains"},
       "sensitivity"},
      {"SensitivityHardlyThatOfTheGains", {{kSensitivity, "<Value>1.2e9<", "<Value>1.215e9<"}}, {}, ""},
      {"SensitivityOfAnotherSign",
       {{kSensitivity, "<Value>1.2e9<", "<Value>-1.2e9<"}},
       {"gain-negative", "sensitivity-gains"},
       "sensitivity"},
      {"SensitivityByTheList", {{kHdf, "<Value>10<", "<Value>10.3<"}}, {"sensitivity-gains"}, "sensitivity"},
      {"SensitivityBetweenPointsOfTheList",
       {{kHdf, "<Frequency>1<", "<Frequency>3.16228<"}, {kHdf, "<Value>10<", "<Value>15<"}},
       {},
       ""},
      {"SensitivityBeyondTheList", {{kHdf, "<Frequency>1<", "<Frequency>0.01<"}}, {}, ""},
      {"GainAtAFrequencyThatDoesNotPass",
       {{kStage1, "<StageGain><Value>1500</Value><Frequency>5<", "<StageGain><Value>1500</Value><Frequency>0<"}},
       {"sensitivity-gains"},
       "stage 1"},
  };
}

// Stage 3 as a pole with the factor 0.5.
std::vector<Edit> with_digital_pole(const std::string& pole) {
  return {{kStage3, "<Coefficients>", "<PolesZeros>"},
          {kStage3, "</Coefficients>", "</PolesZeros>"},
          {kStage3, "<CfTransferFunctionType>DIGITAL</CfTransferFunctionType>",
           "<PzTransferFunctionType>DIGITAL (Z-TRANSFORM)</PzTransferFunctionType>"
           "<NormalizationFactor>0.5</NormalizationFactor><NormalizationFrequency>0</NormalizationFrequency>"
           "<Pole><Real>" +
               pole + "</Real><Imaginary>0</Imaginary></Pole>"}};
}

std::vector<RuleCase> filter_cases() {
  return {
      {"NotNormal",
       {{kStage1, "<NormalizationFactor>1.0007980<", "<NormalizationFactor>1.011<"}},
       {"normalization"},
       "stage 1"},
      {"HardlyNormal", {{kStage1, "<NormalizationFactor>1.0007980<", "<NormalizationFactor>1.0100<"}}, {}, ""},
      {"NormalWithTheOtherSign",
       {{kStage1, "<NormalizationFactor>1.0007980<", "<NormalizationFactor>-1.0007980<"}},
       {},
       ""},
      {"NormalAtAZero", {{kStage1, "<NormalizationFrequency>5<", "<NormalizationFrequency>0<"}}, {"normalization"}, ""},
      {"NormalWithoutFrequency",
       {{kStage1, "<NormalizationFrequency>5</NormalizationFrequency>", ""}},
       {"normalization"},
       ""},
      {"PolesInHertz", {{kStage1, "(RADIANS/SECOND)", "(HERTZ)"}}, {"normalization"}, ""},
      {"PolesUnstable",
       {{kStage1, "<Real>-4.44<", "<Real>4.44<"}, {kStage1, "<Real>-4.44<", "<Real>4.44<"}},
       {"pole-unstable", "pole-unstable"},
       "stage 1"},
      {"PoleRealButForNoise",
       {{kStage1, "<Pole number=\"2\">",
         "<Pole><Real>-100000</Real><Imaginary>0.001</Imaginary></Pole><Pole number=\"2\">"},
        {kStage1, "<NormalizationFactor>1.0007980<", "<NormalizationFactor>100079.8<"}},
       {},
       ""},
      {"DigitalPoleStable", with_digital_pole("0.5"), {}, ""},
      {"DigitalPoleUnstable", with_digital_pole("1.5"), {"pole-unstable"}, "stage 3"},
      {"PoleAtTheOrigin",
       {{kStage1, "<Zero number=\"1\"><Real>0</Real>",
         "<Pole number=\"9\"><Real>0</Real><Imaginary>0</Imaginary></Pole><Zero number=\"1\"><Real>0</Real>"},
        {kStage1, "<NormalizationFactor>1.0007980<", "<NormalizationFactor>31.4410<"}},
       {},
       ""},
      {"PoleWithoutPartner",
       {{kStage1, "<Imaginary>-4.44<", "<Imaginary>4.44<"},
        {kStage1, "<NormalizationFactor>1.0007980<", "<NormalizationFactor>0.75642<"}},
       {"roots-unpaired", "roots-unpaired"},
       "stage 1"},
      {"PoleWithHardlyAPartner", {{kStage1, "<Imaginary>-4.44<", "<Imaginary>-4.4402<"}}, {}, ""},
      {"PoleWithAnotherPartner",
       {{kStage1, "<Imaginary>-4.44<", "<Imaginary>-4.442<"}},
       {"roots-unpaired", "roots-unpaired"},
       ""},
      {"CoefficientsNotOne", {{kStage3, ">0.75<", ">0.765<"}}, {"coefficient-sum"}, "stage 3"},
      {"CoefficientsHardlyOne", {{kStage3, ">0.75<", ">0.759<"}}, {}, ""},
      {"CoefficientsOverDenominators",
       {{kStage3, "<Numerator number=\"2\">0.75</Numerator>",
         "<Numerator number=\"2\">0.75</Numerator><Denominator number=\"1\">2</Denominator>"}},
       {"coefficient-sum"},
       "stage 3"},
      {"CoefficientsNone",
       {{kStage3, "<Numerator number=\"1\">0.25</Numerator>", ""},
        {kStage3, "<Numerator number=\"2\">0.75</Numerator>", ""}},
       {},
       ""},
      {"CoefficientsOfASignal", {{kStage3, ">0.75<", ">0.8<"}, {kStage3, ">DIGITAL<", ">ANALOG (HERTZ)<"}}, {}, ""},
      {"SymmetryOfHalfAsEven", {{kStage4, ">ODD<", ">EVEN<"}}, {"coefficient-sum"}, "stage 4"},
      {"SymmetryUnknown", {{kStage4, ">ODD<", ">BOTH<"}}, {"fir-symmetry"}, "stage 4"},
      {"SymmetryMissing", {{kStage4, "<Symmetry>ODD</Symmetry>", ""}}, {"fir-symmetry"}, ""},
      {"SymmetryOfAllThatIsWritten",
       {{kStage4, "i=\"3\">0.4<",
         "i=\"3\">0.4</NumeratorCoefficient><NumeratorCoefficient "
         "i=\"4\">0.2</NumeratorCoefficient><NumeratorCoefficient i=\"5\">0.1<"}},
       {"fir-symmetry"},
       ""},
      {"SymmetryNoneOfAllThatIsWritten",
       {{kStage4, "i=\"3\">0.4<",
         "i=\"3\">0.4</NumeratorCoefficient><NumeratorCoefficient "
         "i=\"4\">0.2</NumeratorCoefficient><NumeratorCoefficient i=\"5\">0.1<"},
        {kStage4, ">ODD<", ">NONE<"}},
       {},
       ""},
      {"ListNotInOrder", {{kList, "<Frequency>0.1<", "<Frequency>2<"}}, {"list-order"}, "stage 1"},
      {"ListWithAFrequencyTwice",
       {{kList, "<Frequency>0.1<", "<Frequency>1<"}, {kList, "<Amplitude>0.5<", "<Amplitude>1<"}},
       {"list-order"},
       "stage 1"},
      {"ListJustInOrder", {{kList, "<Frequency>0.1<", "<Frequency>0.999999<"}}, {}, ""},
  };
}

std::vector<RuleCase> number_cases() {
  return {
      {"LatitudeNoNumber", {{kStation, "DEGREES\">10<", "DEGREES\">10N<"}}, {"number"}, "XA.GOOD 2001-01-01T00:00:00Z"},
      {"LatitudeEmpty", {{kStation, "DEGREES\">10<", "DEGREES\"><"}}, {"number"}, ""},
      {"NumberInfinite", {{kStage1, "<Real>-4.44<", "<Real>-INF<"}}, {"number"}, "XA.GOOD.00.HHZ 2001-01-01T00:00:00Z"},
      {"NumberNone", {{kHdf, "<Phase>0<", "<Phase>NaN<"}}, {"number"}, ""},
      {"NumberTooLarge", {{kStage4, ">0.1<", ">1e999<"}}, {"number"}, ""},
      {"NumberVerySmall", {{kHdf, "<Phase>0<", "<Phase>1e-999<"}}, {}, ""},
      {"NumberAmongBlanks", {{kHdf, "<Phase>0<", "<Phase> \n +0.0 \t<"}}, {}, ""},
      {"TotalNoNumber",
       {{kNetwork, "<TotalNumberStations>2<", "<TotalNumberStations>two<"}},
       {"number"},
       "XA 2000-01-01T00:00:00Z"},
      {"TotalBelowSelected",
       {{kNetwork, "<TotalNumberStations>2<", "<TotalNumberStations>0<"}},
       {"totals"},
       "XA 2000-01-01T00:00:00Z"},
      {"TotalOfChannelsBelowSelected",
       {{kStation, "<TotalNumberChannels>3<", "<TotalNumberChannels>2<"}},
       {"totals"},
       "XA.GOOD 2001-01-01T00:00:00Z"},
      {"TotalAsSelected", {{kNetwork, "<TotalNumberStations>2<", "<TotalNumberStations>1<"}}, {}, ""},
  };
}

std::vector<RuleCase> all_cases() {
  std::vector<RuleCase> all;
  for (const auto& cases : {code_cases(), span_cases(), place_cases(), orientation_cases(), rate_cases(), stage_cases(),
                            unit_cases(), decimation_cases(), gain_cases(), filter_cases(), number_cases()}) {
    all.insert(all.end(), cases.begin(), cases.end());
  }
  return all;
}

std::string told(const std::vector<DocumentFinding>& findings) {
  std::string text;
  for (const DocumentFinding& finding : findings) {
    text += std::to_string(finding.line) + ": " + finding.path + ": " + std::string(finding.code) + ": " +
            finding.text + '\n';
  }
  return text;
}

class Rules : public testing::TestWithParam<RuleCase> {};

TEST_P(Rules, ThatAreBrokenAreTold) {
  const auto findings = check_document_text(document_of(GetParam()));
  std::vector<std::string> codes;
  codes.reserve(findings.size());
  for (const DocumentFinding& finding : findings) codes.emplace_back(finding.code);
  ASSERT_THAT(codes, ElementsAreArray(GetParam().codes)) << told(findings);
  if (!findings.empty()) {
    EXPECT_THAT(findings.front().path, testing::EndsWith(GetParam().path));
  }
}

INSTANTIATE_TEST_SUITE_P(All, Rules, testing::ValuesIn(all_cases()), [](const auto& one) { return one.param.name; });

TEST(DocumentRules, ThereIsNothingAgainstAGoodDocument) {
  EXPECT_EQ(told(check_document_text(std::string(kGoodDocument))), "");
}

// Rules that no edit of the good document breaks have tests in reading_test.cpp.
TEST(DocumentRules, EachHasADocumentThatBreaksIt) {
  std::set<std::string_view> broken = {"not-xml", "document-type", "not-stationxml", "too-large"};
  const auto cases = all_cases();
  for (const RuleCase& one : cases) broken.insert(one.codes.begin(), one.codes.end());
  for (const DocumentRule& rule : document_rules()) EXPECT_TRUE(broken.contains(rule.code)) << rule.code;
  EXPECT_EQ(broken.size(), document_rules().size());
}

TEST(DocumentRules, CodesAreWordsAndDiffer) {
  std::set<std::string_view> codes;
  for (const DocumentRule& rule : document_rules()) {
    EXPECT_TRUE(codes.insert(rule.code).second) << rule.code;
    EXPECT_TRUE(
        std::all_of(rule.code.begin(), rule.code.end(), [](char c) { return (c >= 'a' && c <= 'z') || c == '-'; }));
    EXPECT_THAT(std::string(rule.advice), testing::Not(IsEmpty()));
  }
}

TEST(DocumentRules, ATextSaysWhatWasFoundAndExpectedAndWhatToDo) {
  const auto findings = check_document_text(replaced(std::string(kGoodDocument), kStage4, "<Name>count<", "<Name>V<"));
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].code, "unit-chain");
  EXPECT_EQ(findings[0].rank, CheckRank::error);
  EXPECT_EQ(findings[0].path, "XA.GOOD.00.HHZ 2001-01-01T00:00:00Z stage 4");
  EXPECT_EQ(findings[0].text,
            "units are 'V', expected 'count' as before; let each stage take what the one before it gives");
}

TEST(DocumentRules, AQuotedTextIsShortAndOnOneLine) {
  const std::string code = "\xc3\xa9\n" + std::string(500, 'a');
  const auto findings = check_document_text(replaced(std::string(kGoodDocument), kNetwork, "\"XA\"", '"' + code + '"'));
  ASSERT_FALSE(findings.empty());
  EXPECT_LT(findings[0].text.size(), 300U);
  EXPECT_EQ(findings[0].text.find('\n'), std::string::npos);
  EXPECT_THAT(findings[0].text, HasSubstr("aaa...'"));
}

}  // namespace
}  // namespace triglub
