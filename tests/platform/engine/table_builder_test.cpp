// Cells become columns in one place, whatever the source.
#include "engine/table/table_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "built_table.h"
#include "set_threads.h"
#include "support/collected_log.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using triglub::TableBuilder;

TEST(TableBuilder, TakesBlankCellsAndTheNullAsANumberForNull) {
  TableBuilder rows(builtin_table("site"));
  const std::vector<std::string> nulls(12, "");
  add_cells(&rows, nulls);
  add_cells(&rows, {"-", "-1", "-001", "-999", "-9.99e2", "-999.0", "-", "  ", "\t", "0", "-0.0", "-9999999999.999"});
  const auto table = std::move(rows).build(".", "", triglub::shortest_texts(), {});
  for (std::size_t field = 0; field < 12; ++field) {
    for (const std::uint32_t row : {0u, 1u}) {
      EXPECT_TRUE(table->is_null(field, row)) << field;
      EXPECT_EQ(table->text(field, row), table->schema().fields[field].null_text);
      EXPECT_EQ(table->text_codes(field)[row], triglub::kNullCode);
    }
  }
}

TEST(TableBuilder, KeepsEachTextOnceInUtf8) {
  const auto table = affiliation_of({{"Z\xFC", "A", ""}, {"Z\xC3\xBC", "B", ""}, {" Z\xC3\xBC\t", "A", ""}});
  EXPECT_THAT(column_texts(*table, "net"), ElementsAre("Z\xC3\xBC", "Z\xC3\xBC", "Z\xC3\xBC"));
  EXPECT_EQ(table->column(0).dictionary.size(), 2u) << "the null text, and one";
  EXPECT_THAT(table->column(1).codes, ElementsAre(1u, 2u, 1u));
}

TEST(TableBuilder, RefusesCellsWithFaults) {
  TableBuilder rows(builtin_table("affiliation"));
  ASSERT_TRUE(rows.begin_row());
  EXPECT_FALSE(rows.column(0).add(std::string("A\0B", 3)));
  EXPECT_FALSE(rows.column(2).add(std::string("17\0", 3)));
  EXPECT_FALSE(rows.has_unread_dates());
  EXPECT_TRUE(rows.column(0).add("A"));
  EXPECT_TRUE(rows.column(1).add("B"));
  EXPECT_TRUE(rows.column(2).add("17"));
  const auto table = std::move(rows).build(".", "", triglub::shortest_texts(), {});
  EXPECT_THAT(column_texts(*table, "net"), ElementsAre("A")) << "nothing was added for the others";
  EXPECT_THAT(column_texts(*table, "lddate"), ElementsAre("17"));
}

TEST(TableBuilder, KnowsOfLoadDatesThatCouldNotBeRead) {
  TableBuilder rows(builtin_table("affiliation"));
  add_cells(&rows, {"A", "X", "1"});
  EXPECT_FALSE(rows.has_unread_dates());
  TableBuilder more(builtin_table("affiliation"));
  add_cells(&more, {"A", "Y", "yesterday"});
  EXPECT_TRUE(more.has_unread_dates());
  ASSERT_TRUE(rows.append(std::move(more)));
  EXPECT_TRUE(rows.has_unread_dates());
  const auto table = std::move(rows).build(".", "", triglub::shortest_texts(), {});
  EXPECT_THAT(column_texts(*table, "lddate"), ElementsAre("1", "-9999999999.99900"));
}

TEST(TableBuilder, FillsRowsThatRepeatTheOneAbove) {
  TableBuilder rows(builtin_table("affiliation"));
  add_cells(&rows, {"A", "X", "1"});
  ASSERT_TRUE(rows.begin_row());
  ASSERT_TRUE(rows.begin_row());
  rows.column(1).fill(2);
  ASSERT_TRUE(rows.column(1).add("Y"));
  ASSERT_TRUE(rows.begin_row());
  rows.column(0).fill(3);
  rows.column(0).repeat(0);
  rows.fill();
  const auto table = std::move(rows).build(".", "", triglub::shortest_texts(), {});
  EXPECT_THAT(column_texts(*table, "net"), ElementsAre("A", "A", "A", "A"));
  EXPECT_THAT(column_texts(*table, "sta"), ElementsAre("X", "X", "Y", "Y"));
  EXPECT_THAT(column_texts(*table, "lddate"), ElementsAre("1", "1", "1", "1"));
}

TEST(TableBuilder, AppendsWhatAnotherThreadHasBuilt) {
  for (const unsigned int threads : {1U, 3U}) {
    const SetThreads set(threads);
    TableBuilder rows(builtin_table("affiliation"));
    TableBuilder more(builtin_table("affiliation"));
    TableBuilder none(builtin_table("affiliation"));
    add_cells(&rows, {"A", "X", "1"});
    add_cells(&rows, {"B", "", "2"});
    add_cells(&more, {"C", "Y", ""});
    add_cells(&more, {"A", "X", "4"});
    ASSERT_TRUE(rows.append(std::move(none)));
    ASSERT_TRUE(rows.append(std::move(more)));
    EXPECT_EQ(rows.row_count(), 4u);
    const auto table = std::move(rows).build(".", "", triglub::shortest_texts(), {});
    EXPECT_THAT(column_texts(*table, "net"), ElementsAre("A", "B", "C", "A"));
    EXPECT_THAT(column_texts(*table, "sta"), ElementsAre("X", "-", "Y", "X"));
    EXPECT_THAT(column_texts(*table, "lddate"), ElementsAre("1", "2", "-9999999999.99900", "4"));
    EXPECT_EQ(table->column(0).dictionary.size(), 4u);
  }
}

TEST(TableBuilder, HoldsTheLimitOfRows) {
  TableBuilder rows(builtin_table("affiliation"), 3);
  TableBuilder two(builtin_table("affiliation"), 3);
  add_cells(&rows, {"A", "", ""});
  add_cells(&rows, {"B", "", ""});
  add_cells(&two, {"C", "", ""});
  add_cells(&two, {"D", "", ""});
  EXPECT_FALSE(rows.append(std::move(two)));
  EXPECT_EQ(rows.row_count(), 2u);
  EXPECT_TRUE(rows.begin_row());
  EXPECT_FALSE(rows.begin_row());
  EXPECT_EQ(rows.row_count(), 3u);
}

TEST(TableBuilder, GivesATableOfItsOwnPlaces) {
  const auto table = affiliation_of({{"A", "", ""}, {"B", "", ""}});
  EXPECT_EQ(table->place_of(0), "row 1");
  EXPECT_EQ(table->place_of(1), "row 2");
  EXPECT_EQ(table->directory(), ".");
}

}  // namespace
}  // namespace triglub_test
