// dbprocess: lists of steps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Process : public ::testing::Test {
 protected:
  Process() {
    tables_.add_all("sitechan",
                    {{{"sta", "B"}, {"chan", "Z"}}, {{"sta", "A"}, {"chan", "Z"}}, {{"sta", "A"}, {"chan", "N"}}});
    tables_.add_all("site", {{{"sta", "A"}, {"lat", "1"}}, {{"sta", "B"}, {"lat", "2"}}});
    tables_.add_all("snetsta", {{{"snet", "XX"}, {"fsta", "A"}, {"sta", "A"}}});
    tables_.add_all("network", {{{"net", "XX"}, {"netname", "the network"}}});
  }
  Texts run(const Texts& steps, const Texts& fields) { return records_of(tables_.process(steps), fields); }

  Tables tables_;
};

// Views are numbered on: those that a list made and left behind lie before its result.
long views_alive_below(const Dbptr& view, std::int64_t first) {
  long alive = 0;
  for (Dbptr other = view; other.table-- > first;) {
    if (record_count(other) >= 0) ++alive;
  }
  return alive;
}

TEST_F(Process, AppliesStepAfterStep) {
  EXPECT_THAT(run({"dbopen sitechan", "dbjoin site", "dbsubset lat < 2", "dbsort chan"}, {"sta", "chan", "lat"}),
              ElementsAre("A N 1", "A Z 1"));
}

TEST_F(Process, BearsBlanksAroundAndBetweenWords) {
  EXPECT_THAT(run({"  dbopen\t sitechan ", "dbjoin site sta ", "\tdbsort   sitechan.sta\tchan  "}, {"sta", "chan"}),
              ElementsAre("A N", "A Z", "B Z"));
}

TEST_F(Process, SortsAndKeepsOneOfEachRun) {
  EXPECT_THAT(run({"dbopen sitechan", "dbsort sta chan"}, {"sta", "chan"}), ElementsAre("A N", "A Z", "B Z"));
  EXPECT_THAT(run({"dbopen sitechan", "dbsort -u sta"}, {"sta", "chan"}), ElementsAre("A Z", "B Z"));
}

TEST_F(Process, JoinsOuterAndOnNamedKeys) {
  EXPECT_THAT(run({"dbopen sitechan", "dbjoin snetsta"}, {"sta", "snet"}), ElementsAre("A XX", "A XX"));
  EXPECT_THAT(run({"dbopen sitechan", "dbjoin -o snetsta"}, {"sta", "snet"}), ElementsAre("B -", "A XX", "A XX"));
  EXPECT_THAT(run({"dbopen snetsta", "dbjoin network snet:net"}, {"sta", "netname"}), ElementsAre("A the network"));
  EXPECT_THAT(run({"dbopen snetsta", "dbjoin -o network snetsta.snet:network.net"}, {"sta", "netname"}),
              ElementsAre("A the network"));
  EXPECT_THAT(run({"dbopen sitechan", "dbjoin site sta ondate::offdate"}, {"sta", "lat"}),
              ElementsAre("B 2", "A 1", "A 1"));
}

TEST_F(Process, GoesOnFromAView) {
  const Dbptr first = tables_.process({"dbopen sitechan"});
  EXPECT_THAT(records_of(process(first, {"dbsubset sta == 'A'"}), {"chan"}), ElementsAre("Z", "N"));
  EXPECT_EQ(process(first, {}), first);
  EXPECT_EQ(dbprocess(first, nullptr, nullptr), first);
}

TEST_F(Process, StartsAnewAtEachOpen) {
  EXPECT_THAT(run({"dbopen sitechan", "dbsubset 0", "dbopen site", "dbsubset lat > 1"}, {"sta"}), ElementsAre("B"));
}

TEST_F(Process, TracesWhatFollowsTheWordVerbose) {
  CollectedLog log;
  tables_.process({"dbopen sitechan", "verbose", "dbjoin site", "dbsubset lat > 1", "dbsort sta"});
  EXPECT_THAT(log.lines(),
              ElementsAre("debug: dbprocess: dbjoin site: 3 records", "debug: dbprocess: dbsubset lat > 1: 1 records",
                          "debug: dbprocess: dbsort sta: 1 records"));
}

TEST_F(Process, IsSilentOtherwise) {
  CollectedLog log;
  tables_.process({"dbopen sitechan", "dbjoin site", "dbsubset lat > 1", "dbsort sta"});
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Process, ReportsTheStepThatFails) {
  const auto complaints = [&](const Texts& steps) {
    tables_.db();
    CollectedLog log;
    EXPECT_EQ(tables_.process(steps), Dbptr());
    return log.lines();
  };
  const auto last = [&](const Texts& steps) {
    const Texts lines = complaints(steps);
    EXPECT_EQ(lines.size(), 2u);
    return lines.empty() ? "" : lines.back();
  };
  EXPECT_EQ(last({"dbopen nothing"}), "warning: dbprocess: the step 'dbopen nothing' failed");
  EXPECT_EQ(last({"dbopen"}), "warning: dbprocess: the step 'dbopen' failed");
  EXPECT_EQ(last({"dbopen site sitechan"}), "warning: dbprocess: the step 'dbopen site sitechan' failed");
  EXPECT_EQ(last({"dbopen site", "dbjoin nothing"}), "warning: dbprocess: the step 'dbjoin nothing' failed");
  EXPECT_EQ(last({"dbopen site", "dbjoin -o"}), "warning: dbprocess: the step 'dbjoin -o' failed");
  EXPECT_EQ(last({"dbopen site", "dbjoin"}), "warning: dbprocess: the step 'dbjoin' failed");
  EXPECT_EQ(last({"dbopen site", "dbjoin network"}), "warning: dbprocess: the step 'dbjoin network' failed");
  EXPECT_EQ(last({"dbopen site", "dbjoin sitechan x"}), "warning: dbprocess: the step 'dbjoin sitechan x' failed");
  EXPECT_EQ(last({"dbopen site", "dbsort"}), "warning: dbprocess: the step 'dbsort' failed");
  EXPECT_EQ(last({"dbopen site", "dbsort -u"}), "warning: dbprocess: the step 'dbsort -u' failed");
  EXPECT_EQ(last({"dbopen site", "dbsort x"}), "warning: dbprocess: the step 'dbsort x' failed");
  EXPECT_EQ(last({"dbopen site", "dbsubset chan == 'Z'"}),
            "warning: dbprocess: the step 'dbsubset chan == 'Z'' failed");
  EXPECT_EQ(last({"dbopen site", "dbsubset"}), "warning: dbprocess: the step 'dbsubset' failed");
  EXPECT_EQ(last({"dbopen site", "dbfly away"}), "warning: dbprocess: the step 'dbfly away' failed");
  EXPECT_EQ(last({"dbopen site", ""}), "warning: dbprocess: the step '' failed");
  EXPECT_EQ(last({"dbopen site", "Verbose"}), "warning: dbprocess: the step 'Verbose' failed");
  EXPECT_THAT(complaints({"dbopen site", "dbfly away", "dbfly on"})[0], HasSubstr("there is no such operation"));
}

TEST_F(Process, StopsAtTheStepThatFails) {
  CollectedLog log;
  EXPECT_EQ(tables_.process({"verbose", "dbopen nothing", "dbopen site"}), Dbptr());
  EXPECT_THAT(log.lines(), Not(::testing::Contains(HasSubstr("records"))));
}

TEST_F(Process, NeedsAViewForEveryStepButTheFirst) {
  CollectedLog log;
  Texts expected;
  for (const std::string step : {"dbjoin site", "dbsubset 1", "dbsort sta"}) {
    EXPECT_EQ(tables_.process({step}), Dbptr());
    expected.push_back("warning: dbprocess: '" + step +
                       "': there is no view to work on; a list begins with dbopen TABLE");
    expected.push_back("warning: dbprocess: the step '" + step + "' failed");
  }
  EXPECT_EQ(log.lines(), expected);
  EXPECT_EQ(process(Dbptr(), {"dbopen site"}), Dbptr());
  EXPECT_EQ(log.lines(), expected) << "an invalid handle goes through without a word";
}

TEST_F(Process, RefusesANullStep) {
  const Dbptr first = dbsubset(tables_.table("site"), "1", nullptr);
  Tbl* steps = newtbl(0);
  for (const char* step : {"dbopen site", "dbsubset 1", static_cast<const char*>(nullptr), "dbsort sta"}) {
    pushtbl(steps, step);
  }
  CollectedLog log;
  EXPECT_EQ(dbprocess(tables_.db(), steps, nullptr), Dbptr());
  EXPECT_THAT(log.lines(), ElementsAre("warning: dbprocess: step 3 of the list is null"));
  freetbl(steps, nullptr);
  const Dbptr last = dbsubset(tables_.table("site"), "1", nullptr);
  EXPECT_EQ(views_alive_below(last, first.table), 1) << "no view is left behind";
}

TEST_F(Process, FailsAtATableThatRefusesToLoad) {
  tables_.add("stage", {{"stageid", "none"}});
  CollectedLog log;
  EXPECT_EQ(tables_.process({"dbopen sitechan", "dbjoin -o stage"}), Dbptr());
  ASSERT_EQ(log.lines().size(), 3u);
  EXPECT_THAT(log.lines()[1], HasSubstr("table stage is not loaded"));
  EXPECT_EQ(log.lines()[2], "warning: dbprocess: the step 'dbjoin -o stage' failed");
}

// --- handlers --------------------------------------------------------------------------------------------------------

Texts handled;
Dbptr kept;

Dbptr only_a(Dbptr view, const char* step) {
  handled.emplace_back(step);
  kept = view;
  return std::string(step) == "fail"   ? Dbptr()
         : std::string(step) == "same" ? view
                                       : dbsubset(view, "sta == 'A'", nullptr);
}

TEST_F(Process, HandsUnknownStepsToTheHandler) {
  handled.clear();
  const TextTbl steps({"dbopen sitechan", " only A ", "verbose", "dbsort chan", "same"});
  CollectedLog log;
  const Dbptr view = dbprocess(tables_.db(), steps.get(), only_a);
  EXPECT_THAT(records_of(view, {"sta", "chan"}), ElementsAre("A N", "A Z"));
  EXPECT_THAT(handled, ElementsAre("only A", "same"));
  EXPECT_THAT(log.lines(),
              ElementsAre("debug: dbprocess: dbsort chan: 2 records", "debug: dbprocess: same: 2 records"));
}

TEST_F(Process, ReportsAStepThatTheHandlerFailsAt) {
  CollectedLog log;
  EXPECT_EQ(dbprocess(tables_.db(), TextTbl({"dbopen site", "fail"}).get(), only_a), Dbptr());
  EXPECT_THAT(log.lines(), ElementsAre("warning: dbprocess: the step 'fail' failed"));
}

// --- views in between ------------------------------------------------------------------------------------------------

TEST_F(Process, LeavesNoViewBehindButTheLast) {
  const Dbptr first = dbsubset(tables_.table("site"), "1", nullptr);
  const Dbptr view = tables_.process({"dbopen sitechan", "dbsubset 1", "dbjoin site", "dbsort sta", "dbsubset 1"});
  EXPECT_EQ(record_count(view), 3);
  EXPECT_EQ(views_alive_below(view, first.table), 1);
  EXPECT_EQ(record_count(first), 2);
}

TEST_F(Process, LeavesNoViewBehindWhenItFails) {
  const Dbptr first = dbsubset(tables_.table("site"), "1", nullptr);
  CollectedLog log;
  for (const char* step : {"dbsort nothing", "dbopen nothing", "dbfly"}) {
    EXPECT_EQ(tables_.process({"dbopen sitechan", "dbsubset 1", "dbjoin site", step}), Dbptr());
  }
  const Dbptr last = dbsubset(tables_.table("site"), "1", nullptr);
  EXPECT_EQ(views_alive_below(last, first.table), 1);
}

TEST_F(Process, KeepsJoinsOfWholeTablesForTheNextListThatBeginsAlike) {
  const Dbptr before = dbsubset(tables_.table("site"), "1", nullptr);
  const Dbptr joined = tables_.process({"dbopen sitechan", "dbjoin site"});
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(tables_.process({"dbopen sitechan", "dbjoin site"}), joined);
    triglub::release_view(joined);
    triglub::release_view(tables_.process({"dbopen sitechan", "dbjoin site", "dbsubset 1"}));
  }
  EXPECT_EQ(record_count(joined), 3);
  const Dbptr after = dbsubset(tables_.table("site"), "1", nullptr);
  EXPECT_EQ(views_alive_below(after, before.table), 2);
}

TEST_F(Process, LeavesTheViewItBeganWith) {
  const Dbptr first = dbsubset(tables_.table("site"), "1", nullptr);
  EXPECT_EQ(record_count(process(first, {"dbsubset lat > 1", "dbsort sta"})), 1);
  EXPECT_EQ(record_count(first), 2);
}

TEST_F(Process, LeavesTheViewsThatAHandlerSaw) {
  const TextTbl steps({"dbopen sitechan", "dbsort sta", "only A", "dbsort chan"});
  const Dbptr view = dbprocess(tables_.db(), steps.get(), only_a);
  EXPECT_EQ(record_count(view), 2);
  EXPECT_EQ(record_count(kept), 3);
}

}  // namespace
}  // namespace triglub_test
