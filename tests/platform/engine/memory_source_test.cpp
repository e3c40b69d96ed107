// Rows that are given as texts.
#include "engine/source/memory/memory_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "engine/classic/open.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using triglub::MemorySource;

class Memory : public ::testing::Test {
 protected:
  ~Memory() override { dbclose(db_); }
  Dbptr open(const MemorySource::Tables& tables, const std::string& folder = ".") {
    triglub::dbopen_source(std::make_shared<MemorySource>("m", tables, MemorySource::Numbers::shortest,
                                                          triglub::Schema::builtin(), folder),
                           &db_);
    return db_;
  }

  Dbptr db_;
  CollectedLog log_;
};

TEST_F(Memory, GivesTheRowsThatItWasGiven) {
  open({{"site", {{{"sta", "AAK"}, {"lat", "42.5"}}, {}, {{"sta", " B "}, {"ondate", "2000001"}}}}});
  const Dbptr site = table_of(db_, "site");
  EXPECT_THAT(texts_of(site, "sta"), ElementsAre("AAK", "-", "B"));
  EXPECT_THAT(texts_of(site, "lat"), ElementsAre("42.5", "-999.0000", "-999.0000"));
  EXPECT_THAT(texts_of(site, "ondate"), ElementsAre("-1", "-1", "2000001"));
  EXPECT_EQ(record_count(table_of(db_, "sitechan")), 0);
}

TEST_F(Memory, TellsWhereItsTablesAre) {
  open({{"site", {}}}, "/some/where");
  EXPECT_EQ(triglub::table_path(db_, "site"), "memory:m.site");
  EXPECT_EQ(triglub::table_path(db_, "sitechan"), "");
  const char* folder = nullptr;
  ASSERT_EQ(dbquery(table_of(db_, "site"), dbTABLE_DIRNAME, &folder), 0);
  EXPECT_STREQ(folder, "/some/where");
}

TEST_F(Memory, TakesATextOfAnyLength) {
  const std::string name(5000, 'x');
  open({{"site", {{{"staname", name}}}}});
  EXPECT_EQ(text_at(table_of(db_, "site"), "staname", 0), name.substr(0, 1023));
  char text[51];
  ASSERT_EQ(dbgetv(at(table_of(db_, "site"), 0), nullptr, "staname", text, nullptr), 0);
  EXPECT_EQ(text, name.substr(0, 50));
}

TEST_F(Memory, ReadsTimesAsFilesDo) {
  open({{"sensor",
         {{{"sta", "A"}, {"time", "2014-03-03T11:07:06.25Z"}, {"lddate", "14-03-03 11:07:06"}},
          {{"sta", "B"}, {"lddate", "yesterday"}},
          {{"sta", "C"}, {"lddate", "someday"}}}}});
  const Dbptr sensor = table_of(db_, "sensor");
  EXPECT_THAT(texts_of(sensor, "time"), ElementsAre("1393844826.25", "-9999999999.99900", "-9999999999.99900"));
  EXPECT_THAT(texts_of(sensor, "lddate"), ElementsAre("1393844826", "-9999999999.99900", "-9999999999.99900"));
  EXPECT_THAT(log_.lines(),
              ElementsAre("notify: memory:m.sensor row 2: field sensor.lddate: expected a time (epoch seconds, or a "
                          "date such as 2014-03-03 11:07:06), found 'yesterday': taken as null (rows with such a "
                          "date: 2)"));
}

TEST_F(Memory, NamesTheFaultsOfItsRows) {
  open({{"site", {{{"sta", "A"}}, {{"lat", "x"}, {"sta", std::string("A\0", 2)}}, {{"ondate", "1.5"}}}}});
  EXPECT_FALSE(is_view(table_of(db_, "site")));
  EXPECT_THAT(log_.lines(),
              ElementsAre("warning: memory:m.site row 2: field site.sta: a zero byte (byte 2)",
                          "warning: memory:m.site row 2: field site.lat: expected a number, found 'x'",
                          "warning: memory:m.site row 3: field site.ondate: expected a date (yyyyddd), found '1.5'",
                          "warning: memory:m.site: table site is not loaded"));
}

TEST_F(Memory, NamesTheFirstTwentyFaultsAndCountsAll) {
  open({{"site", std::vector<Row>(30, Row{{"lat", "x"}})}});
  EXPECT_FALSE(is_view(table_of(db_, "site")));
  ASSERT_EQ(log_.lines().size(), 22u);
  EXPECT_EQ(log_.lines()[20], "warning: memory:m.site: 30 faults in all, the first 20 are named");
}

TEST_F(Memory, KnowsTheTablesAndFieldsOfItsSchemaOnly) {
  EXPECT_THROW(MemorySource("m", {{"sites", {}}}), std::invalid_argument);
  EXPECT_THROW(MemorySource("m", {{"site", {{{"net", "A"}}}}}), std::invalid_argument);
}

}  // namespace
}  // namespace triglub_test
