// Year-days, epoch seconds and their texts in expressions.
#include <gtest/gtest.h>

#include "station.h"

namespace triglub::expression {
namespace {

void expect_texts(std::initializer_list<Case> cases) {
  for (const auto& [expression, text] : cases) EXPECT_EQ(text_at_station(expression), text) << expression;
}

TEST(TimeFunctions, GoBetweenYearDaysAndEpochs) {
  expect_texts({
      {"epoch(1970001)", "0"},
      {"epoch(1970002)", "86400"},
      {"epoch(ondate) == time", "1"},
      {"epoch(1969365)", "-86400"},
      {"yearday(0)", "1970001"},
      {"yearday(86399.999)", "1970001"},
      {"yearday(-0.001)", "1969365"},
      {"yearday(time) == ondate", "1"},
      {"yearday(epoch(ondate) + 86400)", "2001002"},
      {"epoch(yearday(time + 3600)) == time", "1"},
  });
}

TEST(TimeFunctions, GiveNullForWhatIsNoDate) {
  for (const std::string_view expression :
       {"epoch(-1)", "epoch(offdate)", "epoch(0)", "epoch(2001000)", "epoch(2001366)", "epoch(9999366)",
        "epoch(4294967296 + 1970001)", "epoch(9223372036854775807)"}) {
    EXPECT_EQ(real_at_station(expression), -9999999999.999) << expression;
  }
  expect_texts({{"yearday(1e15)", "-1"}, {"yearday(-1e15)", "-1"}, {"epoch(2000366) > 0", "1"}});
}

TEST(TimeFunctions, WriteTimesAsTheFormatSays) {
  expect_texts({
      {"strtime(0, '%G')", "1970-01-01"},
      {"strtime(time + 0.5, '%GT%H:%M:%S.%u')", "2001-01-01T00:00:00.500"},
      {"strtime(epoch(ondate), '%Y-%j')", "2001-001"},
      {"strtime(0, '')", ""},
      {"strtime(0, sta)", "AAK"},
      {"strtime(1e15, '%G')", ""},
      {"concat(strtime(0, '%Y'), '/', strtime(86400, '%j'))", "1970/002"},
  });
}

}  // namespace
}  // namespace triglub::expression
