// Stages as they stand in a document.
#include <gmock/gmock.h>

#include <string>
#include <tuple>

#include "document/written.h"
#include "tree/tree_reading.h"

namespace triglub_test {
namespace {

const FieldTexts kFiles = {
    {"resp/s.paz", "theoretical 1 instrument paz\n2.5 0.5\n1\n-1 2 0 0\n0\n"},
    {"resp/f.fir", "theoretical 1 instrument fir\n200\n3\n0.25 0\n0.5 0\n0.25 0\n0\n"},
    {"resp/odd.fir", "theoretical 1 instrument fir\n200\n3\n0.25 0\n0.5 0\n0.75 0\n0\n"},
    {"resp/early.fir", "theoretical 1 instrument fir\n200 0\n3\n0.25 0\n0.5 0\n0.25 0\n0\n"},
    {"resp/back.fir", "theoretical 1 instrument fir\n200\n3\n0.25 0\n0.5 0\n0.25 0\n1\n0.5 0\n"},
};

const std::string kTree = document("", "stage - CATEGORIZED_BY_NUMBER stageid\n", "",
                                   group("stage", "Stage", "number - integer stageid\n", "filter - STAGE\n"));

// The stages of one channel, `values` each; the calibration has a frequency of 1 Hz and units of metres.
std::string stages(const std::vector<FieldTexts>& values, FieldTexts calibration = {{"fc", "1"}, {"units", "m"}},
                   const std::vector<std::string>& told = {}, const std::string& options = "") {
  MadeRows rows = {{"snetsta", {}}, {"site", {}}, {"sitechan", {}}, {"calibration", calibration}};
  int number = 0;
  for (FieldTexts stage : values) {
    stage.insert({{"stageid", std::to_string(++number)}, {"gnom", "2"}});
    if (stage.contains("dfile")) stage.insert({"dir", "resp"});
    rows.push_back({"stage", stage});
  }
  const MadeDatabase made(rows, kFiles);
  const Written written = write_document(made, options + kTree);
  EXPECT_EQ(written.told, told);
  return written.text;
}

std::string gain(const std::string& value) {
  return "   <StageGain>\n    <Value>" + value + "</Value>\n    <Frequency>1</Frequency>\n   </StageGain>\n";
}

std::string in_stage(const std::string& number, const std::string& text) {
  return "  <Stage number=\"" + number + "\">\n" + text + "  </Stage>\n";
}

std::string in_root(const std::string& text) { return " <Root>\n" + text + " </Root>\n"; }

std::string units(const std::string& input, const std::string& output) {
  return "    <InputUnits><Name>" + input + "</Name></InputUnits>\n    <OutputUnits><Name>" + output +
         "</Name></OutputUnits>\n";
}

std::string paz(const std::string& input, const std::string& output) {
  return "   <PolesZeros>\n" + units(input, output) +
         "    <PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>\n"
         "    <NormalizationFactor>2.5</NormalizationFactor>\n"
         "    <NormalizationFrequency>0.5</NormalizationFrequency>\n"
         "    <Pole number=\"0\">\n     <Real>-1</Real>\n     <Imaginary>2</Imaginary>\n    </Pole>\n"
         "   </PolesZeros>\n";
}

std::string fir(const std::string& input, const std::string& output) {
  return "   <FIR>\n" + units(input, output) +
         "    <Symmetry>ODD</Symmetry>\n"
         "    <NumeratorCoefficient i=\"1\">0.25</NumeratorCoefficient>\n"
         "    <NumeratorCoefficient i=\"2\">0.5</NumeratorCoefficient>\n"
         "   </FIR>\n";
}

std::string odd_fir(const std::string& input, const std::string& output) {
  return "   <FIR>\n" + units(input, output) +
         "    <Symmetry>NONE</Symmetry>\n"
         "    <NumeratorCoefficient i=\"1\">0.25</NumeratorCoefficient>\n"
         "    <NumeratorCoefficient i=\"2\">0.5</NumeratorCoefficient>\n"
         "    <NumeratorCoefficient i=\"3\">0.75</NumeratorCoefficient>\n"
         "   </FIR>\n";
}

std::string decimation(const std::string& rate, const std::string& factor, const std::string& delay,
                       const std::string& correction) {
  return "   <Decimation>\n    <InputSampleRate>" + rate + "</InputSampleRate>\n    <Factor>" + factor +
         "</Factor>\n    <Offset>0</Offset>\n    <Delay>" + delay + "</Delay>\n    <Correction>" + correction +
         "</Correction>\n   </Decimation>\n";
}

TEST(StageTexts, AGainAloneWhereTheUnitsStay) { EXPECT_EQ(stages({{}}), in_root(in_stage("1", gain("2")))); }

TEST(StageTexts, TheGainIsTheNominalOneTimesItsCalibration) {
  EXPECT_EQ(stages({{{"gcalib", "1.5"}}}), in_root(in_stage("1", gain("3"))));
}

TEST(StageTexts, ThePeriodStandsForAFrequencyThatIsNotThere) {
  EXPECT_EQ(stages({{}}, {{"calper", "1.0"}, {"units", "m"}}), in_root(in_stage("1", gain("2"))));
}

TEST(StageTexts, PolesAndZerosTakeTheUnitsOfTheRow) {
  EXPECT_EQ(stages({{{"dfile", "s.paz"}, {"iunits", "m"}, {"ounits", "V"}}}),
            in_root(in_stage("1", paz("m", "V") + gain("2"))));
}

TEST(StageTexts, UnitsThatARowLacksComeFromTheOneBefore) {
  EXPECT_EQ(stages({{{"dfile", "s.paz"}, {"ounits", "V"}},
                    {{"dfile", "s.paz"}},
                    {{"dfile", "s.paz"}, {"iunits", "A"}},
                    {{"dfile", "s.paz"}, {"ounits", "counts"}}}),
            in_root(in_stage("1", paz("m", "V") + gain("2")) + in_stage("2", paz("V", "V") + gain("2")) +
                    in_stage("3", paz("A", "A") + gain("2")) + in_stage("4", paz("A", "counts") + gain("2"))));
}

TEST(StageTexts, UnitsThatNobodyKnowsAreUnknown) {
  EXPECT_EQ(stages({{{"dfile", "s.paz"}}}, {{"fc", "1"}}),
            in_root(in_stage("1", paz("unknown", "unknown") + gain("2"))));
}

TEST(StageTexts, UnitsAreXml) {
  EXPECT_EQ(stages({{{"dfile", "s.paz"}, {"iunits", "a<b"}, {"ounits", "c&d"}}}, {{"fc", "1"}}),
            in_root(in_stage("1", paz("a&lt;b", "c&amp;d") + gain("2"))));
}

TEST(StageTexts, AChangeOfUnitsWithoutAFilterIsOneWithoutPoles) {
  EXPECT_EQ(stages({{{"iunits", "m"}, {"ounits", "V"}}}),
            in_root(in_stage("1", "   <PolesZeros>\n" + units("m", "V") +
                                      "    <PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>\n"
                                      "    <NormalizationFactor>1</NormalizationFactor>\n"
                                      "    <NormalizationFrequency>1</NormalizationFrequency>\n"
                                      "   </PolesZeros>\n" +
                                      gain("2"))));
}

TEST(StageTexts, ADigitalStageWithoutAFilterHasNoCoefficients) {
  EXPECT_EQ(stages({{{"samprate", "100"}, {"decifac", "2"}, {"iunits", "V"}, {"ounits", "counts"}}}, {{"fc", "1"}}),
            in_root(in_stage("1", "   <Coefficients>\n" + units("V", "counts") +
                                      "    <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>\n"
                                      "   </Coefficients>\n" +
                                      decimation("200", "2", "0", "0") + gain("2"))));
}

TEST(StageTexts, ADigitalFilterIsDelayedByHalfItsLengthUnlessTheRowSaysMore) {
  EXPECT_EQ(stages({{{"dfile", "f.fir"}, {"samprate", "50"}, {"decifac", "4"}}}),
            in_root(in_stage("1", fir("m", "m") + decimation("200", "4", "0.005", "0.005") + gain("2"))));
  EXPECT_EQ(stages({{{"dfile", "f.fir"}, {"leadfac", "0.25"}}}),
            in_root(in_stage("1", fir("m", "m") + decimation("200", "1", "0.005", "0.25") + gain("2"))))
      << "the rate of the file where the row has none";
}

TEST(StageTexts, ADelayOfNothingInTheFileIsOne) {
  EXPECT_EQ(stages({{{"dfile", "early.fir"}}}),
            in_root(in_stage("1", fir("m", "m") + decimation("200", "1", "0", "0") + gain("2"))));
}

TEST(StageTexts, AFilterWhoseDelayIsNotKnownHasNone) {
  const std::vector<std::string> told = {"note filters whose delay is not known: written as 0: 1 (stage:1 (AAK BHZ))"};
  EXPECT_EQ(stages({{{"dfile", "odd.fir"}}}, {{"fc", "1"}, {"units", "m"}}, told),
            in_root(in_stage("1", odd_fir("m", "m") + decimation("200", "1", "0", "0") + gain("2"))));
  EXPECT_THAT(stages({{{"dfile", "back.fir"}}}, {{"fc", "1"}, {"units", "m"}}, told),
              testing::HasSubstr(decimation("200", "1", "0", "0")))
      << "a filter with denominators is not centred";
}

TEST(StageTexts, WhatIsWorkedOutHasTheDigitsThatItIsWorkedOutOf) {
  EXPECT_EQ(stages({{{"dfile", "f.fir"}, {"samprate", "33.3333333"}, {"decifac", "3"}, {"gcalib", "1.1"}}},
                   {{"calper", "14.285714"}, {"units", "m"}}),
            in_root(in_stage("1", fir("m", "m") + decimation("100", "3", "0.01", "0.01") +
                                      "   <StageGain>\n    <Value>2.2</Value>\n    <Frequency>0.07</Frequency>\n"
                                      "   </StageGain>\n")));
}

TEST(StageTexts, ARateOfOneTakesNoDigitsFromADelay) {
  EXPECT_THAT(stages({{{"dfile", "f.fir"}, {"samprate", "1"}, {"decifac", "3"}}}),
              testing::HasSubstr(decimation("3", "3", "0.3333333333333333", "0.3333333333333333")));
}

// Each has the first stage with the unit of the calibration, not the one that came out of the last.
TEST(StageTexts, TheChainsOfTwoCodesBeginAnew) {
  MadeRows rows = {{"snetsta", {}}, {"snetsta", {{"snet", "XX"}}}, {"site", {}}, {"sitechan", {}}};
  rows.push_back({"calibration", {{"fc", "1"}, {"units", "m"}}});
  rows.push_back({"stage", {{"stageid", "1"}, {"gnom", "2"}, {"ounits", "V"}, {"dir", "resp"}, {"dfile", "s.paz"}}});
  const MadeDatabase made(rows, kFiles);
  const std::string tree =
      document("", "net - CATEGORIZED_GROUP snet\n", "",
               group("net", "Net", "code - string snet\n", "stage - CATEGORIZED_BY_NUMBER stageid\n") +
                   group("stage", "Stage", "number - integer stageid\n", "filter - STAGE\n"));
  const std::string text = write_document(made, tree).text;
  EXPECT_THAT(text, testing::HasSubstr("XX"));
  EXPECT_THAT(text, testing::Not(testing::HasSubstr("<InputUnits><Name>V<")));
}

// --- of the files of instruments -------------------------------------------------------------------------------------

const FieldTexts kWhole = {{"resp/all",
                            "theoretical 1 i paz\n9\n1\n-1 0\n0\n"
                            "theoretical 2 i fir\n200\n3\n0.25 0\n0.5 0\n0.25 0\n0\n"},
                           {"resp/table", "theoretical 1 i fap\n2\n1 4 0 0.5 0\n2 4 0 0 0\n"}};

// The stages of BHZ and BHE, whose instruments name one file and have their calibrations at 1 Hz and at 2 Hz.
std::string stages_of_instruments(const char* file) {
  MadeRows rows = {{"snetsta", {}}, {"site", {}}};
  for (const auto& [chan, inid, period] : {std::tuple{"BHZ", "1", "1"}, std::tuple{"BHE", "2", "0.5"}}) {
    rows.push_back({"sitechan", {{"chan", chan}}});
    rows.push_back({"sensor", {{"chan", chan}, {"inid", inid}}});
    rows.push_back({"instrument",
                    {{"inid", inid},
                     {"ncalib", "2"},
                     {"ncalper", period},
                     {"samprate", "200"},
                     {"dir", "resp"},
                     {"dfile", file}}});
  }
  const MadeDatabase made(rows, kWhole);
  const std::string tree =
      document("", "chan - CATEGORIZED_GROUP chan\n", "",
               group("chan", "Chan", "code - string chan\n", "stage - CATEGORIZED_BY_NUMBER chain.number\n") +
                   group("stage", "Stage", "number - integer chain.number\n", "filter - STAGE\n"));
  return write_document(made, tree).text;
}

TEST(StageTexts, EachGroupOfAnInstrumentsFileIsAStage) {
  const std::string text = stages_of_instruments("all");
  EXPECT_THAT(text, testing::HasSubstr("<FIR>"));
  EXPECT_THAT(text, testing::HasSubstr("<PolesZeros>"));
}

// |i w + 1|
TEST(StageTexts, TheFileOfAnInstrumentIsNormalizedForEachCalibration) {
  const std::string text = stages_of_instruments("all");
  EXPECT_THAT(text, testing::HasSubstr("<NormalizationFactor>6.36"));
  EXPECT_THAT(text, testing::HasSubstr("<NormalizationFactor>12.6"));
}

TEST(StageTexts, ANormalizedTableHasItsErrorsInTheSameMeasure) {
  EXPECT_THAT(stages_of_instruments("table"),
              testing::HasSubstr("<Amplitude minusError=\"0.125\" plusError=\"0.125\">1</Amplitude>"));
}

TEST(StageTexts, UnitsHaveTheSpellingOfTheParameterFile) {
  const std::string options = "unit_spellings names\nnames &Arr{\nM/S m/s\nCOUNTS count\n}\n";
  EXPECT_EQ(stages({{{"dfile", "s.paz"}, {"iunits", "M/S"}, {"ounits", "V"}}}, {{"fc", "1"}}, {}, options),
            in_root(in_stage("1", paz("m/s", "V") + gain("2"))));
  EXPECT_EQ(stages({{{"dfile", "f.fir"}, {"iunits", "V"}, {"ounits", "COUNTS"}}}, {{"fc", "1"}}, {}, options),
            in_root(in_stage("1", fir("V", "count") + decimation("200", "1", "0.005", "0.005") + gain("2"))));
}

TEST(StageTexts, CoefficientsWhereTheParameterFileAsksForThem) {
  EXPECT_THAT(stages({{{"dfile", "f.fir"}}}, {{"fc", "1"}}, {}, "fir_filters Coefficients\n"),
              testing::HasSubstr("<Numerator number=\"3\">0.25</Numerator>\n   </Coefficients>"));
  EXPECT_THAT(stages({{{"dfile", "f.fir"}}}, {{"fc", "1"}}, {}, "fir_filters FIR\n"), testing::HasSubstr("<FIR>"));
}

TEST(StageTexts, StagesAreCountedInTheirChain) {
  const std::string tree = document("", "stage - CATEGORIZED_BY_NUMBER chain.number\n", "",
                                    group("stage", "Stage", "number - integer chain.number\n", "filter - STAGE\n"));
  const MadeDatabase made({{"snetsta", {}},
                           {"site", {}},
                           {"sitechan", {}},
                           {"calibration", {{"fc", "1"}}},
                           {"stage", {{"stageid", "1"}, {"gnom", "2"}, {"ounits", "V"}}},
                           {"stage", {{"stageid", "4"}, {"gnom", "2"}, {"iunits", "V"}}}});
  EXPECT_THAT(write_document(made, tree).text, testing::HasSubstr("<Stage number=\"2\">"));
}

TEST(StageTexts, OneStageOfAChainHasTheUnitsOfTheOthersThoughTheyAreNotWritten) {
  MadeRows rows = {{"snetsta", {}}, {"site", {}}, {"sitechan", {}}, {"calibration", {{"fc", "1"}}}};
  rows.push_back({"stage", {{"stageid", "1"}, {"gnom", "2"}, {"ounits", "V"}}});
  rows.push_back({"stage", {{"stageid", "2"}, {"gnom", "2"}, {"dir", "resp"}, {"dfile", "s.paz"}}});
  const MadeDatabase made(rows, kFiles);
  const std::string tree = document("", "stage - CATEGORIZED_BY_NUMBER 0 - stageid\n", "",
                                    group("stage", "Stage", "number - integer stageid\n", "filter - STAGE\n"));
  EXPECT_THAT(write_document(made, tree).text,
              testing::StartsWith(" <Root>\n" + in_stage("2", paz("V", "V") + gain("2"))));
}

}  // namespace
}  // namespace triglub_test
