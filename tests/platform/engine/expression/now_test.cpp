// now(): fixed for the process. Every test here is a process of its own.
#include "engine/expression/now.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "platform/elog.h"
#include "station.h"

namespace triglub::expression {
namespace {

TEST(Now, IsTheClockInWholeSeconds) {
  unsetenv("SOURCE_DATE_EPOCH");
  const auto before = static_cast<double>(std::time(nullptr));
  const double answer = now();
  EXPECT_GE(answer, before);
  EXPECT_LE(answer, static_cast<double>(std::time(nullptr)));
  EXPECT_EQ(real_at_station("now()"), answer);
  EXPECT_EQ(text_at_station("now() == floor(now())"), "1");
}

TEST(Now, HonoursSourceDateEpochAndStaysAsItWas) {
  setenv("SOURCE_DATE_EPOCH", "1700000001", 1);
  EXPECT_EQ(text_at_station("now()"), "1700000001");
  setenv("SOURCE_DATE_EPOCH", "1800000000", 1);
  EXPECT_EQ(real_at_station("now()"), 1700000001.0);
}

void expect_clock_and_complaint(const char* setting) {
  std::string heard;
  elog_set_sink([](ElogLevel, const char* text, void* context) { *static_cast<std::string*>(context) += text; },
                &heard);
  setenv("SOURCE_DATE_EPOCH", setting, 1);
  const auto before = static_cast<double>(std::time(nullptr));
  EXPECT_GE(now(), before);
  elog_set_sink(nullptr, nullptr);
  EXPECT_EQ(heard, std::string("SOURCE_DATE_EPOCH is \"") + setting +
                       "\", expected seconds since 1970; now() is the clock's time");
}

TEST(Now, ComplainsOfAnEmptySetting) { expect_clock_and_complaint(""); }
TEST(Now, ComplainsOfANegativeSetting) { expect_clock_and_complaint("-5"); }
TEST(Now, ComplainsOfADateForASetting) { expect_clock_and_complaint("2020-01-01"); }

}  // namespace
}  // namespace triglub::expression
