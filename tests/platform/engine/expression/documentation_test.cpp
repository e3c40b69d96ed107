// The examples of doc/expressions.md do what it says.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>

#include "station.h"

namespace triglub::expression {
namespace {

TEST(Documentation, ExamplesGiveWhatTheTablesSay) {
  std::ifstream page(TRIGLUB_SOURCE_DIR "/doc/expressions.md");
  const std::regex example("`([^`]+)` \xE2\x86\x92 `([^`]+)`");
  int checked = 0;
  for (std::string line; std::getline(page, line);) {
    for (std::sregex_iterator match(line.begin(), line.end(), example), end; match != end; ++match) {
      EXPECT_EQ(text_at_station((*match)[1].str()), (*match)[2]) << line;
      ++checked;
    }
  }
  EXPECT_GE(checked, 24);
}

}  // namespace
}  // namespace triglub::expression
