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

TEST(StandardOutput, ThatIsClosedIsAFatalReport) {
  for (const std::string& arguments : {"convert " + EXAMPLE, "convert --jobs 2 " + EXAMPLE, std::string("tree"),
                                       std::string("--help"), std::string("--version")}) {
    const auto outcome = run_shell("{ $TRIGLUB " + arguments + "; } 2>&1 >&-");
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_NE(outcome.output.find("standard output: cannot be written"), std::string::npos) << outcome.output;
  }
}

// So that no file of the process gets its number.
TEST(StandardError, ThatIsClosedLeavesTheDocumentAsItIs) {
  const std::string in_folder = "cd $(mktemp -d); ";
  const std::string end = "; cat out.xml; rm out.xml; rmdir $PWD";
  for (const std::string parameters : {"stationxml", "stationxml-edition1"}) {
    const std::string line = "$TRIGLUB convert -p " + parameters + " " + EXAMPLE;
    const std::string expected = run_shell(line + " 2>/dev/null").output;
    EXPECT_EQ(run_shell(in_folder + line + " -o out.xml 2>&-" + end).output, expected) << parameters;
    EXPECT_EQ(run_shell(in_folder + line + " -o out.xml <&- >&- 2>&-" + end).output, expected) << parameters;
  }
}

TEST(StandardInput, ThatIsClosedIsNoDocument) {
  if (run_shell("$TRIGLUB check --help").output.find("without the checks") != std::string::npos) GTEST_SKIP();
  EXPECT_EQ(run_shell("$TRIGLUB check - 2>&1 <&-").status, 1);
}

// The line ends with what the folder holds then, and the file `old`.
std::string in_folder_with_old(const std::string& line) {
  return "cd $(mktemp -d); echo before > old; " + line + "; echo \"status $?\"; cat old; ls -A; rm -r $PWD";
}

// A pipe holds the process until what it writes is read.
TEST(Signals, EndTheProcessWithAMessageAndLeaveNothing) {
  for (const auto& [name, number] : {std::pair("INT", 2), {"TERM", 15}, {"HUP", 1}, {"QUIT", 3}, {"ALRM", 14}}) {
    const auto outcome = run_shell(
        in_folder_with_old("mkfifo pipe; ulimit -c 0; env --default-signal $TRIGLUB convert -o pipe " + EXAMPLE +
                           " 2>&1 & p=$!; exec 9< pipe; kill -" + name + " $p; wait $p; s=$?; rm pipe; (exit $s)"));
    EXPECT_NE(outcome.output.find("triglub: ended by signal " + std::to_string(number) + " ("), std::string::npos)
        << outcome.output;
    EXPECT_NE(outcome.output.find("\nstatus " + std::to_string(128 + number) + "\nbefore\nold\n"), std::string::npos)
        << outcome.output;
  }
}

TEST(Signals, ThatTheCallerHasIgnoredStayIgnored) {
  const auto outcome = run_shell(in_folder_with_old(
      "mkfifo pipe; trap '' HUP; $TRIGLUB convert -o pipe " + EXAMPLE +
      " 2>&1 & p=$!; exec 9< pipe; kill -HUP $p; cat <&9 > /dev/null; wait $p; s=$?; rm pipe; (exit $s)"));
  EXPECT_NE(outcome.output.find("status 0\n"), std::string::npos) << outcome.output;
}

// A shell's caller may have all children forgotten.
TEST(Children, ThatTheCallerDoesNotWantToKnowOfAreWaitedFor) {
  const std::string line = "$TRIGLUB convert -p stationxml-edition1 --jobs 2 " + EXAMPLE + " 2>/dev/null";
  const auto outcome = run_shell("env --ignore-signal=CHLD " + line);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.output, run_shell(line).output);
}

TEST(FileSize, ThatIsLimitedIsAFatalReport) {
  const auto outcome =
      run_shell(in_folder_with_old("(ulimit -f 100; exec $TRIGLUB convert -o old " + EXAMPLE + " 2>&1)"));
  EXPECT_NE(outcome.output.find("fatal: old: cannot be written: File too large\nstatus 1\nbefore\nold\n"),
            std::string::npos)
      << outcome.output;
}

constexpr bool kIsSanitized = std::string_view(TRIGLUB_SANITIZERS) != "";
constexpr const char* kNoBudget = "sanitizers take memory of their own, which no budget holds";

TEST(Memory, ThatRunsOutIsAMessage) {
  if (kIsSanitized) GTEST_SKIP() << kNoBudget;
  for (const std::string parameters : {"stationxml", "stationxml-edition1"}) {
    for (const std::string jobs : {"1", "2"}) {
      const auto outcome = run_shell(in_folder_with_old("$TRIGLUB convert --memory 1M -o old --jobs " + jobs + " -p " +
                                                        parameters + " " + EXAMPLE + " 2>&1"));
      EXPECT_EQ(outcome.output, "triglub: out of memory; nothing is written\nstatus 1\nbefore\nold\n");
    }
  }
}

TEST(Memory, OfAnyAmountIsEnoughOrIsToldToBeTooLittle) {
  if (kIsSanitized) GTEST_SKIP() << kNoBudget;
  const std::string line = "$TRIGLUB convert -p stationxml-edition1 --jobs 2 -o old " + EXAMPLE;
  const std::string document = run_shell(in_folder_with_old(line + " 2>/dev/null")).output;
  for (int megabytes = 1; megabytes < 40; megabytes += 3) {
    const auto outcome =
        run_shell(in_folder_with_old(line + " 2>/dev/null --memory " + std::to_string(megabytes) + "M"));
    EXPECT_TRUE(outcome.output == "status 1\nbefore\nold\n" || outcome.output == document) << megabytes;
  }
}

// The output is a file that the conversion reads.
TEST(Output, IsNoneOfTheFilesThatAreRead) {
  const std::string copy = "cd $(mktemp -d); cp -r " TRIGLUB_SOURCE_DIR
                           "/examples/observatory/. .; "
                           "cp " TRIGLUB_SOURCE_DIR
                           "/data/*.pf .; rm observatory.affiliation; mkdir sub; "
                           "cp resp/sensors/s13_5Hz.fap2 resp/sensors/own.fap; "
                           "sed -i \"1s|- \\{64\\}-      |$(printf '%-64s' resp/sensors) own.fap|\" "
                           "observatory.instrument; "
                           "ln -s observatory.site site-link; ln observatory.site site-name; ln -s no-such dangling; "
                           "ln -s $PWD/observatory.affiliation sub/absent; "
                           "find . -type f | sort | xargs md5sum > sub/before; ";
  // cmp tells of a file more at standard error.
  const std::string end =
      "; echo \"status $?\"; find . -type f | sort | grep -v -e sub/before -e sub/after | xargs md5sum > sub/after; "
      "grep -v sub/before sub/before | cmp - sub/after 2>&1; rm -r $PWD";
  struct Case {
    std::string output;
    std::string what;
  };
  const std::vector<Case> cases = {{"observatory.site", "a table of the database observatory"},
                                   {"../${PWD##*/}/observatory.stage", "a table of the database observatory"},
                                   {"site-link", "a table of the database observatory"},
                                   {"site-name", "a table of the database observatory"},
                                   {"observatory.affiliation", "a table of the database observatory"},
                                   {"sub/../observatory.affiliation", "a table of the database observatory"},
                                   {"sub/absent", "a table of the database observatory"},
                                   {"observatory", "the descriptor of the database observatory"},
                                   {"stationxml.pf", "the parameter file of the conversion"},
                                   {"stationxml-edition1.pf", "the parameter file of the conversion"},
                                   {"site.pf", "a parameter file 'site'"},
                                   {"resp/sensors/s13_5Hz.fap2", "a response file of the database observatory"},
                                   {"resp/sensors/own.fap", "a response file of the database observatory"}};
  for (const Case& tried : cases) {
    const std::string parameters = tried.output == "stationxml.pf" ? "stationxml" : "stationxml-edition1";
    for (const std::string level : {"network", "response"}) {
      const auto outcome = run_shell(copy + "$TRIGLUB convert -p " + parameters + " --level " + level +
                                     " observatory -o " + tried.output + " 2>&1" + end);
      EXPECT_NE(outcome.output.find(": is " + tried.what + ", expected another file for the document\nstatus 1\n"),
                std::string::npos)
          << tried.output << "\n"
          << outcome.output;
      EXPECT_TRUE(outcome.output.ends_with("status 1\n")) << outcome.output;
    }
  }
  EXPECT_NE(run_shell(copy + "$TRIGLUB convert observatory -o dangling 2>&1" + end).output.find("status 0\n"),
            std::string::npos);
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
