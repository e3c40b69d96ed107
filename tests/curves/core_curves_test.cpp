// A database of core tables and one that has the same responses stage by stage: a client makes the same of both.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "curves/curve.h"
#include "curves/library_document.h"
#include "curves/response_document.h"

namespace triglub_curves {

namespace {

std::vector<ChannelEpoch> epochs_of(const std::string& database) {
  return read_responses(shipped_document(TRIGLUB_SOURCE_DIR "/" + database));
}

void expect_same(Complex a, Complex b) { EXPECT_LT(std::abs(a - b), 1e-6 * std::abs(b)); }

TEST(CurvesOfCoreTables, AreThoseOfTheSameResponsesStageByStage) {
  const std::vector<ChannelEpoch> core = epochs_of("examples/core/ridge");
  const std::vector<ChannelEpoch> staged = epochs_of("tests/curves/ridge-by-stages/ridge");
  ASSERT_EQ(core.size(), 5u);
  ASSERT_EQ(staged.size(), core.size());
  for (std::size_t i = 0; i < core.size(); ++i) {
    SCOPED_TRACE(core[i].station + " " + core[i].channel + " " + core[i].start);
    EXPECT_EQ(core[i].station + core[i].channel + core[i].start,
              staged[i].station + staged[i].channel + staged[i].start);
    EXPECT_FALSE(core[i].stages.empty());
    ASSERT_TRUE(core[i].sensitivity.has_value());
    ASSERT_TRUE(staged[i].sensitivity.has_value());
    EXPECT_EQ(core[i].sensitivity->value, staged[i].sensitivity->value);
    EXPECT_EQ(core[i].sensitivity->frequency, staged[i].sensitivity->frequency);
    EXPECT_EQ(core[i].sensitivity->input_units, staged[i].sensitivity->input_units);
    for (const double frequency : {0.001, 0.002, 0.05, 0.1, 0.3, 0.45}) {
      expect_same(stated_response(core[i], frequency), stated_response(staged[i], frequency));
      expect_same(renormalized_response(core[i], frequency), renormalized_response(staged[i], frequency));
    }
  }
}

// The sensitivity is what the chain makes of its frequency, but for the digital filters, which are nearly 1 there.
TEST(CurvesOfCoreTables, AreTheSensitivityAtItsFrequency) {
  for (const ChannelEpoch& epoch : epochs_of("examples/core/ridge")) {
    SCOPED_TRACE(epoch.station + " " + epoch.channel + " " + epoch.start);
    ASSERT_TRUE(epoch.sensitivity.has_value());
    const double stated = std::abs(stated_response(epoch, epoch.sensitivity->frequency));
    EXPECT_NEAR(stated / epoch.sensitivity->value, 1, 0.01);
  }
}

}  // namespace

}  // namespace triglub_curves
