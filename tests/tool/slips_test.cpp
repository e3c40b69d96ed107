// What is guessed from a wrong line, and when nothing is.
#include "tool/slips.h"

#include <gtest/gtest.h>

namespace {

using triglub::tool::convert_line;
using triglub::tool::nearest;

const std::string EXAMPLE = TRIGLUB_SOURCE_DIR "/examples/observatory/observatory";

TEST(NearestWord, IsAtMostTwoLettersAway) {
  const std::vector<std::string> known = {"--level", "--subset", "--jobs", "--help"};
  const struct {
    const char* word;
    const char* meant;
  } cases[] = {
      {"--level", "--level"},
      {"--LEVEL", "--level"},
      {"--levle", "--level"},
      {"--levels", "--level"},
      {"--evel", "--level"},
      {"--lvl", "--level"},
      {"--sbst", "--subset"},
      {"--job", "--jobs"},
      {"--subsetting", ""},
      {"--frobnicate", ""},
      {"", ""},
      {"-h", ""},
      {"--levelled", ""},
      {"--hlep", "--help"},
  };
  for (const auto& c : cases) EXPECT_EQ(nearest(c.word, known), c.meant) << c.word;
}

TEST(NearestWord, IsTheNearestOfSeveralAndTheFirstOfEquals) {
  EXPECT_EQ(nearest("stations", {"nations", "station", "rations"}), "station");
  EXPECT_EQ(nearest("stations", {"nations", "rations"}), "nations");
  EXPECT_EQ(nearest("stations", {}), "");
}

TEST(ConvertLine, HasTheWordsWithoutWhatShouldHaveBeenTheSubcommand) {
  EXPECT_EQ(convert_line({EXAMPLE}), "triglub convert " + EXAMPLE);
  EXPECT_EQ(convert_line({EXAMPLE, "--level", "station"}), "triglub convert " + EXAMPLE + " --level station");
  EXPECT_EQ(convert_line({EXAMPLE + ".site"}), "triglub convert " + EXAMPLE + ".site");
  EXPECT_EQ(convert_line({"stationxml", EXAMPLE}), "triglub convert " + EXAMPLE);
  EXPECT_EQ(convert_line({"help"}), "triglub convert SOURCE");
}

TEST(ConvertLine, CanBeTypedIntoAShell) {
  EXPECT_EQ(convert_line({"x", "--subset", "sta=A|B*", "a b", "it's", ""}),
            "triglub convert --subset 'sta=A|B*' 'a b' 'it'\\''s' ''");
}

}  // namespace
