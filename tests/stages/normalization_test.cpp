// Factors that make filters 1 at a frequency.
#include "stages/normalization.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace triglub {
namespace {

std::optional<Normalization> of_paz(const Paz& paz, double frequency) {
  ResponseGroup group;
  group.type = RESPONSE_PAZ;
  group.filter = const_cast<Paz*>(&paz);  // NOLINT: groups own their filters, this one does not
  return normalization_at({&group}, frequency);
}

std::optional<Normalization> of_list(const Fap& fap, double frequency) {
  ResponseGroup group;
  group.type = RESPONSE_FAP;
  group.filter = const_cast<Fap*>(&fap);  // NOLINT: as above
  return normalization_at({&group}, frequency);
}

TEST(Normalization, OfPolesAndZerosIsOneOverTheirAmplitude) {
  Paz paz;
  paz.normalization = 1234;  // the file's does not count
  EXPECT_EQ(of_paz(paz, 5)->factor, 1);
  EXPECT_EQ(of_paz(paz, 5)->frequency, 5);
  paz.zeros = {0, 0};
  const double w = 2 * std::numbers::pi * 0.5;
  EXPECT_DOUBLE_EQ(of_paz(paz, 0.5)->factor, 1 / (w * w));
  paz.poles = {{-3, 4}, {-3, -4}};
  const double poles = std::hypot(3, w - 4) * std::hypot(3, w + 4);
  EXPECT_DOUBLE_EQ(of_paz(paz, 0.5)->factor, poles / (w * w));
}

TEST(Normalization, OfATableIsTheAmplitudeOnTheLineBetweenItsRows) {
  Fap fap;
  fap.frequencies = {1, 3, 5};
  fap.amplitudes = {2, 4, 1};
  EXPECT_EQ(of_list(fap, 1)->factor, 2);
  EXPECT_EQ(of_list(fap, 1.5)->factor, 2.5);
  EXPECT_EQ(of_list(fap, 3)->factor, 4);
  EXPECT_EQ(of_list(fap, 5)->factor, 1);
  EXPECT_FALSE(of_list(fap, 0.999));
  EXPECT_FALSE(of_list(fap, 5.001));
  std::swap(fap.frequencies[0], fap.frequencies[2]);  // from high to low
  std::swap(fap.amplitudes[0], fap.amplitudes[2]);
  EXPECT_EQ(of_list(fap, 1.5)->factor, 2.5);
}

TEST(Normalization, IsNoneWhereTheResponseIsNothingOrEverything) {
  Paz paz;
  paz.zeros = {0};
  EXPECT_FALSE(of_paz(paz, 0));
  std::swap(paz.zeros, paz.poles);
  EXPECT_FALSE(of_paz(paz, 0));
  Fap fap;
  EXPECT_FALSE(of_list(fap, 1));
  fap.frequencies = {1};
  fap.amplitudes = {0};
  EXPECT_FALSE(of_list(fap, 1));
}

}  // namespace
}  // namespace triglub
