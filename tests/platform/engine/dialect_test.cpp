// Which schema the rows of a database speak for, where nothing names one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string without_trailing_blanks(std::string row) {
  row.erase(row.find_last_not_of(' ') + 1);
  return row;
}

class Dialect : public ::testing::Test {
 protected:
  Dialect() { unsetenv("TRIGLUB_PFPATH"); }
  ~Dialect() override {
    if (db_.database >= 0) dbclose(db_);
  }

  void put(const std::string& table, const std::string& bytes) { files_.write_file("db." + table, bytes); }
  int open() { return dbopen(files_.prefix().c_str(), "r", &db_); }
  Texts texts(const std::string& table, const std::string& field) { return texts_of(table_of(db_, table), field); }
  // Only one of the dialects has such a field.
  bool is_kb_core() { return dblookup(db_, nullptr, "affiliation", "time", nullptr).field >= 0; }

  FlatDatabase files_;
  Dbptr db_;
  CollectedLog log_;
};

const Row kSite = {{"sta", "AAK"},     {"ondate", "1990001"}, {"lat", "42.6375"},
                   {"lon", "74.4942"}, {"elev", "1.645"},     {"staname", "Ala Archa"}};
const Row kChannel = {{"sta", "AAK"}, {"chan", "BHZ"},    {"ondate", "1990001"}, {"chanid", "1"},
                      {"ctype", "n"}, {"edepth", "0.03"}, {"hang", "0.0"},       {"vang", "0.0"}};

TEST_F(Dialect, IsThatOfTheRows) {
  for (const bool is_kb_core_expected : {false, true}) {
    const auto row = [&](const std::string& table, const Row& values) {
      return is_kb_core_expected ? kb_core_row(table, values) : flat_row(table, values);
    };
    put("site", row("site", kSite) + "\n");
    put("sitechan", row("sitechan", kChannel) + "\n");
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(is_kb_core(), is_kb_core_expected);
    EXPECT_THAT(texts("site", "lon"), ElementsAre("74.4942"));
    EXPECT_THAT(texts("sitechan", "edepth"), ElementsAre("0.03"));
    EXPECT_THAT(texts("site", "lddate"), ElementsAre(is_kb_core_expected ? "1393844826.00000" : "-9999999999.99900"));
    EXPECT_THAT(log_.lines(), IsEmpty());
    dbclose(db_);
  }
}

// Every table alone, its rows whole, without load dates, and cut behind what was written last.
TEST_F(Dialect, IsToldByAnyTableWhoseFieldsDiffer) {
  const std::set<std::string> differ = {"site", "sitechan", "sensor", "network", "affiliation"};
  for (const auto& [table, fields] : kb_core_schema()) {
    const std::string whole = kb_core_row(table, {});
    const std::string undated = kb_core_row(table, {{"lddate", ""}});
    for (const std::string& row : {whole, undated, without_trailing_blanks(undated)}) {
      FlatDatabase files;
      files.write_file("db." + table, row + "\r\n");
      ASSERT_EQ(dbopen(files.prefix().c_str(), "r", &db_), 0);
      const bool is_shorter = row.size() < whole.size();
      EXPECT_EQ(is_kb_core(), !is_shorter || differ.contains(table)) << table << " of " << row.size();
      EXPECT_EQ(record_count(table_of(db_, table)), 1) << table << " of " << row.size();
      dbclose(db_);
    }
  }
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(Dialect, IsStandardForEveryTableOfIt) {
  for (const auto& [table, fields] : flat_schema()) {
    for (const char* date : {"1393844826.00000", "14-03-03 11:07:06", "2014-03-03", "", "-"}) {
      const std::string whole = flat_row(table, {{"lddate", date}});
      for (const std::string& row : {whole, without_trailing_blanks(whole)}) {
        FlatDatabase files;
        files.write_file("db." + table, row + "\n");
        ASSERT_EQ(dbopen(files.prefix().c_str(), "r", &db_), 0);
        EXPECT_FALSE(is_kb_core()) << table << " '" << date << "' of " << row.size();
        EXPECT_TRUE(is_view(table_of(db_, table))) << table << " '" << date << "' of " << row.size();
        dbclose(db_);
      }
    }
  }
}

// sitechan is the table whose full row is shorter by KB Core: a standard row can be as long.
TEST_F(Dialect, IsNotTakenFromTheLengthOfACutRow) {
  std::string row = flat_row("sitechan", {{"sta", "AAK"}, {"chan", "BHZ"}});
  row.replace(row.size() - 17, 17, "2014-03-03 11:07");
  ASSERT_EQ(row.size(), kb_core_row("sitechan", {}).size());
  put("sitechan", row + "\n");
  ASSERT_EQ(open(), 0);
  EXPECT_FALSE(is_kb_core());
  EXPECT_THAT(texts("sitechan", "lddate"), ElementsAre("1393844820.00000"));
}

TEST_F(Dialect, IsStandardWhereRowsFitBoth) {
  put("snetsta", flat_row("snetsta", {{"snet", "KR"}, {"sta", "AAK"}}).substr(0, 22) + "\n");
  ASSERT_EQ(open(), 0);
  EXPECT_FALSE(is_kb_core());
}

TEST_F(Dialect, IsTakenFromAFullRowBehindOnesThatFitBoth) {
  const std::string row = kb_core_row("snetsta", {{"snet", "KR"}, {"fsta", "AAK"}, {"sta", "AAK"}});
  put("snetsta", row.substr(0, 22) + "\n\n" + row.substr(0, 22) + "\n" + row + "\n");
  ASSERT_EQ(open(), 0);
  EXPECT_TRUE(is_kb_core());
}

// A row that fits neither is a fault of that row, by the schema whose length it has.
TEST_F(Dialect, OfARowWithAFaultIsThatOfItsLength) {
  std::string row = kb_core_row("site", kSite);
  row[30] = 'x';
  put("site", row + "\n");
  ASSERT_EQ(open(), 0);
  EXPECT_TRUE(is_kb_core());
  EXPECT_FALSE(is_view(table_of(db_, "site")));
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("db.site:1: field site.lat: expected a number"),
                                        HasSubstr("table site is not loaded")));
}

TEST_F(Dialect, IsOneForADatabase) {
  put("site", kb_core_row("site", kSite) + "\n");
  put("sitechan", flat_row("sitechan", kChannel) + "\n");
  EXPECT_EQ(open(), -1);
  const std::string prefix = files_.prefix();
  EXPECT_THAT(log_.lines(),
              ElementsAre(HasSubstr("tables of two schemas in one database, expected one: " + prefix +
                                    ".sitechan:1 has 140 bytes as in css3.0 (full rows: 140, in kbcore: 139), and " +
                                    prefix + ".site:1 has 161 bytes as in kbcore (full rows: 161, in css3.0: 155)")));
}

TEST_F(Dialect, IsWhatADescriptorNames) {
  files_.write_file("db", "schema kbcore\n");
  put("snetsta", "KR       AAK    AAK\n");
  ASSERT_EQ(open(), 0);
  EXPECT_TRUE(is_kb_core());
  dbclose(db_);
  files_.write_file("db", "schema css3.0\n");
  put("site", kb_core_row("site", kSite) + "\n");
  ASSERT_EQ(open(), 0);
  EXPECT_FALSE(is_kb_core());
  EXPECT_FALSE(is_view(table_of(db_, "site")));
}

// The descriptor may only say where the tables are.
TEST_F(Dialect, IsThatOfTheRowsWhereADescriptorNamesNone) {
  files_.write_file("db", "dbpath elsewhere/{db}\n");
  files_.write_file("elsewhere/db.site", kb_core_row("site", kSite) + "\n");
  ASSERT_EQ(open(), 0);
  EXPECT_TRUE(is_kb_core());
  EXPECT_THAT(texts("site", "sta"), ElementsAre("AAK"));
}

TEST_F(Dialect, IsStandardWithoutRows) {
  put("site", "");
  ASSERT_EQ(open(), 0);
  EXPECT_FALSE(is_kb_core());
}

}  // namespace
}  // namespace triglub_test
