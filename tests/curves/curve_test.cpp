// Filters whose curves are known in closed form, and documents that are not read.
#include "curves/curve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>

#include "curves/made_document.h"
#include "curves/response_document.h"
#include "curves/station_schema.h"

namespace triglub_curves {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kNear = 1e-12;

void expect_near(Complex actual, Complex expected) { EXPECT_LT(std::abs(actual - expected), kNear) << actual; }

Complex of_degrees(double amplitude, double degrees) { return std::polar(amplitude, degrees * kPi / 180); }

struct Lowpass {
  const char* name;
  std::string filter;
};

class OnePole : public testing::TestWithParam<Lowpass> {};

// Corner 1 hertz: 1 / (1 + i f).
TEST_P(OnePole, IsDownToAHalfOfThePowerAtItsCorner) {
  const ChannelEpoch epoch = epoch_of(stage(GetParam().filter, 1, 1));
  expect_near(stated_response(epoch, 1), of_degrees(std::sqrt(0.5), -45));
  expect_near(stated_response(epoch, 3), 1.0 / Complex(1, 3));
  expect_near(stated_response(epoch, 0), 1);
}

TEST_P(OnePole, IsNormalizedWhereTheGainIs) {
  const ChannelEpoch epoch = epoch_of(stage(GetParam().filter, 5, 1));
  expect_near(renormalized_response(epoch, 1), of_degrees(5, -45));
  expect_near(renormalized_response(epoch, 0), 5 * std::sqrt(2));
}

constexpr const char* kTurnPerSecond = "6.283185307179586";
constexpr const char* kPoleOfATurn = "-6.283185307179586";

INSTANTIATE_TEST_SUITE_P(
    Curve, OnePole,
    testing::Values(
        Lowpass{"Radians", poles_zeros("LAPLACE (RADIANS/SECOND)", kTurnPerSecond, roots("Pole", {kPoleOfATurn}))},
        Lowpass{"Hertz", poles_zeros("LAPLACE (HERTZ)", "1", roots("Pole", {"-1"}))},
        Lowpass{"PolynomialInRadians",
                coefficients("ANALOG (RADIANS/SECOND)",
                             values("Numerator", {kTurnPerSecond}) + values("Denominator", {kTurnPerSecond, "1"}))},
        Lowpass{"PolynomialInHertz",
                coefficients("ANALOG (HERTZ)", values("Numerator", {"1"}) + values("Denominator", {"1", "1"}))}),
    [](const auto& info) { return info.param.name; });

// y[n] = x[n] + y[n-1] / 2, at 8 samples per second.
class Feedback : public testing::TestWithParam<Lowpass> {};

TEST_P(Feedback, SumsUpAGeometricSeries) {
  const ChannelEpoch epoch = epoch_of(stage(GetParam().filter + decimation(8), 1, 1));
  expect_near(stated_response(epoch, 0), 2);
  expect_near(stated_response(epoch, 4), 2.0 / 3);
  expect_near(stated_response(epoch, 2), 1.0 / Complex(1, 0.5));
}

INSTANTIATE_TEST_SUITE_P(Curve, Feedback,
                         testing::Values(Lowpass{"ByRoots", poles_zeros("DIGITAL (Z-TRANSFORM)", "1",
                                                                        roots("Zero", {"0"}) + roots("Pole", {"0.5"}))},
                                         Lowpass{"ByCoefficients",
                                                 coefficients("DIGITAL", values("Numerator", {"1"}) +
                                                                             values("Denominator", {"1", "-0.5"}))}),
                         [](const auto& info) { return info.param.name; });

struct Average {
  const char* name;
  int samples;
  std::string filter;
};

class MovingAverage : public testing::TestWithParam<Average> {};

constexpr double kRate = 20;

double average_at(int samples, double frequency) {
  const double half = kPi * frequency / kRate;
  return std::sin(samples * half) / (samples * std::sin(half));
}

TEST_P(MovingAverage, HasTheKernelOfDirichletAndNoPhase) {
  const ChannelEpoch epoch = epoch_of(stage(GetParam().filter + decimation(kRate), 1, 0));
  for (const double frequency : {0.5, 1.0, 3.7, 9.9}) {
    expect_near(stated_response(epoch, frequency), average_at(GetParam().samples, frequency));
    expect_near(renormalized_response(epoch, frequency), average_at(GetParam().samples, frequency));
  }
}

TEST_P(MovingAverage, DelaysByHalfItsLength) {
  const ChannelEpoch epoch = epoch_of(stage(GetParam().filter + decimation(kRate), 1, 0));
  const double delay = (GetParam().samples - 1) / 2.0 / kRate;
  expect_near(filter_response(epoch.stages[0], 0.5), std::polar(average_at(GetParam().samples, 0.5), -kPi * delay));
}

INSTANTIATE_TEST_SUITE_P(Curve, MovingAverage,
                         testing::Values(Average{"OddHalf", 5, fir("ODD", {"0.2", "0.2", "0.2"})},
                                         Average{"EvenHalf", 4, fir("EVEN", {"0.25", "0.25"})},
                                         Average{"Whole", 4, fir("NONE", {"0.25", "0.25", "0.25", "0.25"})},
                                         Average{"Single", 1, fir("ODD", {"1"})},
                                         Average{"Coefficients", 2,
                                                 coefficients("DIGITAL", values("Numerator", {"0.5", "0.5"}))}),
                         [](const auto& info) { return info.param.name; });

// A delay by two samples, of three coefficients: one more than their middle.
TEST(Curve, AFilterThatIsNotSymmetricIsCentredOrCorrectedAsStated) {
  const std::string filter = fir("NONE", {"0", "0", "1"});
  const ChannelEpoch epoch = epoch_of(stage(filter + decimation(kRate, 2 / kRate), 1, 1));
  expect_near(stated_response(epoch, 5), of_degrees(1, -90));
  expect_near(renormalized_response(epoch, 5), 1);
  const ChannelEpoch uncorrected = epoch_of(stage(filter + decimation(kRate), 1, 1));
  expect_near(renormalized_response(uncorrected, 5), of_degrees(1, -180));
}

TEST(Curve, CoefficientsThatDoNotSumUpToOneAreScaled) {
  const auto of_sum = [](const char* half) { return epoch_of(stage(fir("EVEN", {half}) + decimation(kRate), 3, 1)); };
  expect_near(renormalized_response(of_sum("0.5"), 0), 3);
  expect_near(renormalized_response(of_sum("0.505"), 0), 3.03);
  expect_near(renormalized_response(of_sum("0.75"), 0), 3);
  expect_near(stated_response(of_sum("0.75"), 0), 4.5);
}

TEST(Curve, AGainOfAnotherFrequencyThanTheSensitivityIsMovedThere) {
  const std::string filter = stage(fir("EVEN", {"0.5"}) + decimation(kRate), 1, 5);
  expect_near(renormalized_response(epoch_of(sensitivity("m", "5") + filter), 5), std::sqrt(0.5));
  expect_near(renormalized_response(epoch_of(sensitivity("m", "0.000001") + filter), 5), 1);
}

TEST(Curve, IsPerMetreWhereGainsArePerNanometre) {
  const std::string gain = stage("", 2, 1);
  expect_near(renormalized_response(epoch_of(sensitivity("nm/s", "1") + gain), 1) / 1e9, 2);
  expect_near(stated_response(epoch_of(sensitivity("nm/s", "1") + gain), 1), 2);
  expect_near(renormalized_response(epoch_of(sensitivity("m/s", "1") + gain), 1), 2);
}

std::string list_element(const char* frequency, const char* amplitude, const char* phase) {
  return tagged("ResponseListElement",
                tagged("Frequency", frequency) + tagged("Amplitude", amplitude) + tagged("Phase", phase));
}

TEST(Curve, AListIsInterpolatedTheShorterWayAround) {
  const ChannelEpoch epoch =
      epoch_of(stage(tagged("ResponseList", kUnits + list_element("1", "2", "0") + list_element("3", "4", "170") +
                                                list_element("5", "4", "-170")),
                     10, 1));
  expect_near(stated_response(epoch, 1), 20);
  expect_near(stated_response(epoch, 2), of_degrees(30, 85));
  expect_near(stated_response(epoch, 4), of_degrees(40, 180));
  expect_near(renormalized_response(epoch, 5), of_degrees(40, -170));
  EXPECT_THROW(stated_response(epoch, 5.5), std::runtime_error);
  EXPECT_THROW(stated_response(epoch, 0.5), std::runtime_error);
}

TEST(Curve, StagesAreMultiplied) {
  const std::string lowpass = poles_zeros("LAPLACE (HERTZ)", "1", roots("Pole", {"-1"}));
  const ChannelEpoch epoch = epoch_of(stage(lowpass, 2, 1) + stage("", 3, 1) + stage(lowpass, 1, 1));
  expect_near(stated_response(epoch, 1), of_degrees(3, -90));
}

TEST(Curve, TypesThatAreNotKnownAreRefused) {
  const auto response_of = [](const std::string& filter) { return stated_response(epoch_of(stage(filter, 1, 1)), 1); };
  EXPECT_THROW(response_of(poles_zeros("LAPLACE", "1", "")), std::runtime_error);
  EXPECT_THROW(response_of(coefficients("digital", values("Numerator", {"1"}))), std::runtime_error);
  EXPECT_THROW(response_of(fir("SOME", {"1"})), std::runtime_error);
  EXPECT_THROW(response_of(fir("NONE", {"1"})), std::runtime_error) << "no rate";
}

TEST(ResponseDocument, KeepsWhatItReads) {
  const std::string root =
      "<Pole number=\"3\"><Real minusError=\"0.25\" plusError=\"0.5\">-2</Real><Imaginary>1e-5"
      "</Imaginary></Pole>";
  const ChannelEpoch epoch =
      epoch_of(stage(poles_zeros("LAPLACE (HERTZ)", "4", root), 1, 1) + stage(decimation(8, 0.5), 2, 1));
  EXPECT_EQ(epoch.network + epoch.station + epoch.location + epoch.channel, "KRAAK00BHZ");
  EXPECT_EQ(epoch.start, "2000-01-01T00:00:00Z");
  EXPECT_EQ(epoch.end, "");
  const auto& filter = std::get<PolesZeros>(epoch.stages.at(0).filter);
  EXPECT_EQ(filter.factor, 4);
  EXPECT_EQ(filter.poles.at(0).number, 3);
  EXPECT_EQ(filter.poles.at(0).real.minus_error, 0.25);
  EXPECT_EQ(filter.poles.at(0).real.plus_error, 0.5);
  EXPECT_EQ(filter.poles.at(0).imaginary.value, 1e-5);
  EXPECT_EQ(filter.poles.at(0).imaginary.plus_error, std::nullopt);
  EXPECT_EQ(epoch.stages.at(1).decimation->input_rate, 8);
  EXPECT_EQ(epoch.stages.at(1).decimation->correction, 0.5);
  EXPECT_EQ(epoch.stages.at(1).gain, 2);
}

TEST(ResponseDocument, OfTwoCoefficientsEachHasItsNumber) {
  const std::string numbers = "<Numerator number=\"1\">2</Numerator><Numerator number=\"2\">3</Numerator>";
  const ChannelEpoch epoch = epoch_of(stage(coefficients("DIGITAL", numbers), 1, 1));
  const auto& filter = std::get<Coefficients>(epoch.stages.at(0).filter);
  EXPECT_EQ(filter.numerators.at(1).number, 2);
  EXPECT_EQ(filter.numerators.at(1).value.value, 3);
}

TEST(StationSchema, TellsWhatItHasAgainstADocument) {
  if (!has_schema("1.2")) GTEST_SKIP() << "no schema";
  EXPECT_NE(faults_of(document_of(stage("", 1, 1)), "1.2"), "") << "a document without what all have";
}

struct Refused {
  const char* name;
  std::string document;
};

class RefusedDocument : public testing::TestWithParam<Refused> {};

TEST_P(RefusedDocument, IsNotReadInPart) { EXPECT_THROW(read_responses(GetParam().document), std::runtime_error); }

INSTANTIATE_TEST_SUITE_P(
    ResponseDocument, RefusedDocument,
    testing::Values(
        Refused{"NotWellFormed", "<FDSNStationXML>"}, Refused{"Empty", ""},
        Refused{"OfAnotherNamespace", "<FDSNStationXML/>"},
        Refused{"AStageWithoutGain", document_of("<Stage number=\"1\"/>")},
        Refused{"AStageWithoutNumber",
                document_of("<Stage><StageGain><Value>1</Value><Frequency>1</Frequency></StageGain></Stage>")},
        Refused{"AnElementThatIsNotKnown", document_of(stage("<Polynomial/>", 1, 1))},
        Refused{"AnElementThatIsNotKnownBelow", document_of(stage(coefficients("DIGITAL", "<Extra/>"), 1, 1))},
        Refused{"ANumberThatIsNone", document_of(stage(coefficients("DIGITAL", values("Numerator", {"1,5"})), 1, 1))},
        Refused{"NoNumber", document_of(stage(coefficients("DIGITAL", values("Numerator", {""})), 1, 1))},
        Refused{"AListElementWithoutPhase",
                document_of(stage(tagged("ResponseList",
                                         kUnits + tagged("ResponseListElement",
                                                         "<Frequency>1</Frequency><Amplitude>1</Amplitude>")),
                                  1, 1))}),
    [](const auto& info) { return info.param.name; });

}  // namespace

}  // namespace triglub_curves
