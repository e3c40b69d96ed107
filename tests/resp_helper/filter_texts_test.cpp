// Filter blocks are kept, as many as there is room for; who asks sees no difference.
#include "state/filter_texts.h"

#include <gtest/gtest.h>

#include "resp_helper.h"

namespace {

using triglub::FilterTexts;

constexpr std::size_t kMany = 200000;  // coefficients: a block of some ten megabytes

class KeptFilters : public testing::Test {
 protected:
  KeptFilters() {
    for (std::size_t i = 0; i < std::size(filters_); ++i) {
      filters_[i].samprate = 100.0;
      filters_[i].numerators.assign(kMany, 0.25 * static_cast<double>(i + 1));
      filters_[i].numerator_errors.assign(kMany, 0.0);
      groups_[i].type = RESPONSE_FIR;
      groups_[i].filter = &filters_[i];
    }
  }

  std::string formatted(std::size_t i) { return fir_as_xml(&filters_[i], "COUNTS", "COUNTS"); }

  Fir filters_[6];
  ResponseGroup groups_[6];
  FilterTexts texts_;
};

TEST_F(KeptFilters, AreFormattedOnceForEachPairOfUnits) {
  const std::string* first = &texts_.of(groups_[0], "COUNTS", "COUNTS");
  EXPECT_EQ(*first, formatted(0));
  EXPECT_EQ(&texts_.of(groups_[0], "COUNTS", "COUNTS"), first);
  EXPECT_EQ(texts_.of(groups_[0], "V", "COUNTS"), fir_as_xml(&filters_[0], "V", "COUNTS"));
  EXPECT_EQ(texts_.of(groups_[0], "COUNTS", "V"), fir_as_xml(&filters_[0], "COUNTS", "V"));
}

TEST_F(KeptFilters, AreRightWhenThereIsNoMoreRoom) {
  std::size_t size = 0;
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = 0; i < std::size(groups_); ++i) {
      const std::string expected = formatted(i);
      EXPECT_TRUE(texts_.of(groups_[i], "COUNTS", "COUNTS") == expected) << round << " " << i;
      size += expected.size();
    }
  }
  EXPECT_GT(size, std::size_t{100} << 20);  // several times what is kept
}

}  // namespace
