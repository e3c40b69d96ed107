// Documents of edition 2 by the command: the same for any number of jobs, and nothing where they fail.
#include <gmock/gmock.h>

#include <fstream>
#include <string>

#include "support/file_text.h"
#include "support/flat_database.h"
#include "tool/command.h"

namespace triglub_test {
namespace {

using testing::HasSubstr;

const std::string kExample = TRIGLUB_SOURCE_DIR "/examples/observatory/observatory";
const std::string kSpoilt = TRIGLUB_SOURCE_DIR "/tests/command/rows-without-partners/tiny";

TEST(EpochDocuments, AreTheSameForAnyNumberOfJobs) {
  for (const std::string level : {"network", "station", "channel", "response"}) {
    const std::string convert = "$TRIGLUB convert --level " + level + " " + kExample + " 2>&1 --jobs ";
    const Outcome alone = run_shell(convert + "1");
    EXPECT_EQ(alone.status, 0);
    EXPECT_THAT(alone.output, HasSubstr("</FDSNStationXML>"));
    for (const char* jobs : {"2", "3", "7"}) {
      const Outcome together = run_shell(convert + jobs);
      EXPECT_EQ(together.status, 0) << level << " " << jobs;
      EXPECT_TRUE(together.output == alone.output) << level << " " << jobs;
    }
  }
}

TEST(EpochDocuments, WhatTheRootTellsIsToldOnceForAnyNumberOfJobs) {
  FlatDatabase files;
  files.add_row("snetsta", {{"snet", "KR"}, {"fsta", "AAK"}, {"sta", "AAK"}});
  files.add_row("site", {{"sta", "AAK"}, {"lon", "200.5"}});
  const std::string tree = files.write_file("tree.pf",
                                            "edition 2\nroot_node document\n"
                                            "document &Arr{\nname Root\nattributes &Tbl{\n}\nelements &Tbl{\n"
                                            "Longitude - deg_lon lon\nnetwork - CATEGORIZED_GROUP snet\n}\n}\n"
                                            "network &Arr{\nname Network\nattributes &Tbl{\n}\nelements &Tbl{\n}\n}\n");
  const std::string convert = "$TRIGLUB convert -p " + tree + " " + files.write() + " 2>&1 >/dev/null --jobs ";
  const Outcome alone = run_shell(convert + "1");
  EXPECT_THAT(alone.output, HasSubstr("Longitude: brought into range by whole turns: 1 ("));
  EXPECT_EQ(run_shell(convert + "4").output, alone.output);
}

TEST(EpochDocuments, StrictWritesNothingWhereThereAreWarnings) {
  const FlatDatabase files;
  const std::string path = files.write_file("old.xml", "old");
  for (const std::string jobs : {" --jobs 1", " --jobs 7"}) {
    const Outcome by_pipe = run_shell("$TRIGLUB convert --strict " + kSpoilt + jobs + " 2>/dev/null");
    EXPECT_EQ(by_pipe.status, 1);
    EXPECT_EQ(by_pipe.output, "");
    EXPECT_EQ(run_shell("$TRIGLUB convert --strict -o " + path + " " + kSpoilt + jobs + " 2>/dev/null").status, 1);
    EXPECT_EQ(file_text(path), "old");
  }
}

TEST(EpochDocuments, StrictWritesTheSameWhereThereAreNone) {
  const std::string clean = TRIGLUB_SOURCE_DIR "/tests/command/tiny/tiny";
  const Outcome plain = run_shell("$TRIGLUB convert " + clean);
  for (const std::string jobs : {" --jobs 1", " --jobs 7"}) {
    const Outcome strict = run_shell("$TRIGLUB convert --strict " + clean + jobs);
    EXPECT_EQ(strict.status, 0);
    EXPECT_EQ(strict.output, plain.output);
  }
}

TEST(EpochDocuments, AFullDiskEndsTheCommandWithOneMessage) {
  const std::string clean = TRIGLUB_SOURCE_DIR "/tests/command/tiny/tiny";
  for (const std::string& how :
       {kExample + " --jobs 1", kExample + " --jobs 7", clean + " --strict", clean + " --jobs 7"}) {
    const Outcome outcome = run_shell("$TRIGLUB convert " + how + " 2>&1 >/dev/full");
    EXPECT_EQ(outcome.status, 1) << how;
    EXPECT_EQ(outcome.output, "triglub: fatal: standard output: cannot be written: No space left on device\n") << how;
  }
}

TEST(EpochDocuments, WithoutRoomForWhatIsHeldNothingIsWritten) {
  const Outcome outcome = run_shell("TMPDIR=/nowhere $TRIGLUB convert --strict " + kExample + " 2>&1");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output, "triglub: fatal: a temporary file: cannot be written: No such file or directory\n");
}

TEST(EpochDocuments, AReaderThatHasSeenEnoughEndsTheCommandSilently) {
  for (const char* jobs : {"1", "7"}) {
    const Outcome outcome =
        run_shell("{ $TRIGLUB convert " + kExample + " --jobs " + jobs + " 2>&3 | head -c 10 >/dev/null; } 3>&1");
    EXPECT_EQ(outcome.output, "") << jobs;
  }
}

}  // namespace
}  // namespace triglub_test
