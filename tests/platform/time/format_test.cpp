#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <limits>
#include <random>
#include <string>

#include "platform/timeconv.h"
#include "support/random_seed.h"

namespace {

TEST(EpochText, KnowsEveryFormatLetter) {
  const double time = 1709164802.25;  // 2024-02-29 00:00:02.250
  const struct {
    const char* format;
    const char* text;
  } cases[] = {
      {"%Y", "2024"},
      {"%m", "02"},
      {"%d", "29"},
      {"%H", "00"},
      {"%M", "00"},
      {"%S", "02"},
      {"%j", "060"},
      {"%G", "2024-02-29"},
      {"%u", "250"},
      {"%%", "%"},
      {"%GT%H:%M:%S.%u", "2024-02-29T00:00:02.250"},
      {"%Y%j", "2024060"},
      {"%Y%Y", "20242024"},
      {"", ""},
      {"no letters", "no letters"},
  };
  for (const auto& c : cases) EXPECT_STREQ(epoch2str(time, c.format), c.text) << c.format;
}

TEST(EpochText, LeavesUnknownLettersAsTheyAre) {
  EXPECT_STREQ(epoch2str(0, "%q"), "%q");
  EXPECT_STREQ(epoch2str(0, "%"), "%");
  EXPECT_STREQ(epoch2str(0, "%Y%"), "1970%");
  EXPECT_STREQ(epoch2str(0, "%%Y"), "%Y");
  EXPECT_STREQ(epoch2str(0, "%%%Y"), "%1970");
  EXPECT_STREQ(epoch2str(0, "%g%y%s"), "%g%y%s");
  EXPECT_STREQ(epoch2str(0, "%\xC3\xA9"), "%\xC3\xA9");
}

TEST(EpochText, ShowsInstantsOfTheWholeCalendar) {
  const struct {
    double time;
    const char* text;
  } cases[] = {
      {0.0, "1970-01-01T00:00:00"},
      {-1.0, "1969-12-31T23:59:59"},
      {-0.5, "1969-12-31T23:59:59"},
      {86399.0, "1970-01-01T23:59:59"},
      {951782400.0, "2000-02-29T00:00:00"},
      {-2203977600.0, "1900-02-28T00:00:00"},
      {-2203891200.0, "1900-03-01T00:00:00"},
      {253402300799.0, "9999-12-31T23:59:59"},
      {-62135596800.0, "0001-01-01T00:00:00"},
      {-9999999999.999, "1653-02-10T06:13:20"},
  };
  for (const auto& c : cases) EXPECT_STREQ(epoch2str(c.time, "%GT%H:%M:%S"), c.text);
}

TEST(EpochText, RoundsToTheNearestMillisecondAndCarries) {
  const struct {
    double time;
    const char* text;
  } cases[] = {
      {0.0, "1970-01-01T00:00:00.000"},
      {0.0004, "1970-01-01T00:00:00.000"},
      {0.0005, "1970-01-01T00:00:00.001"},
      {0.9994, "1970-01-01T00:00:00.999"},
      {0.9996, "1970-01-01T00:00:01.000"},
      {59.9996, "1970-01-01T00:01:00.000"},
      {3599.9996, "1970-01-01T01:00:00.000"},
      {86399.9996, "1970-01-02T00:00:00.000"},
      {978307199.9996, "2001-01-01T00:00:00.000"},
      {0.0625, "1970-01-01T00:00:00.063"},   // a half that a double holds exactly
      {-0.0625, "1969-12-31T23:59:59.938"},  // -62.5 ms: up is towards the future
      {-0.0004, "1970-01-01T00:00:00.000"},
      {-1e-300, "1970-01-01T00:00:00.000"},
      {-0.001, "1969-12-31T23:59:59.999"},
      {-9999999999.999, "1653-02-10T06:13:20.001"},
  };
  for (const auto& c : cases) {
    EXPECT_STREQ(epoch2str(c.time, "%GT%H:%M:%S.%u"), c.text);
  }
}

TEST(EpochText, CutsToTheSecondBelowWithoutMilliseconds) {
  EXPECT_STREQ(epoch2str(0.9996, "%S"), "00");
  EXPECT_STREQ(epoch2str(59.9999, "%H:%M:%S"), "00:00:59");
  EXPECT_STREQ(epoch2str(-0.0001, "%G %H:%M:%S"), "1969-12-31 23:59:59");
}

TEST(EpochText, RoundsWheneverMillisecondsAreShownAnywhere) {
  EXPECT_STREQ(epoch2str(0.9996, "%S"), "00");
  EXPECT_STREQ(epoch2str(0.9996, "%S %u"), "01 000");
  EXPECT_STREQ(epoch2str(0.9996, "%u %S"), "000 01");
  EXPECT_STREQ(epoch2str(0.9996, "%S %%u"), "00 %u");
  EXPECT_STREQ(epoch2str(0.9996, "%S %%%u"), "01 %000");
}

TEST(EpochText, IsEmptyOutsideTheCalendar) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  for (const double no_time :
       {253402300800.0, -62135596801.0, -62135596800.001, 1e18, -1e300, kInfinite, -kInfinite, std::nan("")}) {
    EXPECT_STREQ(epoch2str(no_time, "%G"), "") << no_time;
    EXPECT_STREQ(epoch2str(no_time, "%u"), "") << no_time;
    EXPECT_EQ(triglub::format_epoch(no_time, "plain text"), "") << no_time;
  }
}

TEST(EpochText, HasNoYear10000ToCarryInto) {
  EXPECT_STREQ(epoch2str(253402300799.9994, "%G %H:%M:%S.%u"), "9999-12-31 23:59:59.999");
  EXPECT_STREQ(epoch2str(253402300799.9996, "%G %H:%M:%S.%u"), "");
  EXPECT_STREQ(epoch2str(253402300799.9996, "%G %H:%M:%S"), "9999-12-31 23:59:59");
}

TEST(EpochText, StaysValidForSevenMoreCalls) {
  std::array<const char*, 8> texts{};
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = epoch2str(static_cast<double>(i), "%S and some more text");
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(texts[i], std::string("0").append(std::to_string(i)).append(" and some more text"));
  }
}

TEST(EpochText, HasNoLimitOfLength) {
  const std::string longest(100000, 'x');
  EXPECT_EQ(epoch2str(0, (longest + "%Y").c_str()), longest + "1970");
}

TEST(EpochText, IsTheSameAsAStringOfItsOwn) {
  EXPECT_EQ(triglub::format_epoch(1.5, "%GT%H:%M:%S.%u"), "1970-01-01T00:00:01.500");
}

// The C library's calendar, for whole milliseconds.
std::string plain_text(long long milliseconds) {
  long long second = milliseconds / 1000;
  long long rest = milliseconds % 1000;
  if (rest < 0) {
    rest += 1000;
    --second;
  }
  const auto when = static_cast<std::time_t>(second);
  std::tm parts{};
  gmtime_r(&when, &parts);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d (%03d) %02d:%02d:%02d.%03lld", parts.tm_year + 1900,
                parts.tm_mon + 1, parts.tm_mday, parts.tm_yday + 1, parts.tm_hour, parts.tm_min, parts.tm_sec, rest);
  return text.data();
}

TEST(EpochText, AgreesWithTheCLibraryAtRandomMilliseconds) {
  std::mt19937_64 random(triglub_test::random_seed());
  std::uniform_int_distribution<long long> any(-62135596800000, 253402300799999);
  for (int i = 0; i < 100000; ++i) {
    const long long milliseconds = any(random);
    const double time = static_cast<double>(milliseconds) / 1000;
    ASSERT_EQ(epoch2str(time, "%Y-%m-%d (%j) %H:%M:%S.%u"), plain_text(milliseconds)) << milliseconds;
  }
}

TEST(EpochText, RoundsUpFromEveryHalfThatWasWrittenAsOne) {
  std::mt19937_64 random(triglub_test::random_seed());
  const char* format = "%Y-%m-%d (%j) %H:%M:%S.%u";
  for (const double magnitude : {1.0, 1e3, 1e6, 1e9, 4e9, 5e10}) {
    std::uniform_int_distribution<long long> any(0, static_cast<long long>(magnitude * 1000));
    for (int i = 0; i < 5000; ++i) {
      const long long below = any(random);
      const std::string decimals = std::to_string(1000 + below % 1000).substr(1) + "5";
      const double half = std::stod(std::to_string(below / 1000) + "." + decimals);
      ASSERT_EQ(epoch2str(half, format), plain_text(below + 1)) << below;
      ASSERT_EQ(epoch2str(std::nextafter(half, -1e12), format), plain_text(below)) << below;
      ASSERT_EQ(epoch2str(-half, format), plain_text(-below)) << below;
      ASSERT_EQ(epoch2str(std::nextafter(-half, -1e12), format), plain_text(-below - 1)) << below;
    }
  }
}

TEST(EpochText, RoundsAtEveryHalfOnTheRightSide) {
  // m + 1/2 milliseconds, where a double holds it, and its neighbours on both sides.
  for (const double whole : {0.0, 1.0, 1234567.0, 978307200.0, 4102444800.0, -1.0, -978307200.0}) {
    for (const int sixteenths : {1, 3, 5, 7, 9, 11, 13, 15}) {
      const double half = whole + sixteenths / 16.0;
      const auto above = static_cast<long long>(whole) * 1000 + (sixteenths * 125 + 1) / 2;
      const char* format = "%G (%j) %H:%M:%S.%u";
      EXPECT_EQ(epoch2str(half, format), plain_text(above)) << half;
      EXPECT_EQ(epoch2str(std::nextafter(half, 1e12), format), plain_text(above)) << half;
      EXPECT_EQ(epoch2str(std::nextafter(half, -1e12), format), plain_text(above - 1)) << half;
    }
  }
}

}  // namespace
