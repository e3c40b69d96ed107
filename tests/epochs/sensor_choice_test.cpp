#include "epochs/sensor_choice.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace triglub {
namespace {

constexpr std::int64_t kNull = -1;

HeldRow sensor(std::uint32_t row, Span span, std::int64_t chanid) { return {span, 0, row, chanid}; }

std::string row_text(const HeldRow* row) { return row == nullptr ? "-" : std::to_string(row->row); }

// The rows chosen at the instants 0 to 9.
std::string chosen(const HeldRows& sensors, std::optional<std::int64_t> chanid) {
  SensorChoice choice;
  choice.start(sensors, kNull);
  std::string rows;
  for (Instant t = 0; t < 10; ++t) rows += row_text(choice.at(t, chanid));
  return rows;
}

struct Case {
  const char* what;
  HeldRows sensors;
  std::string under_none;
  std::string under_7;
};

const Case kCases[] = {
    {"without chanids", {sensor(1, {0, 6}, kNull), sensor(2, {4, 8}, kNull)}, "11112222--", "11112222--"},
    {"another's is not seen", {sensor(1, {0, 6}, 8)}, "111111----", "----------"},
    {"one's own", {sensor(1, {0, 6}, 7)}, "111111----", "111111----"},
    {"below another's", {sensor(1, {0, 6}, 7), sensor(2, {2, 4}, 8)}, "112211----", "111111----"},
    {"nobody's below another's", {sensor(1, {0, 6}, kNull), sensor(2, {2, 9}, 8)}, "112222222-", "111111----"},
    {"the later of nobody's and one's own",
     {sensor(1, {0, 9}, 7), sensor(2, {1, 3}, kNull), sensor(3, {5, 9}, 8)},
     "122113333-",
     "122111111-"},
    {"nobody's covered by another's, with one's own below",
     {sensor(1, {0, 9}, 7), sensor(2, {1, 5}, kNull), sensor(3, {2, 9}, 8)},
     "123333333-",
     "122221111-"},
};

TEST(SensorChoice, TakesTheStandingSensorAmongThoseThatMayBelong) {
  for (const Case& c : kCases) {
    EXPECT_EQ(chosen(c.sensors, std::nullopt), c.under_none) << c.what;
    EXPECT_EQ(chosen(c.sensors, 7), c.under_7) << c.what;
  }
}

TEST(SensorChoice, TheChanidMayChangeOnTheWay) {
  const HeldRows sensors = {sensor(1, {0, 9}, 7), sensor(2, {1, 9}, 8)};
  SensorChoice choice;
  choice.start(sensors, kNull);
  EXPECT_EQ(row_text(choice.at(2, 8)), "2");
  EXPECT_EQ(row_text(choice.at(3, 7)), "1");
  EXPECT_EQ(row_text(choice.at(4, 9)), "-");
  EXPECT_EQ(row_text(choice.at(5, 8)), "2");
  EXPECT_EQ(row_text(choice.at(6, std::nullopt)), "2");
}

TEST(SensorChoice, AnyWithinLooksAtTheWholeSpanAndAtOnesOwnOnly) {
  const HeldRows sensors = {sensor(1, {2, 4}, 7), sensor(2, {6, 8}, kNull)};
  SensorChoice choice;
  choice.start(sensors, kNull);
  const auto any = [&](Span span, std::optional<std::int64_t> chanid) { return choice.any_within(span, chanid); };
  EXPECT_TRUE(any({0, 3}, 7));
  EXPECT_FALSE(any({0, 2}, 7));
  EXPECT_FALSE(any({4, 6}, 7));
  EXPECT_FALSE(any({0, 6}, 8));
  EXPECT_TRUE(any({0, 7}, 8));
  EXPECT_TRUE(any({3, 4}, std::nullopt));
  EXPECT_FALSE(any({4, 6}, std::nullopt));
  EXPECT_TRUE(any({kPast, kFuture}, 9));
}

TEST(SensorChoice, ForgetsTheSensorsOfTheChannelBefore) {
  SensorChoice choice;
  const HeldRows first = {sensor(1, {0, 9}, 7), sensor(2, {1, 9}, 8)};
  choice.start(first, kNull);
  EXPECT_EQ(row_text(choice.at(2, 7)), "1");
  EXPECT_TRUE(choice.any_within({0, 9}, 7));
  const HeldRows second = {sensor(3, {5, 9}, 8)};
  choice.start(second, kNull);
  EXPECT_EQ(row_text(choice.at(6, 7)), "-");
  EXPECT_FALSE(choice.any_within({0, 9}, 7));
  EXPECT_EQ(row_text(choice.at(6, 8)), "3");
}

struct ContradictionCase {
  const char* what;
  HeldRows sensors;  // in order
  std::string told;
};

const ContradictionCase kContradictions[] = {
    {"one after the other", {sensor(1, {0, 5}, kNull), sensor(2, {5, 9}, kNull)}, ""},
    {"without chanids", {sensor(1, {0, 9}, kNull), sensor(2, {1, 2}, kNull), sensor(3, {3, 4}, kNull)}, "1-2 1-3 "},
    {"of two chanids", {sensor(1, {0, 9}, 7), sensor(2, {1, 9}, 8)}, ""},
    {"of one chanid under a longer one of another",
     {sensor(1, {0, 9}, 7), sensor(2, {1, 4}, 8), sensor(3, {2, 5}, 8)},
     "2-3 "},
    {"one without a chanid contradicts any",
     {sensor(1, {0, 9}, 7), sensor(2, {1, 9}, kNull), sensor(3, {2, 9}, 8)},
     "1-2 2-3 "},
    {"of one's own and those without the longer",
     {sensor(1, {0, 4}, kNull), sensor(2, {1, 9}, 7), sensor(3, {3, 9}, 7)},
     "1-2 2-3 "},
};

TEST(SensorChoice, SensorsOfTwoChannelRowsDoNotContradictEachOther) {
  for (const ContradictionCase& c : kContradictions) {
    std::string told;
    find_sensor_contradictions(c.sensors, kNull, [&](const HeldRow& earlier, const HeldRow& later) {
      told += row_text(&earlier) + "-" + row_text(&later) + " ";
    });
    EXPECT_EQ(told, c.told) << c.what;
  }
}

}  // namespace
}  // namespace triglub
