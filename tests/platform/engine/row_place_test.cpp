// Where the rows of a database come from.
#include <gtest/gtest.h>

#include "platform/sources.h"
#include "tables.h"

namespace triglub_test {
namespace {

using triglub::row_place;

class RowPlace : public ::testing::Test {
 protected:
  RowPlace() {
    tables_.add_all("site", {{{"sta", "ONE"}}, {{"sta", "TWO"}}, {{"sta", "THREE"}}});
    tables_.add_all("affiliation", {{{"net", "N"}, {"sta", "TWO"}}, {{"net", "N"}, {"sta", "NONE"}}});
  }
  // What a message says of the row of a table that has the number `row`, from 1.
  static std::string place(Dbptr db, const std::string& table, int row) {
    return triglub::table_path(db, table.c_str()) + (is_memory_wanted() ? " row " : ":") + std::to_string(row);
  }

  Tables tables_;
};

TEST_F(RowPlace, IsThatOfTheRecordsRow) {
  const Dbptr site = tables_.table("site");
  EXPECT_EQ(row_place(at(site, 0)), place(site, "site", 1));
  EXPECT_EQ(row_place(at(site, 2)), place(site, "site", 3));
  EXPECT_EQ(row_place(at(dblookup(site, nullptr, nullptr, "lat", nullptr), 1)), place(site, "site", 2));
}

TEST_F(RowPlace, GoesWithTheRowIntoViews) {
  const Dbptr sorted = tables_.process({"dbopen site", "dbsort sta"});
  EXPECT_EQ(row_place(at(sorted, 1)), place(sorted, "site", 3));
  const Dbptr joined = tables_.process({"dbopen affiliation", "dbjoin site"});
  EXPECT_EQ(row_place(at(joined, 0)), place(joined, "affiliation", 1)) << "the first table's";
}

TEST_F(RowPlace, IsEmptyWhereThereIsNoRow) {
  const Dbptr site = tables_.table("site");
  CollectedLog log;
  for (const Dbptr& db : {Dbptr(), tables_.db(), site, at(site, 3), at(site, -1), at(site, dbNULL), at(site, dbALL)}) {
    EXPECT_EQ(row_place(db), "");
  }
  EXPECT_TRUE(log.lines().empty());
}

}  // namespace
}  // namespace triglub_test
