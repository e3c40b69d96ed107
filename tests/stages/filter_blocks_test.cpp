#include "stages/filter_blocks.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace triglub {
namespace {

constexpr Units kUnits = {"m/s", "V"};

// The record of the file, as its group has it.
std::string block_of(ResponseType type, void* record, std::size_t depth = 0, bool is_fir_allowed = true) {
  ResponseGroup group;
  group.type = type;
  group.filter = record;
  StageFilter filter{&group};
  if (type == RESPONSE_FIR) filter.symmetry = symmetry_of(filter.fir());
  return filter_block(filter, is_fir_allowed, kUnits, depth);
}

constexpr const char* kUnitLines =
    " <InputUnits><Name>m/s</Name></InputUnits>\n"
    " <OutputUnits><Name>V</Name></OutputUnits>\n";

std::string fir_block(const std::string& symmetry, const std::vector<std::string>& coefficients) {
  std::string text = "<FIR>\n" + std::string(kUnitLines) + " <Symmetry>" + symmetry + "</Symmetry>\n";
  for (std::size_t i = 0; i < coefficients.size(); ++i) {
    text +=
        " <NumeratorCoefficient i=\"" + std::to_string(i + 1) + "\">" + coefficients[i] + "</NumeratorCoefficient>\n";
  }
  return text + "</FIR>\n";
}

TEST(FilterBlocks, PolesAndZerosAreNumberedOnFromTheZeros) {
  Paz paz;
  paz.normalization = 6.0077e7;
  paz.normalization_frequency = 0.02;
  paz.zeros = {{0, 0}};
  paz.zero_errors = {{0, 0}};
  paz.poles = {{-0.037, 0.037}, {-251.33, 0}};
  paz.pole_errors = {{0, 0}, {-0.5, 0}};
  EXPECT_EQ(block_of(RESPONSE_PAZ, &paz, 2),
            "  <PolesZeros>\n"
            "   <InputUnits><Name>m/s</Name></InputUnits>\n"
            "   <OutputUnits><Name>V</Name></OutputUnits>\n"
            "   <PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>\n"
            "   <NormalizationFactor>60077000</NormalizationFactor>\n"
            "   <NormalizationFrequency>0.02</NormalizationFrequency>\n"
            "   <Zero number=\"0\">\n"
            "    <Real>0</Real>\n"
            "    <Imaginary>0</Imaginary>\n"
            "   </Zero>\n"
            "   <Pole number=\"1\">\n"
            "    <Real>-0.037</Real>\n"
            "    <Imaginary>0.037</Imaginary>\n"
            "   </Pole>\n"
            "   <Pole number=\"2\">\n"
            "    <Real minusError=\"0.5\" plusError=\"0.5\">-251.33</Real>\n"
            "    <Imaginary>0</Imaginary>\n"
            "   </Pole>\n"
            "  </PolesZeros>\n");
}

TEST(FilterBlocks, ARecursiveFilterIsCoefficientsNumberedFromOne) {
  Iir fir;
  fir.numerators = {0.25, -1e-9};
  fir.numerator_errors = {0, 0.125};
  fir.denominators = {3};
  EXPECT_EQ(block_of(RESPONSE_IIR, &fir),
            "<Coefficients>\n"
            " <InputUnits><Name>m/s</Name></InputUnits>\n"
            " <OutputUnits><Name>V</Name></OutputUnits>\n"
            " <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>\n"
            " <Numerator number=\"1\">0.25</Numerator>\n"
            " <Numerator minusError=\"0.125\" plusError=\"0.125\" number=\"2\">-1e-09</Numerator>\n"
            " <Denominator number=\"1\">3</Denominator>\n"
            "</Coefficients>\n");
}

struct FirCase {
  const char* what;
  std::vector<double> numerators;
  const char* symmetry;
  std::vector<std::string> written;
};

TEST(FilterBlocks, AFilterOfFiniteResponseIsWrittenByItsSymmetry) {
  const FirCase cases[] = {
      {"odd", {0.25, 0.5, 0.25}, "ODD", {"0.25", "0.5"}},
      {"even", {0.1, 0.4, 0.4, 0.1}, "EVEN", {"0.1", "0.4"}},
      {"one", {1}, "ODD", {"1"}},
      {"two", {0.5, 0.5}, "EVEN", {"0.5"}},
      {"none", {0.1, 0.2, 0.3}, "NONE", {"0.1", "0.2", "0.3"}},
      {"in the last bit not", {0.1, 0.5, 0.10000000000000002}, "NONE", {"0.1", "0.5", "0.10000000000000002"}},
      {"of other signs", {-0.5, 0, 0.5}, "NONE", {"-0.5", "0", "0.5"}},
  };
  for (const FirCase& c : cases) {
    Fir fir;
    fir.numerators = c.numerators;
    fir.numerator_errors.resize(c.numerators.size());
    EXPECT_EQ(block_of(RESPONSE_FIR, &fir), fir_block(c.symmetry, c.written)) << c.what;
  }
}

TEST(FilterBlocks, AFilterOfFiniteResponseThatHasMoreIsCoefficients) {
  Fir fir;
  fir.numerators = {0.5, 0.5};
  fir.numerator_errors = {0, 0};
  const std::string head =
      "<Coefficients>\n" + std::string(kUnitLines) + " <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>\n";
  const std::string plain = " <Numerator number=\"1\">0.5</Numerator>\n <Numerator number=\"2\">0.5</Numerator>\n";
  EXPECT_EQ(block_of(RESPONSE_FIR, &fir, 0, false), head + plain + "</Coefficients>\n") << "where it is asked for";
  fir.denominators = {1};
  EXPECT_EQ(block_of(RESPONSE_FIR, &fir),
            head + plain + " <Denominator number=\"1\">1</Denominator>\n</Coefficients>\n");
  fir.denominators = {};
  fir.numerator_errors = {0, 0.5};
  EXPECT_EQ(block_of(RESPONSE_FIR, &fir),
            head +
                " <Numerator number=\"1\">0.5</Numerator>\n"
                " <Numerator minusError=\"0.5\" plusError=\"0.5\" number=\"2\">0.5</Numerator>\n</Coefficients>\n");
  fir = {};
  EXPECT_EQ(block_of(RESPONSE_FIR, &fir), head + "</Coefficients>\n") << "there is no FIR without a coefficient";
}

TEST(FilterBlocks, ATableIsAListWithPhasesOfOneTurn) {
  Fap fap;
  fap.frequencies = {0.1, 1, 10};
  fap.amplitudes = {0.5, 1, 0.25};
  fap.phases = {-360, 630, -730.5};
  fap.amplitude_errors = {0, 0.125, 0};
  fap.phase_errors = {0, 0, 2};
  for (const ResponseType type : {RESPONSE_FAP, RESPONSE_FAP2}) {
    EXPECT_EQ(block_of(type, &fap),
              "<ResponseList>\n" + std::string(kUnitLines) +
                  " <ResponseListElement>\n  <Frequency>0.1</Frequency>\n  <Amplitude>0.5</Amplitude>\n"
                  "  <Phase>-360</Phase>\n </ResponseListElement>\n"
                  " <ResponseListElement>\n  <Frequency>1</Frequency>\n"
                  "  <Amplitude minusError=\"0.125\" plusError=\"0.125\">1</Amplitude>\n"
                  "  <Phase>270</Phase>\n </ResponseListElement>\n"
                  " <ResponseListElement>\n  <Frequency>10</Frequency>\n  <Amplitude>0.25</Amplitude>\n"
                  "  <Phase minusError=\"2\" plusError=\"2\">-10.5</Phase>\n </ResponseListElement>\n"
                  "</ResponseList>\n");
  }
}

TEST(FilterBlocks, DecimationAndGainFollow) {
  StageFacts facts;
  facts.gain = 1500.5;
  facts.frequency = 0.1;
  facts.input_rate = 200;
  facts.factor = 5;
  facts.delay = 0.005;
  facts.correction = -0.25;
  std::string text = "before\n";
  append_decimation(facts, 1, &text);
  append_gain(facts, 1, &text);
  EXPECT_EQ(text,
            "before\n"
            " <Decimation>\n"
            "  <InputSampleRate>200</InputSampleRate>\n"
            "  <Factor>5</Factor>\n"
            "  <Offset>0</Offset>\n"
            "  <Delay>0.005</Delay>\n"
            "  <Correction>-0.25</Correction>\n"
            " </Decimation>\n"
            " <StageGain>\n"
            "  <Value>1500.5</Value>\n"
            "  <Frequency>0.1</Frequency>\n"
            " </StageGain>\n");
}

}  // namespace
}  // namespace triglub
