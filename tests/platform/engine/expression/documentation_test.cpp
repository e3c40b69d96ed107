// The examples of doc/expressions.md do what it says.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>

#include "element.h"
#include "station.h"

namespace triglub::expression {
namespace {

TEST(Documentation, ExamplesGiveWhatTheTablesSay) {
  std::ifstream page(TRIGLUB_SOURCE_DIR "/doc/expressions.md");
  const std::regex example("`([^`]+)` \xE2\x86\x92 `([^`]+)`");
  bool do_nulls_propagate = false;
  int checked = 0;
  int checked_with_nulls = 0;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("## ", 0) == 0) do_nulls_propagate = line == "## In edition 2";
    for (std::sregex_iterator match(line.begin(), line.end(), example), end; match != end; ++match) {
      const std::string expression = (*match)[1].str();
      const std::string text = do_nulls_propagate ? text_in_element(expression) : text_at_station(expression);
      EXPECT_EQ(text, (*match)[2]) << line;
      ++(do_nulls_propagate ? checked_with_nulls : checked);
    }
  }
  EXPECT_GE(checked, 24);
  EXPECT_GE(checked_with_nulls, 16);
}

}  // namespace
}  // namespace triglub::expression
