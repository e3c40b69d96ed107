// What only shows in a running process.
#include <gtest/gtest.h>

#include "tests/tool/command.h"

namespace {

using triglub_test::run_shell;

const std::string EXAMPLE = TRIGLUB_SOURCE_DIR "/examples/observatory/observatory";

// The status of a shell for a process that SIGPIPE ended.
TEST(ClosedPipe, EndsTheProcessQuietly) {
  for (const std::string jobs : {"1", "2"}) {
    for (const std::string before : {"", "trap '' PIPE; "}) {
      const auto outcome = run_shell("exec 3>&1; { " + before + "sleep 0.2; $TRIGLUB convert --jobs " + jobs + " " +
                                     EXAMPLE + " 2>&3; echo \"status $?\" >&3; } | true");
      EXPECT_EQ(outcome.output, "status 141\n") << jobs << " " << before;
    }
  }
}

TEST(ClosedPipe, LeavesWhatWasReadBefore) {
  const auto outcome = run_shell("$TRIGLUB convert " + EXAMPLE + " 2>&1 | head -1");
  EXPECT_EQ(outcome.output, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
}

TEST(StandardOutput, IsMeantByADash) {
  const auto named = run_shell("cd $(mktemp -d); $TRIGLUB convert -o - " + EXAMPLE + "; ls; rmdir $PWD");
  EXPECT_EQ(named.output, run_shell("$TRIGLUB convert " + EXAMPLE).output);
  EXPECT_EQ(named.status, 0);
}

TEST(StandardOutput, ThatIsFullIsAFatalReport) {
  const auto outcome = run_shell("$TRIGLUB convert " + EXAMPLE + " 2>&1 >/dev/full");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.output.find("standard output: cannot be written: No space left on device"), std::string::npos);
}

TEST(Verbosity, TracesTheStepsOfTheMasterView) {
  const std::string line = "$TRIGLUB convert -p stationxml-edition1 --level network --subset snetsta.snet=XA " +
                           EXAMPLE + " 2>&1 >/dev/null";
  EXPECT_EQ(run_shell(line).output, "");
  const std::string traced = run_shell("V=-v; " + line + " -v").output;
  EXPECT_NE(traced.find("triglub: debug: dbprocess: dbjoin -o stage: "), std::string::npos);
  EXPECT_EQ(traced.find("Function: "), std::string::npos);
  EXPECT_NE(run_shell(line + " -vvv").output.find("triglub: debug: Function: xml_create_node"), std::string::npos);
}

TEST(SourceDateEpoch, StandsForTheTimeOfWriting) {
  const auto outcome = run_shell("$TRIGLUB convert --level network " + EXAMPLE);
  EXPECT_NE(outcome.output.find("<Created>2023-11-14T22:13:20Z</Created>"), std::string::npos);
}

// The command of the build tree, as whoever has just built it calls it.
TEST(ParameterFiles, AreFoundFromTheBuildTree) {
  const auto found = run_shell("unset TRIGLUB_PFPATH; cd /; $TRIGLUB convert " + EXAMPLE);
  EXPECT_EQ(found.status, 0);
  EXPECT_EQ(found.output, run_shell("$TRIGLUB convert " + EXAMPLE).output);
}

}  // namespace
