// What a source's name may be.
#include "engine/source/open/open_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "engine/classic/open.h"
#include "engine/source/memory/published.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class OpenSource : public ::testing::Test {
 protected:
  ~OpenSource() override { triglub::withdraw("some name"); }

  static std::string site(const std::string& sta) { return flat_row("site", {{"sta", sta}}) + "\n"; }
  // The stations of the site table of the database with that name.
  static Texts stations_of(const std::string& name) {
    Dbptr db;
    if (dbopen(name.c_str(), "r", &db) != 0) return {"not opened"};
    Texts stations = texts_of(table_of(db, "site"), "sta");
    dbclose(db);
    return stations;
  }

  FlatDatabase files_;
  CollectedLog log_;
};

TEST_F(OpenSource, TakesAPathForFlatFiles) {
  files_.write_file("db.site", site("AAK"));
  EXPECT_THAT(stations_of(files_.prefix()), ElementsAre("AAK"));
  EXPECT_THAT(stations_of("flat:" + files_.prefix()), ElementsAre("AAK"));
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(OpenSource, GivesTheTablesOfTheSchemaWithoutRows) {
  const Dbptr db = triglub::open_empty();
  const Dbptr stage = table_of(db, "stage");
  long count = -1;
  EXPECT_EQ(dbquery(stage, dbRECORD_COUNT, &count), 0);
  EXPECT_EQ(count, 0);
  Expression* compiled = nullptr;
  EXPECT_EQ(dbex_compile(stage, "stageid + gnom", &compiled, dbREAL), 0);
  EXPECT_EQ(dbclose(db), 0);
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(OpenSource, LeavesOtherColonsToThePath) {
  std::filesystem::current_path(files_.folder());
  for (const std::string name :
       {"2020:db", "flat", "Flat:db", "flats:db", "memory", "Memory:db", ":db", "a/memory:b"}) {
    files_.write_file(name + ".site", site("AAK"));
    EXPECT_THAT(stations_of(name), ElementsAre("AAK")) << name;
  }
  files_.write_file("memory:db.site", site("BBB"));
  files_.write_file("flat:db.site", site("CCC"));
  EXPECT_THAT(stations_of("./memory:db"), ElementsAre("BBB"));
  EXPECT_THAT(stations_of("./flat:db"), ElementsAre("CCC"));
  EXPECT_THAT(stations_of("flat:flat:db"), ElementsAre("CCC"));
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(OpenSource, FindsWhatWasPublishedInThisProcess) {
  files_.write_file("db.site", site("AAK"));
  const auto source = triglub::open_source(files_.prefix());
  ASSERT_NE(source, nullptr);
  triglub::publish("some name", source);
  EXPECT_EQ(triglub::open_source("memory:some name"), source);
  EXPECT_THAT(stations_of("memory:some name"), ElementsAre("AAK"));
  triglub::withdraw("some name");
  EXPECT_EQ(triglub::open_source("memory:some name"), nullptr);
  EXPECT_THAT(log_.lines(), ElementsAre("warning: memory:some name: there is no such database in this process"));
}

TEST_F(OpenSource, KeepsADatabaseOpenWhoseNameWasWithdrawn) {
  files_.write_file("db.site", site("AAK"));
  triglub::publish("some name", triglub::open_source(files_.prefix()));
  Dbptr db;
  ASSERT_EQ(dbopen("memory:some name", "r", &db), 0);
  triglub::withdraw("some name");
  EXPECT_THAT(texts_of(table_of(db, "site"), "sta"), ElementsAre("AAK"));
  dbclose(db);
}

TEST_F(OpenSource, ReportsWhatIsNotThere) {
  for (const std::string name : {"", "flat:", "memory:", "flat:/nowhere/db"}) {
    EXPECT_EQ(triglub::open_source(name), nullptr) << name;
  }
  EXPECT_THAT(log_.lines(),
              ElementsAre(HasSubstr("is empty"), HasSubstr("is empty"), HasSubstr("memory:: there is no such database"),
                          HasSubstr("/nowhere/db: there is no such database")));
}

}  // namespace
}  // namespace triglub_test
