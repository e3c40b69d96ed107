#include "reference/edition2/stages.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reference/edition2/made_tables.h"

namespace triglub_reference::edition2 {

namespace {

// Rows of one epoch, and the files that they name.
struct Made {
  Row calibration = {{"units", "m/s"}, {"calper", "20.000000"}};
  std::vector<Row> stages;
  ResponseFiles files = {};

  Chain chain() const {
    Chain chain;
    for (const Row& stage : stages) {
      Record record = {};
      record[CALIBRATION] = &calibration;
      record[STAGE] = &stage;
      chain.push_back(record);
    }
    return chain;
  }
  bool can_be_written() const { return edition2::can_be_written(chain(), files); }
  std::string text(std::size_t place, const Tree& tree = {}) const {
    Request request;
    request.tables.files = files;
    request.tree = tree;
    return stage_text(chain(), place, request, 0);
  }
};

const ResponseFiles kFiles = {{"paz", {{{"paz", {"2", "0.5"}, {{"-1", "2", "0.5", "0"}}, {{"0", "-0"}}}}}},
                              {"odd", {{{"fir", {"100"}, {{"0.25"}, {"0.5"}, {"0.25"}}, {}}}}},
                              {"even", {{{"fir", {"100", "7"}, {{"0.5"}, {"0.5"}}, {}}}}},
                              {"none", {{{"fir", {"100", "-1"}, {{"1"}, {"-1"}}, {}}}}},
                              {"errors", {{{"fir", {"100"}, {{"1", "-0.1"}, {"1"}}, {}}}}},
                              {"iir", {{{"iir", {"100"}, {{"1"}}, {{"1"}, {"0.5", "0"}}}}}},
                              {"fap2", {{{"fap2", {}, {{"1", "2", "-540", "0", "3"}, {"2", "4", "360"}}, {}}}}},
                              {"two", {{{"paz", {"2"}, {}, {}}, {"paz", {"2"}, {}, {}}}}},
                              {"other", {{{"pazzle", {"2"}, {}, {}}}}},
                              {"damaged", {{{"paz", {"2"}, {}, {}}}, false}},
                              {"stopped", {{{"fir", {"0"}, {{"1"}}, {}}}}}};

Row stage(Row changed) {
  Row row = {{"stageid", "1"}, {"gnom", "1500"}, {"iunits", "m/s"}, {"ounits", "V"}};
  for (const auto& [field, value] : changed) row[field] = value;
  return row;
}

struct Fault {
  const char* field;
  const char* value;
  bool is_broken;
};

TEST(PlainStages, AFaultOfAStageBreaksItsChain) {
  constexpr Fault faults[] = {{"gnom", "1500", false},
                              {"gnom", "-1", true},
                              {"gnom", "0", true},
                              {"gnom", "-2", false},
                              {"gcalib", "0", true},
                              {"gcalib", "-1.000000", false},
                              {"stageid", "-1", true},
                              {"stageid", "0", true},
                              {"dfile", "paz", false},
                              {"dfile", "gone", true},
                              {"dfile", "two", true},
                              {"dfile", "other", true},
                              {"dfile", "damaged", true},
                              {"dfile", "stopped", true},
                              {"dfile", "odd", false},
                              {"decifac", "0", false},
                              {"samprate", "0", true},
                              {"samprate", "20", false},
                              {"samprate", "-1.0000000", false}};
  for (const Fault& fault : faults) {
    const Made made = {.stages = {stage({{fault.field, fault.value}})}, .files = kFiles};
    EXPECT_EQ(made.can_be_written(), !fault.is_broken) << fault.field << " " << fault.value;
  }
}

TEST(PlainStages, ADigitalStageNeedsAFactor) {
  EXPECT_FALSE(Made({.stages = {stage({{"samprate", "20"}, {"decifac", "0"}})}}).can_be_written());
  EXPECT_TRUE(Made({.stages = {stage({{"samprate", "20"}, {"decifac", "-1"}})}}).can_be_written());
}

TEST(PlainStages, GainsNeedAFrequency) {
  const std::vector<Row> stages = {stage({})};
  EXPECT_FALSE(Made({.calibration = {}, .stages = stages}).can_be_written());
  EXPECT_FALSE(Made({.calibration = {{"calper", "0"}}, .stages = stages}).can_be_written());
  EXPECT_TRUE(Made({.calibration = {{"fc", "0"}}, .stages = stages}).can_be_written());
}

struct Gap {
  Row before;
  Row behind;
  bool chains;
};

TEST(PlainStages, AGapChainsWhereUnitsAndRatesGoOn) {
  const Row to_counts = {{"ounits", "counts"}};
  const Row digital_to_counts = {{"ounits", "counts"}, {"samprate", "100"}};
  const std::vector<Gap> gaps = {
      {to_counts, {{"iunits", "COUNTS"}}, true},
      {to_counts, {{"iunits", "V"}}, false},
      {to_counts, {{"iunits", "-"}}, false},
      {{{"iunits", "V"}, {"ounits", "-"}}, {{"iunits", "v"}}, true},
      {to_counts, {{"iunits", "counts"}, {"samprate", "100"}}, true},
      {digital_to_counts, {{"iunits", "counts"}}, false},
      {digital_to_counts, {{"iunits", "counts"}, {"samprate", "50"}, {"decifac", "2"}}, true},
      {digital_to_counts, {{"iunits", "counts"}, {"samprate", "50.0001"}, {"decifac", "2"}}, false},
      {digital_to_counts, {{"iunits", "counts"}, {"dfile", "odd"}}, true},
      {digital_to_counts, {{"iunits", "counts"}, {"dfile", "fap2"}}, false},
  };
  for (const Gap& gap : gaps) {
    Row behind = gap.behind;
    behind["stageid"] = "3";
    const Made made = {.stages = {stage(gap.before), stage(behind)}, .files = kFiles};
    EXPECT_EQ(made.can_be_written(), gap.chains) << &gap - gaps.data();
  }
}

TEST(PlainStages, AGapAtTheBeginChainsWhereTheCalibrationIsForTheSameUnits) {
  EXPECT_TRUE(Made({.stages = {stage({{"stageid", "2"}, {"iunits", "M/S"}})}}).can_be_written());
  EXPECT_FALSE(Made({.stages = {stage({{"stageid", "2"}, {"iunits", "V"}})}}).can_be_written());
  EXPECT_FALSE(Made({.calibration = {{"fc", "1"}}, .stages = {stage({{"stageid", "2"}})}}).can_be_written());
  const Row unknown = {{"stageid", "2"}, {"iunits", "unknown"}};
  EXPECT_FALSE(Made({.calibration = {{"fc", "1"}}, .stages = {stage(unknown)}}).can_be_written());
}

constexpr const char* kUnits =
    "  <InputUnits><Name>m/s</Name></InputUnits>\n"
    "  <OutputUnits><Name>V</Name></OutputUnits>\n";

std::string named(std::string text) {
  const std::string mark = "UNITS\n";
  for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark)) {
    std::string units = kUnits;
    units.erase(units.find("  <O"), 1).erase(0, 1);
    text.replace(at, mark.size(), units);
  }
  return text;
}

constexpr const char* kGain = "<StageGain>\n <Value>1500</Value>\n <Frequency>0.05</Frequency>\n</StageGain>\n";

std::string decimation(const char* rate, const char* delay) {
  return std::string("<Decimation>\n <InputSampleRate>") + rate +
         "</InputSampleRate>\n <Factor>1</Factor>\n <Offset>0</Offset>\n <Delay>" + delay + "</Delay>\n <Correction>" +
         delay + "</Correction>\n</Decimation>\n";
}

struct Written {
  const char* file;
  std::string filter;
};

TEST(PlainStages, EachTypeOfFileHasItsForm) {
  const std::vector<Written> all = {
      {"paz",
       "<PolesZeros>\nUNITS\n <PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>\n"
       " <NormalizationFactor>2</NormalizationFactor>\n"
       " <NormalizationFrequency>0.5</NormalizationFrequency>\n"
       " <Zero number=\"0\">\n  <Real>0</Real>\n  <Imaginary>0</Imaginary>\n </Zero>\n"
       " <Pole number=\"1\">\n  <Real minusError=\"0.5\" plusError=\"0.5\">-1</Real>\n"
       "  <Imaginary>2</Imaginary>\n </Pole>\n</PolesZeros>\n"},
      {"odd",
       "<FIR>\nUNITS\n <Symmetry>ODD</Symmetry>\n"
       " <NumeratorCoefficient i=\"1\">0.25</NumeratorCoefficient>\n"
       " <NumeratorCoefficient i=\"2\">0.5</NumeratorCoefficient>\n</FIR>\n" +
           decimation("100", "0.01")},
      {"even",
       "<FIR>\nUNITS\n <Symmetry>EVEN</Symmetry>\n"
       " <NumeratorCoefficient i=\"1\">0.5</NumeratorCoefficient>\n</FIR>\n" +
           decimation("100", "0.07")},
      {"none",
       "<FIR>\nUNITS\n <Symmetry>NONE</Symmetry>\n"
       " <NumeratorCoefficient i=\"1\">1</NumeratorCoefficient>\n"
       " <NumeratorCoefficient i=\"2\">-1</NumeratorCoefficient>\n</FIR>\n" +
           decimation("100", "0")},
      {"errors",
       "<Coefficients>\nUNITS\n <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>\n"
       " <Numerator minusError=\"0.1\" plusError=\"0.1\" number=\"1\">1</Numerator>\n"
       " <Numerator number=\"2\">1</Numerator>\n</Coefficients>\n" +
           decimation("100", "0.005")},
      {"iir",
       "<Coefficients>\nUNITS\n <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>\n"
       " <Numerator number=\"1\">1</Numerator>\n <Denominator number=\"1\">1</Denominator>\n"
       " <Denominator number=\"2\">0.5</Denominator>\n</Coefficients>\n" +
           decimation("100", "0")},
      {"fap2",
       "<ResponseList>\nUNITS\n <ResponseListElement>\n  <Frequency>1</Frequency>\n  <Amplitude>2</Amplitude>\n"
       "  <Phase minusError=\"3\" plusError=\"3\">-180</Phase>\n </ResponseListElement>\n"
       " <ResponseListElement>\n  <Frequency>2</Frequency>\n  <Amplitude>4</Amplitude>\n"
       "  <Phase>360</Phase>\n </ResponseListElement>\n</ResponseList>\n"},
  };
  for (const Written& written : all) {
    const Made made = {.stages = {stage({{"dfile", written.file}})}, .files = kFiles};
    EXPECT_EQ(made.text(0), named(written.filter) + kGain) << written.file;
  }
}

TEST(PlainStages, WithoutAFileTheUnitsAreCarried) {
  EXPECT_EQ(Made({.stages = {stage({{"ounits", "m/s"}})}}).text(0), kGain);
  EXPECT_EQ(Made({.stages = {stage({})}}).text(0),
            named("<PolesZeros>\nUNITS\n <PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>\n"
                  " <NormalizationFactor>1</NormalizationFactor>\n"
                  " <NormalizationFrequency>0.05</NormalizationFrequency>\n</PolesZeros>\n") +
                kGain);
  EXPECT_EQ(Made({.stages = {stage({{"samprate", "20"}})}}).text(0),
            named("<Coefficients>\nUNITS\n <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>\n"
                  "</Coefficients>\n") +
                decimation("20", "0") + kGain);
}

std::string between(const std::string& text, const std::string& begin, const std::string& end) {
  const std::size_t from = text.find(begin) + begin.size();
  return text.substr(from, text.find(end, from) - from);
}

std::string units_of(const Made& made, std::size_t place, const Tree& tree = {}) {
  const std::string text = made.text(place, tree);
  return between(text, "<InputUnits><Name>", "<") + " " + between(text, "<OutputUnits><Name>", "<");
}

TEST(PlainStages, UnitsAreTakenFromTheStageBefore) {
  const Row bare = {{"iunits", "-"}, {"ounits", "-"}, {"samprate", "20"}};
  const Made made = {.stages = {stage(bare), stage({{"samprate", "20"}}), stage(bare)}};
  EXPECT_EQ(units_of(made, 0), "m/s m/s");
  EXPECT_EQ(units_of(made, 2), "V V");
  EXPECT_EQ(units_of({.calibration = {{"fc", "1"}}, .stages = {stage(bare)}}, 0), "unknown unknown");
}

TEST(PlainStages, UnitsAreSpelledAsTheTreeHasThem) {
  Tree tree;
  tree.unit_spellings = {{"V", "<volt>"}};
  EXPECT_EQ(units_of({.stages = {stage({{"samprate", "20"}})}}, 0, tree), "m/s &lt;volt&gt;");
}

TEST(PlainStages, FiltersAreCoefficientsWhereTheTreeSaysSo) {
  Tree tree;
  tree.fir_filters = "Coefficients";
  const Made made = {.stages = {stage({{"dfile", "odd"}})}, .files = kFiles};
  EXPECT_NE(made.text(0, tree).find("<Numerator number=\"3\">0.25</Numerator>"), std::string::npos);
}

struct Computed {
  Row row;
  const char* tag;
  const char* text;
};

TEST(PlainStages, NumbersHaveTheDigitsOfWhatTheyAreMadeOf) {
  const std::vector<Computed> all = {
      {{{"gnom", "1500"}, {"gcalib", "1.000000"}}, "Value", "1500"},
      {{{"gnom", "1234.5"}, {"gcalib", "0.999321"}}, "Value", "1233.6618"},
      {{{"gnom", "1"}, {"gcalib", "0.999321"}}, "Value", "0.999321"},
      {{{"samprate", "33.3333333"}, {"decifac", "3"}}, "InputSampleRate", "100"},
      {{{"samprate", "33.3333333"}}, "InputSampleRate", "33.3333333"},
      {{{"samprate", "1"}, {"dfile", "odd"}}, "Delay", "1"},
      {{{"samprate", "33.3333333"}, {"decifac", "3"}, {"dfile", "odd"}}, "Delay", "0.01"},
      {{{"dfile", "odd"}, {"leadfac", "0.1234567"}}, "Correction", "0.1234567"},
  };
  for (const Computed& computed : all) {
    const Made made = {.stages = {stage(computed.row)}, .files = kFiles};
    const std::string tag = computed.tag;
    EXPECT_EQ(between(made.text(0), "<" + tag + ">", "<"), computed.text) << &computed - all.data();
  }
}

TEST(PlainStages, TheFrequencyIsThatOfTheGainsOrOfTheCalibration) {
  const auto frequency = [](const Row& calibration) {
    return between(Made({.calibration = calibration, .stages = {stage({})}}).text(0), "<Frequency>", "<");
  };
  EXPECT_EQ(frequency({{"calper", "14.285714"}}), "0.07");
  EXPECT_EQ(frequency({{"calper", "1"}, {"fc", "0.02"}}), "0.02");
}

}  // namespace

}  // namespace triglub_reference::edition2
