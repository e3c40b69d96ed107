#include "epochs/keyed_rows.h"

#include <gmock/gmock.h>

#include "support/made_database.h"

namespace triglub {
namespace {

using testing::ElementsAre;
using triglub_test::MadeDatabase;
using triglub_test::MadeRows;

TEST(TextNumbers, AreInTheOrderOfBytesAndLeaveOutNull) {
  const MadeDatabase made({{"site", {{"sta", "b"}}},
                           {"site", {{"sta", "-"}}},
                           {"site", {{"sta", "B"}}},
                           {"sitechan", {{"sta", "a"}}},
                           {"sitechan", {{"sta", "b"}}}});
  const TextColumn sites = TableColumns(made.table("site")).texts("sta");
  const TextColumn channels = TableColumns(made.table("sitechan")).texts("sta");
  const TextNumbers numbers({&sites, &channels});
  ASSERT_EQ(numbers.size(), 3U);
  EXPECT_EQ(numbers.text(0), "B");
  EXPECT_EQ(numbers.text(1), "a");
  EXPECT_EQ(numbers.text(2), "b");
  EXPECT_EQ(numbers.find("a"), 1U);
  for (const char* absent : {"", "-", "A", "c", "ab"}) EXPECT_EQ(numbers.find(absent), TextNumbers::kNone) << absent;
  const std::vector<std::uint32_t> by_code = numbers.by_code(sites);
  EXPECT_EQ(by_code[sites.codes()[0]], 2U);
  EXPECT_EQ(by_code[sites.codes()[1]], TextNumbers::kNone);
}

class KeyedSensors : public testing::Test {
 protected:
  // The sensors of a database under the channels of its sitechan.
  static KeyedRows keyed(const MadeDatabase& made) {
    const TableColumns sitechan(made.table("sitechan"));
    const TextColumn stations = sitechan.texts("sta");
    const TextColumn channels = sitechan.texts("chan");
    const TableColumns sensor(made.table("sensor"));
    return {sensor.row_count(), RowKeys(sensor, TextNumbers({&stations}), TextNumbers({&channels}))};
  }

  static std::vector<std::uint32_t> rows_of(const KeyedRows& keyed, ChannelKey key) {
    std::vector<std::uint32_t> rows;
    KeyCursor(keyed, key).visit(key, [&](std::uint32_t row) { rows.push_back(row); });
    return rows;
  }

  static std::pair<std::string, triglub_test::FieldTexts> row(const char* table, const char* sta, const char* chan) {
    return {table, {{"sta", sta}, {"chan", chan}}};
  }
};

constexpr ChannelKey key_of(std::uint32_t station, std::uint32_t channel) {
  return ChannelKey{station} << 32 | channel;
}

TEST_F(KeyedSensors, AnUnsortedTableIsReadInTheOrderOfKeysAndRows) {
  const MadeDatabase made({row("sitechan", "A", "X"), row("sitechan", "A", "Y"), row("sitechan", "B", "X"),
                           row("sensor", "B", "X"), row("sensor", "A", "Y"), row("sensor", "B", "X"),
                           row("sensor", "A", "X")});
  const KeyedRows rows = keyed(made);
  EXPECT_THAT(rows_of(rows, key_of(0, 0)), ElementsAre(3));
  EXPECT_THAT(rows_of(rows, key_of(0, 1)), ElementsAre(1));
  EXPECT_THAT(rows_of(rows, key_of(1, 0)), ElementsAre(0, 2));
  EXPECT_THAT(rows_of(rows, key_of(1, 1)), ElementsAre());
  EXPECT_EQ(rows.find(key_of(1, 0)), 2U);
  EXPECT_EQ(rows.find(key_of(1, 1)), 4U);
}

TEST_F(KeyedSensors, NullAndForeignTextsHaveNoChannel) {
  const MadeDatabase made({row("sitechan", "A", "X"), row("sensor", "-", "X"), row("sensor", "A", "-"),
                           row("sensor", "A", "Q"), row("sensor", "Q", "X"), row("sensor", "A", "X")});
  const KeyedRows rows = keyed(made);
  EXPECT_THAT(rows_of(rows, key_of(0, 0)), ElementsAre(4));
  EXPECT_THAT(rows_of(rows, kNoChannel), ElementsAre(0, 1, 2, 3));
  EXPECT_EQ(rows.key_of_row(0), kNoChannel);
}

TEST_F(KeyedSensors, ACursorGoesForwardOverKeysThatNobodyAskedFor) {
  const MadeDatabase made({row("sitechan", "A", "X"), row("sitechan", "B", "X"), row("sitechan", "C", "X"),
                           row("sensor", "A", "X"), row("sensor", "B", "X"), row("sensor", "C", "X")});
  const KeyedRows rows = keyed(made);
  KeyCursor cursor(rows, key_of(0, 0));
  std::vector<std::uint32_t> visited;
  const auto note = [&](std::uint32_t row) { visited.push_back(row); };
  cursor.visit(key_of(0, 0), note);
  cursor.visit(key_of(2, 0), note);
  EXPECT_THAT(visited, ElementsAre(0, 2));
}

}  // namespace
}  // namespace triglub
