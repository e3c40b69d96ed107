#include "stages/filter_blocks.h"

#include <gtest/gtest.h>

#include <string>

namespace triglub {
namespace {

constexpr Units kUnits = {"m/s", "V"};

TEST(FilterBlocks, PolesAndZerosAreNumberedOnFromTheZeros) {
  Paz paz;
  paz.normalization = 6.0077e7;
  paz.normalization_frequency = 0.02;
  paz.zeros = {{0, 0}};
  paz.zero_errors = {{0, 0}};
  paz.poles = {{-0.037, 0.037}, {-251.33, 0}};
  paz.pole_errors = {{0, 0}, {0.5, 0}};
  EXPECT_EQ(poles_zeros_block(paz, kUnits, 2),
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

TEST(FilterBlocks, CoefficientsAreNumberedFromOne) {
  Fir fir;
  fir.numerators = {0.25, -1e-9};
  fir.numerator_errors = {0, 0.125};
  fir.denominators = {3};
  EXPECT_EQ(coefficients_block(fir, kUnits, 0),
            "<Coefficients>\n"
            " <InputUnits><Name>m/s</Name></InputUnits>\n"
            " <OutputUnits><Name>V</Name></OutputUnits>\n"
            " <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>\n"
            " <Numerator number=\"1\">0.25</Numerator>\n"
            " <Numerator minusError=\"0.125\" plusError=\"0.125\" number=\"2\">-1e-09</Numerator>\n"
            " <Denominator number=\"1\">3</Denominator>\n"
            "</Coefficients>\n");
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
