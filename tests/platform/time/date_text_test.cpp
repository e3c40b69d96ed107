// Dates as others write them into tables, and nearly.
#include "time/date_text.h"

#include <gtest/gtest.h>

namespace {

using triglub::read_date_text;

constexpr double kDay = 1393804800;  // 2014-03-03
constexpr double kTime = kDay + 11 * 3600 + 7 * 60 + 6;

TEST(DateText, IsReadInEveryForm) {
  const struct {
    const char* text;
    double time;
  } cases[] = {
      {"2014-03-03", kDay},
      {"2014-03-03T110706", kTime},
      {"2014-03-03T110706.25", kTime + 0.25},
      {"2014-03-03T1107", kTime - 6},
      {"2014-03-03T11:07:06", kTime},
      {"2014-03-03T11:07:06Z", kTime},
      {"2014-03-03T11:07:06.25Z", kTime + 0.25},
      {"2014-03-03 11:07:06", kTime},
      {"2014-03-03 11:07", kTime - 6},
      {"20140303T110706", kTime},
      {"20140303T110706Z", kTime},
      {"20140303 11:07:06", kTime},
      {"2014/03/03", kDay},
      {"2014/03/03 11:07:06", kTime},
      {"14-03-03 11:07:06", kTime},
      {"70-01-01 00:00:00", 0},
      {"69-12-31 23:59:59", 3155759999},
      {"03-MAR-14", kDay},
      {"03-Mar-2014", kDay},
      {"03-mar-14 11:07:06", kTime},
      {"01-JAN-70", 0},
      {"31-DEC-1969", -86400},
      {"1969-12-31T23:59:59", -1},
  };
  for (const auto& c : cases) {
    double time = 0.5;
    EXPECT_TRUE(read_date_text(c.text, &time)) << c.text;
    EXPECT_EQ(time, c.time) << c.text;
    EXPECT_TRUE(triglub::may_be_date_text(c.text)) << c.text;
  }
}

TEST(DateText, KnowsEveryMonthByItsName) {
  const char* const texts[] = {"01-JAN-70", "01-FEB-70", "01-MAR-70", "01-APR-70", "01-MAY-70", "01-JUN-70",
                               "01-JUL-70", "01-AUG-70", "01-SEP-70", "01-OCT-70", "01-NOV-70", "01-DEC-70"};
  const int days[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  for (int month = 0; month < 12; ++month) {
    double time = 0.5;
    EXPECT_TRUE(read_date_text(texts[month], &time));
    EXPECT_EQ(time, days[month] * 86400.0) << texts[month];
  }
}

TEST(DateText, IsNotExpectedInPlainNumbers) {
  for (const char* text : {"", "-1", "1393804800", "-9999999999.99900", " 946684800.00000", "20140303", "17e8"}) {
    EXPECT_FALSE(triglub::may_be_date_text(text)) << text;
  }
}

TEST(DateText, IsNothingElse) {
  for (const char* text : {"",
                           "-",
                           "20140303",
                           "1700000000.5",
                           "2014062",
                           "2014-13-03",
                           "2014-02-29",
                           "2014-3-3",
                           "2014-03/03",
                           "2014-0303",
                           "2014-03-03T",
                           "2014-03-03T24:00:00",
                           "2014-03-03T11:60:00",
                           "2014-03-03T11:07:60",
                           "2014-03-03T11",
                           "2014-03-03T11070",
                           "2014-03-03T240000",
                           "2014-03-03T116000",
                           "2014-03-03T110760",
                           "2014-03-03T110706.",
                           "2014-03-03T110706x",
                           "2014-03-03T11:07:06 UTC",
                           "2014-03-03x",
                           " 2014-03-03",
                           "2014-03-03 ",
                           "20140332T110706",
                           "14-03-03",
                           "14-03-03 11:07",
                           "14/03/03 11:07:06",
                           "3-MAR-14",
                           "03-MARCH-14",
                           "03-ANF-14",
                           "03-MA",
                           "03-MAR-014",
                           "30-FEB-14",
                           "03-MAR-14 1107",
                           "0000-01-01"}) {
    double time = 0.5;
    EXPECT_FALSE(read_date_text(text, &time)) << text;
    EXPECT_EQ(time, 0.5) << text;
  }
}

}  // namespace
