#include <gtest/gtest.h>

#include <string>

#include "resp_helper.h"

namespace {

TEST(PazAsXml, WritesAllZerosBeforeAllPolesEachNumberedFromZero) {
  Paz paz;
  paz.normalization = 60077000;
  paz.normalization_frequency = 0.02;
  paz.zeros = {{-0.037, 0.037}, {0, 0}};
  paz.zero_errors = {{0.001, 0.002}, {0, 0}};
  paz.poles = {{-251.33, -1e-10}};
  paz.pole_errors = {{0.5, 0}};
  EXPECT_EQ(paz_as_xml(&paz, "M/S", "V"),
            "          <PolesZeros>\n"
            "           <InputUnits><Name>M/S</Name></InputUnits>\n"
            "           <OutputUnits><Name>V</Name></OutputUnits>\n"
            "           <PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>\n"
            "           <NormalizationFactor>6.0077e+07</NormalizationFactor>\n"
            "           <NormalizationFrequency>0.02</NormalizationFrequency>\n"
            "           <Zero number=\"0\">\n"
            "            <Real minusError=\"0.001\" plusError=\"0.001\">-0.037</Real>\n"
            "            <Imaginary minusError=\"0.002\" plusError=\"0.002\">0.037</Imaginary>\n"
            "           </Zero>\n"
            "           <Zero number=\"1\">\n"
            "            <Real minusError=\"0\" plusError=\"0\">0</Real>\n"
            "            <Imaginary minusError=\"0\" plusError=\"0\">0</Imaginary>\n"
            "           </Zero>\n"
            "           <Pole number=\"0\">\n"
            "            <Real minusError=\"0.5\" plusError=\"0.5\">-251.33</Real>\n"
            "            <Imaginary minusError=\"0\" plusError=\"0\">-1e-10</Imaginary>\n"
            "           </Pole>\n"
            "          </PolesZeros>\n");
}

TEST(PazAsXml, WritesPolesAlone) {
  Paz paz;
  paz.poles = {{-1, 0}, {-2, 0}};
  paz.pole_errors = {{0, 0}, {0, 0}};
  EXPECT_EQ(paz_as_xml(&paz, "", ""),
            "          <PolesZeros>\n"
            "           <InputUnits><Name></Name></InputUnits>\n"
            "           <OutputUnits><Name></Name></OutputUnits>\n"
            "           <PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>\n"
            "           <NormalizationFactor>1</NormalizationFactor>\n"
            "           <NormalizationFrequency>1</NormalizationFrequency>\n"
            "           <Pole number=\"0\">\n"
            "            <Real minusError=\"0\" plusError=\"0\">-1</Real>\n"
            "            <Imaginary minusError=\"0\" plusError=\"0\">0</Imaginary>\n"
            "           </Pole>\n"
            "           <Pole number=\"1\">\n"
            "            <Real minusError=\"0\" plusError=\"0\">-2</Real>\n"
            "            <Imaginary minusError=\"0\" plusError=\"0\">0</Imaginary>\n"
            "           </Pole>\n"
            "          </PolesZeros>\n");
}

TEST(FirAsXml, WritesNumeratorsAndDenominators) {
  Fir fir;
  fir.numerators = {0.123456789, 1e-10};
  fir.numerator_errors = {0.5, 0};
  fir.denominators = {1};
  fir.denominator_errors = {0.25};
  EXPECT_EQ(fir_as_xml(&fir, "V", "COUNTS"),
            "          <Coefficients>\n"
            "           <InputUnits><Name>V</Name></InputUnits>\n"
            "           <OutputUnits><Name>COUNTS</Name></OutputUnits>\n"
            "           <CfTransferFunctionType>DIGITAL<!-- not implemented --></CfTransferFunctionType>\n"
            "           <Numerator minusError=\"0.5\" plusError=\"0.5\">0.123457</Numerator>\n"
            "           <Numerator minusError=\"0\" plusError=\"0\">1e-10</Numerator>\n"
            "           <Denominator minusError=\"0.25\" plusError=\"0.25\">1</Denominator>\n"
            "          </Coefficients>\n");
}

TEST(FirAsXml, WritesNoCoefficientsWhenThereAreNone) {
  Fir fir;
  EXPECT_EQ(fir_as_xml(&fir, "V", "V"),
            "          <Coefficients>\n"
            "           <InputUnits><Name>V</Name></InputUnits>\n"
            "           <OutputUnits><Name>V</Name></OutputUnits>\n"
            "           <CfTransferFunctionType>DIGITAL<!-- not implemented --></CfTransferFunctionType>\n"
            "          </Coefficients>\n");
}

TEST(FilterXml, InsertsUnitsAsTheyAre) {
  Fir fir;
  const std::string fir_text = fir_as_xml(&fir, "A&B", "<C>");
  EXPECT_NE(fir_text.find("<InputUnits><Name>A&B</Name>"), std::string::npos);
  Paz paz;
  const std::string paz_text = paz_as_xml(&paz, "A&B", "<C>");
  EXPECT_NE(paz_text.find("<OutputUnits><Name><C></Name>"), std::string::npos);
}

TEST(FilterXml, TakesErrorsThatAreMissingForZero) {
  Paz paz;
  paz.poles = {{1, 2}};
  EXPECT_NE(paz_as_xml(&paz, "", "").find("<Real minusError=\"0\" plusError=\"0\">1</Real>"), std::string::npos);
  Fir fir;
  fir.numerators = {3};
  EXPECT_NE(fir_as_xml(&fir, "", "").find("<Numerator minusError=\"0\" plusError=\"0\">3<"), std::string::npos);
}

TEST(Fap2AsXml, IsOneCommentForAnyTable) {
  const std::string comment = "     <!-- FAP2 not implemented  --> \n";
  Fap2 table;
  EXPECT_EQ(fap2_as_xml(&table, "V", "COUNTS"), comment);
  table.frequencies = {1};
  EXPECT_EQ(fap2_as_xml(&table, "", ""), comment);
  EXPECT_EQ(fap2_as_xml(nullptr, "", ""), comment);
}

TEST(FirDelay, IsTheStatedOneOrFollowsFromTheLength) {
  struct Case {
    double delay;
    std::vector<double> numerators;
    double seconds;
  };
  const Case cases[] = {
      {0, {1, 2, 3}, 0},
      {0, {}, 0},
      {47, {1, 2, 3}, 0.235},
      {-1, {1, 2, 3, 2, 1}, 0.01},
      {-1, {1, 2, 2, 1}, 0.0075},
      {-1, {1, 2, 3, 4, 5}, 0.02},
      {-1, {1, 9, 9, 9, 1}, 0.01},           // only the ends are compared
      {-1, {1, 1.0000000000000002}, 0.005},  // exactly
      {-0.5, {1, 2, 3}, 0.01},
      {-1, {7}, 0},
      {-1, {}, 0},
  };
  for (const Case& item : cases) {
    Fir fir;
    fir.samprate = 200;
    fir.delay = item.delay;
    fir.numerators = item.numerators;
    EXPECT_DOUBLE_EQ(get_fir_delay(&fir), item.seconds) << item.delay << " with " << item.numerators.size();
  }
}

TEST(FirDelay, IsZeroWithoutCoefficientsAtAnyRate) {
  Fir fir;
  EXPECT_EQ(get_fir_delay(&fir), 0);  // the rate is 0 as well
}

}  // namespace
