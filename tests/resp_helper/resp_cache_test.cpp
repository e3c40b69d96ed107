#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

#include "dbhelper.h"
#include "resp_helper.h"
#include "stage_database.h"
#include "support/collected_log.h"

namespace {

using triglub_test::CollectedLog;
using triglub_test::kFirText;
using triglub_test::kPazText;
using triglub_test::StageDatabase;

TEST(SimpleFile, PutsASlashBetweenDirectoryAndName) {
  EXPECT_EQ(simplefile("resp", "a.paz"), "resp/a.paz");
  EXPECT_EQ(simplefile("/db/", " a "), "/db// a ");
  EXPECT_EQ(simplefile("", ""), "/");
  EXPECT_EQ(simplefile("-", "-"), EMPTYFILENAME);
}

TEST(FieldText, IsTheFallbackForAFieldThatCannotBeRead) {
  StageDatabase stages;
  stages.add_stage({{"dir", "resp"}, {"stageid", "7"}});
  const Dbptr row = stages.stage(0);
  EXPECT_EQ(dbget_stringv(row, "stage.dir", "other"), "resp");
  EXPECT_EQ(dbget_stringv(row, "dfile", "other"), "-");
  EXPECT_EQ(dbget_stringv(row, "stage.stageid", "other"), "7");
  EXPECT_EQ(dbget_stringv(row, "stage.nothing", "other"), "other");
  EXPECT_EQ(dbget_stringv(row, "site.sta", "other"), "other");
  EXPECT_EQ(dbget_stringv(stages.stage(1), "stage.dir", "other"), "other");
  EXPECT_EQ(dbget_stringv(Dbptr(), "stage.dir", ""), "");
}

TEST(ResponseCache, ReadsTheFilesThatStageRowsName) {
  StageDatabase stages;
  stages.files.write_file("resp/a.paz", kPazText);
  stages.files.write_file("resp/b.fir", kFirText);
  stages.files.write_file("resp/unnamed.fir", kFirText);
  for (int i = 0; i < 3; ++i) stages.add_stage({{"dir", "resp"}, {"dfile", "a.paz"}});
  stages.add_stage({{"dir", "resp"}, {"dfile", "b.fir"}});
  const ResponseCache cache(stages.database(), "stage");
  EXPECT_TRUE(cache.exists("resp/a.paz"));
  EXPECT_TRUE(cache.exists("resp", "a.paz"));
  EXPECT_TRUE(cache.exists("resp", "b.fir"));
  EXPECT_FALSE(cache.exists("resp/unnamed.fir"));
  ASSERT_NE(cache.get("resp/a.paz"), nullptr);
  EXPECT_EQ(cache.get("resp/a.paz")->groups.at(0).type, RESPONSE_PAZ);
  EXPECT_EQ(cache.get("resp/a.paz"), cache.get("resp", "a.paz"));
  EXPECT_EQ(cache.get("resp", "b.fir")->groups.at(0).type, RESPONSE_FIR);
}

TEST(ResponseCache, TellsWhyAFileIsNotThere) {
  using triglub::ResponseReach;
  using triglub::ResponseStatus;
  StageDatabase stages;
  stages.files.write_file("resp/a.paz", kPazText);
  stages.files.write_file("resp/cut.paz", "theoretical 1 x paz\n");
  const triglub_test::FlatDatabase others;
  others.write_file("b.paz", kPazText);
  std::filesystem::create_symlink(others.folder() + "/b.paz", stages.files.folder() + "/resp/link.paz");
  for (const char* name : {"a.paz", "cut.paz", "none.paz", "link.paz"}) {
    stages.add_stage({{"dir", "resp"}, {"dfile", name}});
  }
  const ResponseCache all(stages.database(), "stage");
  EXPECT_TRUE(all.exists("resp/link.paz"));
  const ResponseCache confined(stages.database(), "stage", ResponseReach::below_table);
  EXPECT_TRUE(confined.exists("resp/a.paz"));
  EXPECT_EQ(confined.failure("resp/a.paz"), nullptr);
  EXPECT_EQ(confined.failure("resp/unnamed.paz"), nullptr);
  EXPECT_FALSE(confined.exists("resp/link.paz"));
  const std::pair<const char*, ResponseStatus> failures[] = {{"resp/cut.paz", ResponseStatus::faulty},
                                                             {"resp/none.paz", ResponseStatus::missing},
                                                             {"resp/link.paz", ResponseStatus::outside}};
  for (const auto& [name, status] : failures) {
    ASSERT_NE(confined.failure(name), nullptr) << name;
    EXPECT_EQ(confined.failure(name)->status, status) << name;
  }
}

TEST(ResponseCache, PassesOverNamesThatBeginWithADash) {
  StageDatabase stages;
  stages.files.write_file("resp/-a.paz", kPazText);
  stages.files.write_file("-/b.paz", kPazText);
  stages.files.write_file("-resp/c.paz", kPazText);
  stages.files.write_file("-/-", kPazText);
  stages.add_stage({});
  stages.add_stage({{"dir", "resp"}});
  stages.add_stage({{"dir", "resp"}, {"dfile", "-a.paz"}});
  stages.add_stage({{"dfile", "b.paz"}});
  stages.add_stage({{"dir", "-resp"}, {"dfile", "c.paz"}});
  const ResponseCache cache(stages.database(), "stage");
  for (const char* name : {"-/-", "resp/-", "resp/-a.paz", "-/b.paz", "-resp/c.paz"}) {
    EXPECT_FALSE(cache.exists(name)) << name;
  }
}

TEST(ResponseCache, LeavesOutFilesThatCannotBeRead) {
  StageDatabase stages;
  stages.files.write_file("resp/bad.paz", "no response");
  stages.files.write_file("resp/good.paz", kPazText);
  for (const char* name : {"bad.paz", "good.paz", "none.paz"}) stages.add_stage({{"dir", "resp"}, {"dfile", name}});
  const CollectedLog log;
  const ResponseCache cache(stages.database(), "stage");
  EXPECT_FALSE(cache.exists("resp/bad.paz"));
  EXPECT_FALSE(cache.exists("resp/none.paz"));
  EXPECT_TRUE(cache.exists("resp/good.paz"));
  // The reader's own tracing aside, nothing is said.
  EXPECT_TRUE(log.lines_without("debug: ").empty());
}

TEST(ResponseCache, LooksUpWithoutKeeping) {
  StageDatabase stages;
  stages.add_stage({});
  const ResponseCache cache(stages.database(), "stage");
  EXPECT_EQ(cache.get("resp/none"), nullptr);
  EXPECT_EQ(cache.get("resp", "none"), nullptr);
  EXPECT_FALSE(cache.exists("resp/none"));
}

TEST(ResponseCache, AddsAFileOnce) {
  StageDatabase stages;
  stages.files.write_file("resp/a.paz", kPazText);
  stages.files.write_file("-/-", kPazText);
  stages.add_stage({});
  ResponseCache cache(stages.database(), "stage");
  EXPECT_FALSE(cache.add("resp/none"));
  EXPECT_FALSE(cache.exists("resp/none"));
  EXPECT_FALSE(cache.add(EMPTYFILENAME));
  EXPECT_FALSE(cache.exists(EMPTYFILENAME));
  EXPECT_TRUE(cache.add("resp/a.paz"));
  Response* const first = cache.get("resp/a.paz");
  ASSERT_NE(first, nullptr);
  stages.files.write_file("resp/a.paz", kFirText);
  EXPECT_FALSE(cache.add("resp/a.paz"));
  EXPECT_EQ(cache.get("resp/a.paz"), first);
  EXPECT_EQ(first->groups.at(0).type, RESPONSE_PAZ);
}

TEST(ResponseCache, FindsFilesBesideTheTable) {
  StageDatabase stages;
  stages.add_stage({});
  const ResponseCache cache(stages.database(), "stage");
  EXPECT_EQ(cache.fullfile("resp/a.paz"), stages.files.folder() + "/resp/a.paz");
  EXPECT_EQ(cache.fullfile("/resp/a.paz"), stages.files.folder() + "//resp/a.paz");
}

TEST(ResponseCache, FindsFilesBesideATableOfTheCurrentFolder) {
  StageDatabase stages;
  stages.files.write_file("resp/a.paz", kPazText);
  stages.add_stage({{"dir", "resp"}, {"dfile", "a.paz"}});
  stages.files.write();
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(stages.files.folder());
  Dbptr db;
  ASSERT_EQ(dbopen("db", "r", &db), 0);
  const ResponseCache cache(db, "stage");
  EXPECT_TRUE(cache.exists("resp/a.paz"));
  dbclose(db);
  std::filesystem::current_path(before);
}

TEST(ResponseCache, IsEmptyForATableWithoutRows) {
  StageDatabase stages;
  stages.add_calibration("1");
  const ResponseCache cache(stages.database(), "stage");
  EXPECT_FALSE(cache.exists(EMPTYFILENAME));
}

// The fields read are always those of the stage table.
TEST(ResponseCache, FailsForATableWithoutStages) {
  StageDatabase stages;
  stages.add_stage({});
  const CollectedLog log;
  EXPECT_THROW(ResponseCache(stages.database(), "calibration"), dbquery_error);
  EXPECT_THROW(ResponseCache(stages.database(), "nothing"), dbquery_error);
}

TEST(ResponseCacheDeathTest, StopsAtATableWithoutName) {
  StageDatabase stages;
  stages.add_stage({});
  const Dbptr db = stages.database();
  EXPECT_DEATH(ResponseCache(db, ""), "table != \"\"");
}

TEST(ResponseCache, FailsWithoutADatabase) { EXPECT_THROW(ResponseCache(Dbptr(), "stage"), dbquery_error); }

}  // namespace
