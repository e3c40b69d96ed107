// What a table makes of its values when it is first asked for: once, whichever thread asks.
#include "engine/table/table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "built_table.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using triglub::JoinColumn;
using triglub::kNoCode;
using triglub::Table;

std::unique_ptr<const Table> thousand_rows(int first) {
  std::vector<std::vector<std::string>> rows;
  for (int i = first; i < first + 1000; ++i) {
    rows.push_back({"N" + std::to_string(i % 7), "S" + std::to_string(i / 3), std::to_string(i)});
  }
  return affiliation_of(rows);
}

// What one thread finds of two tables; the places of what was made tell whether others have found the same.
struct Found {
  const void* dictionary = nullptr;
  const void* ranks = nullptr;
  const void* index = nullptr;
  const void* mapping = nullptr;
  std::string text;

  friend bool operator==(const Found&, const Found&) = default;
};

Found find_all(const Table& table, const Table& other) {
  Found found;
  found.dictionary = table.text_codes(2).dictionary;
  found.ranks = &table.text_ranks(1);
  found.index = &table.join_index({JoinColumn{0, false}, JoinColumn{1, false}});
  found.mapping = &table.dictionary_mapping(other.column(1).dictionary, 1);
  found.text = table.text(2, 999);
  return found;
}

TEST(Table, IsSharedByThreads) {
  for (int round = 0; round < 20; ++round) {
    const auto table = thousand_rows(0);
    const auto other = thousand_rows(500);
    std::vector<Found> found(8);
    std::vector<std::thread> threads;
    for (Found& mine : found) threads.emplace_back([&] { mine = find_all(*table, *other); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(found.front().text, "999");
    for (const Found& mine : found) EXPECT_EQ(mine, find_all(*table, *other));
  }
}

TEST(Table, MapsTheTextsOfAnotherDictionary) {
  const auto table = affiliation_of({{"A", "X", ""}, {"B", "Y", ""}, {"C", "Z", ""}});
  const auto other = affiliation_of({{"C", "", ""}, {"D", "", ""}, {"A", "", ""}, {"B", "", ""}});
  EXPECT_THAT(table->dictionary_mapping(other->column(0).dictionary, 0), ElementsAre(0u, 3u, kNoCode, 1u, 2u));
  EXPECT_THAT(table->dictionary_mapping(other->column(0).dictionary, 1),
              ElementsAre(0u, kNoCode, kNoCode, kNoCode, kNoCode));
}

TEST(Table, TellsTheOrderOfItsTexts) {
  const auto table = affiliation_of({{"B", "", ""}, {"A", "", ""}, {"C", "", ""}});
  EXPECT_THAT(table->text_ranks(0), ElementsAre(0u, 2u, 1u, 3u));
}

TEST(Table, ReadsAnAbsentRowAsNull) {
  const auto table = affiliation_of({{"B", "", "5"}});
  EXPECT_EQ(table->text_codes(0)[triglub::kNoRow], triglub::kNullCode);
  EXPECT_EQ(table->text_codes(2)[triglub::kNoRow], triglub::kNullCode);
  EXPECT_NE(table->text_codes(2)[0], triglub::kNullCode);
}

TEST(Table, OfChosenRowsIsAsIfThereWereNoOthers) {
  const auto table = affiliation_of({{"A", "X", "1"}, {"B", "Y", "2"}, {"C", "", ""}, {"B", "X", "4"}});
  const auto some = table->of_rows({1, 2, 3});
  EXPECT_THAT(column_texts(*some, "net"), ElementsAre("B", "C", "B"));
  EXPECT_THAT(column_texts(*some, "sta"), ElementsAre("Y", "-", "X"));
  EXPECT_THAT(column_texts(*some, "lddate"), ElementsAre("2", "-9999999999.99900", "4"));
  EXPECT_THAT(some->column(0).codes, ElementsAre(1u, 2u, 1u)) << "codes in the order in which texts come";
  EXPECT_EQ(some->column(0).dictionary.size(), 3u);
  EXPECT_EQ(some->place_of(0), "row 2") << "places stay";
  EXPECT_EQ(some->of_rows({2})->place_of(0), "row 4");
  EXPECT_EQ(table->of_rows({})->row_count(), 0u);
}

}  // namespace
}  // namespace triglub_test
