// What is guessed from a wrong line, and when nothing is.
#include "tool/slips.h"

#include <gtest/gtest.h>

namespace {

using triglub::tool::convert_line;

const std::string EXAMPLE = TRIGLUB_SOURCE_DIR "/examples/observatory/observatory";

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
