// Databases, views and what lives how long.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Lifetime, SeveralDatabasesAreOpenAtOnce) {
  Tables first, second;
  first.add("site", {{"sta", "ONE"}});
  second.add("site", {{"sta", "TWO"}}).add("site", {{"sta", "THREE"}});
  const Dbptr a = first.table("site");
  const Dbptr b = second.table("site");
  EXPECT_NE(a.database, b.database);
  EXPECT_THAT(texts_of(a, "sta"), ElementsAre("ONE"));
  EXPECT_THAT(texts_of(b, "sta"), ElementsAre("TWO", "THREE"));
  first.close();
  EXPECT_EQ(record_count(a), -1);
  EXPECT_THAT(texts_of(b, "sta"), ElementsAre("TWO", "THREE"));
}

TEST(Lifetime, TheSameDatabaseCanBeOpenTwice) {
  Tables tables;
  tables.add("site", {{"sta", "ONE"}});
  const Dbptr first = tables.table("site");
  Dbptr again;
  ASSERT_EQ(dbopen(tables.name().c_str(), "r", &again), 0);
  const Dbptr second = table_of(again, "site");
  EXPECT_EQ(dbclose(again), 0);
  EXPECT_EQ(record_count(second), -1);
  EXPECT_THAT(texts_of(first, "sta"), ElementsAre("ONE"));
}

TEST(Lifetime, ReopeningReadsTheTablesAnew) {
  Tables tables;
  tables.add("site", {{"sta", "ONE"}});
  const Dbptr old = tables.table("site");
  tables.close();
  tables.add("site", {{"sta", "TWO"}});
  EXPECT_THAT(texts_of(tables.table("site"), "sta"), ElementsAre("ONE", "TWO"));
  EXPECT_EQ(record_count(old), -1) << "a number is not used again";
}

TEST(Lifetime, NothingCanBeDoneWithAClosedDatabase) {
  Tables tables;
  tables.add("site", {{"sta", "ONE"}}).add("sitechan", {{"sta", "ONE"}});
  const Dbptr db = tables.db();
  const Dbptr site = at(dblookup(tables.table("site"), nullptr, nullptr, "sta", nullptr), 0);
  const Dbptr sitechan = tables.table("sitechan");
  tables.close();
  CollectedLog log;
  EXPECT_EQ(dbclose(db), -1);
  EXPECT_EQ(dbclose(Dbptr()), -1);
  EXPECT_EQ(dbclose({1 << 20, 0, 0, 0}), -1);
  EXPECT_EQ(dblookup(db, nullptr, "site", nullptr, nullptr), Dbptr());
  char text[1024];
  EXPECT_EQ(dbget(site, text), -102);
  EXPECT_LT(dbgetv(site, nullptr, "sta", text, nullptr), 0);
  EXPECT_EQ(dbsubset(site, "1", nullptr), Dbptr());
  EXPECT_EQ(dbsort(site, TextTbl({"sta"}).get(), 0, nullptr), Dbptr());
  EXPECT_EQ(dbjoin(sitechan, site, nullptr, nullptr, 0, nullptr, nullptr), Dbptr());
  EXPECT_EQ(process(db, {"dbopen site"}), Dbptr());
  Expression* hook = nullptr;
  EXPECT_EQ(dbfind(site, "1", 0, &hook), -1);
  EXPECT_EQ(triglub::view_of_records(site, {0}, nullptr), Dbptr());
  EXPECT_THAT(triglub::base_rows(site, "site"), IsEmpty());
  EXPECT_EQ(triglub::table_path(db, "site"), "");
  EXPECT_THAT(triglub::table_names(db), IsEmpty());
  triglub::release_view(site);
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(Lifetime, NamesTheTablesOfTheSchema) {
  Tables tables;
  tables.add("site", {});
  EXPECT_THAT(triglub::table_names(tables.db()),
              ElementsAre("site", "sitechan", "sensor", "instrument", "network", "affiliation", "snetsta", "schanloc",
                          "calibration", "stage"));
}

// --- views -----------------------------------------------------------------------------------------------------------

TEST(Lifetime, AViewIsGoneWhenItIsReleased) {
  Tables tables;
  tables.add("site", {{"sta", "ONE"}}).add("site", {{"sta", "TWO"}});
  const Dbptr view = dbsubset(tables.table("site"), "sta == 'TWO'", "two");
  const Dbptr narrower = dbsort(view, TextTbl({"sta"}).get(), 0, nullptr);
  EXPECT_EQ(tables.table("two"), view);
  triglub::release_view(view);
  EXPECT_EQ(record_count(view), -1);
  EXPECT_FALSE(is_view(tables.table("two")));
  EXPECT_THAT(texts_of(narrower, "sta"), ElementsAre("TWO")) << "a view stands by itself";
  triglub::release_view(view);  // nothing to do
  triglub::release_view(Dbptr());
}

TEST(Lifetime, ABaseTableStays) {
  Tables tables;
  tables.add("site", {{"sta", "ONE"}});
  triglub::release_view(tables.table("site"));
  EXPECT_THAT(texts_of(tables.table("site"), "sta"), ElementsAre("ONE"));
}

TEST(Lifetime, ATextAnswerStaysWhileOtherViewsComeAndGo) {
  Tables tables;
  tables.add("site", {{"sta", "ONE"}});
  const Dbptr view = dbsubset(tables.table("site"), "1", nullptr);
  const char* operations = nullptr;
  ASSERT_EQ(dbquery(view, dbVIEW_OPERATIONS, &operations), 0);
  for (int i = 0; i < 1000; ++i) {
    const Dbptr other = dbsubset(tables.table("site"), "1", "name");
    if (i % 2 == 0) triglub::release_view(other);
  }
  EXPECT_STREQ(operations, "dbopen site\ndbsubset 1");
}

}  // namespace
}  // namespace triglub_test
