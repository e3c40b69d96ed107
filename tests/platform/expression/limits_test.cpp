// Input from strangers: as deep, as long and as greedy as can be.
#include <gtest/gtest.h>

#include "engine/expression/functions.h"
#include "station.h"

namespace triglub::expression {
namespace {

std::string repeated(std::string_view piece, std::size_t n) {
  std::string text;
  for (std::size_t i = 0; i < n; ++i) text += piece;
  return text;
}

struct NestCase {
  std::string_view open;
  std::string_view inside;
  std::string_view close;
  std::string_view value;
  std::size_t place;  // in a piece, of what opens a level
};

constexpr NestCase kNests[] = {
    {"(", "1", ")", "1", 0},       {"-", "1", "", "1", 0},       {"!", "1", "", "1", 0},
    {"abs(", "1", ")", "1", 3},    {"1?", "2", ":3", "2", 1},    {"0?2:", "3", "", "3", 1},
    {"1+(", "1", ")", "201", 2},   {"max(0,", "1", ")", "1", 3}, {"1||1&&1==1<1+1*(", "0", ")", "1", 15},
    {"concat(", "1", ")", "1", 6},
};

TEST(Limits, TakeTwoHundredLevelsOfNesting) {
  for (const NestCase& nest : kNests) {
    const std::string text =
        repeated(nest.open, kMaxNesting) + std::string(nest.inside) + repeated(nest.close, kMaxNesting);
    EXPECT_EQ(text_at_station(text), nest.value) << nest.open;
  }
}

TEST(Limits, RefuseOneLevelMore) {
  for (const NestCase& nest : kNests) {
    const std::string text =
        repeated(nest.open, kMaxNesting + 1) + std::string(nest.inside) + repeated(nest.close, kMaxNesting + 1);
    Fault fault{};
    EXPECT_EQ(compile(text, dbINTEGER, &fault), nullptr) << nest.open;
    EXPECT_EQ(fault.text.substr(0, fault.text.find('\n')), "expected at most 200 levels of nesting");
    EXPECT_EQ(fault.position, kMaxNesting * nest.open.size() + nest.place) << nest.open;
  }
}

TEST(Limits, CountLevelsThatAreOpenAtOnce) {
  EXPECT_EQ(text_at_station("0" + repeated("+(1)", 1000)), "1000");
  EXPECT_EQ(text_at_station("0" + repeated("+abs(-1)", 1000)), "1000");
}

TEST(Limits, TakeALongTextAndRefuseALongerOne) {
  const std::string fits = "1" + std::string(kMaxLength - 1, ' ');
  EXPECT_EQ(text_at_station(fits), "1");
  Fault fault{};
  EXPECT_EQ(compile(fits + " ", dbINTEGER, &fault), nullptr);
  EXPECT_EQ(fault.text, "expected at most 65536 bytes\n..." + std::string(80, ' ') + "\n" + std::string(82, ' ') + "^");
  EXPECT_EQ(fault.position, kMaxLength);
  EXPECT_EQ(compile(std::string(100'000'000, '('), dbINTEGER, &fault), nullptr);
}

TEST(Limits, ChainsMayBeAsLongAsTheText) {
  EXPECT_EQ(text_at_station("1" + repeated("+1", 32000)), "32001");
  EXPECT_EQ(text_at_station("0" + repeated("||0", 16000) + "||1"), "1");
  EXPECT_EQ(text_at_station("1" + repeated("&&1", 16000)), "1");
  EXPECT_EQ(text_at_station("1" + repeated("=~/1/", 10000)), "1");
  EXPECT_EQ(text_at_station("1" + repeated("<2", 30000)), "1");
  EXPECT_EQ(text_at_station("length(concat(''" + repeated(",1", 30000) + "))"), "30000");
  EXPECT_EQ(text_at_station("max(0" + repeated(",1", 30000) + ")"), "1");
}

TEST(Limits, UnclosedPilesAreRefusedNotFollowed) {
  for (const std::string_view piece : {"(", "-", "!", "1?", "f(", "1+(", "1&&", "'", "a=~/", "a=~/(/&&"}) {
    EXPECT_EQ(compile(repeated(piece, kMaxLength / piece.size())), nullptr) << piece;
  }
}

TEST(Limits, TextsGrowToAMebibyteAndNoFurther) {
  const auto doubled = [](int times) {
    return repeated("replace(", static_cast<std::size_t>(times)) + "'a'" +
           repeated(",'a','aa')", static_cast<std::size_t>(times));
  };
  EXPECT_EQ(text_at_station("length(" + doubled(20) + ")"), std::to_string(kMaxText));
  EXPECT_EQ(text_at_station("length(" + doubled(21) + ")"), "fails");
  EXPECT_EQ(text_at_station("length(" + doubled(190) + ")"), "fails");
  EXPECT_EQ(text_at_station("length(concat(" + doubled(19) + "," + doubled(19) + "))"), std::to_string(kMaxText));
  EXPECT_EQ(text_at_station("length(concat(" + doubled(19) + "," + doubled(19) + ",'a'))"), "fails");
  EXPECT_EQ(text_at_station("length(xml(concat('<'," + doubled(19) + ")))"), std::to_string(kMaxText / 2 + 4));
  EXPECT_EQ(text_at_station("length(xml(concat('<'," + doubled(19) + "," + doubled(18) + "," + doubled(18) + ")))"),
            "fails");
}

TEST(Limits, PatternsThatNeedTooMuchMemoryAreRefused) {
  Fault fault{};
  EXPECT_EQ(compile("sta =~ /((((a{100}){100}){100}){100}){100}/", dbINTEGER, &fault), nullptr);
  EXPECT_EQ(fault.text.rfind("expected a regular expression: ", 0), 0u) << fault.text;
}

}  // namespace
}  // namespace triglub::expression
