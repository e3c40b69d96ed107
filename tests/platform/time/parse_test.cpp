// Texts that are times, and nearly.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "platform/timeconv.h"
#include "support/random_seed.h"

namespace {

TEST(TimeText, IsReadInEveryForm) {
  const struct {
    const char* text;
    double time;
  } cases[] = {
      {"0", 0},
      {"-1", -1},
      {"978307200.5", 978307200.5},
      {"+5", 5},
      {"1e3", 1000},
      {".5", 0.5},
      {"1e-400", 0},
      {"-9999999999.99900", -9999999999.999},
      {"  12.5\t", 12.5},
      {"1970001", 0},
      {"2000366", 978220800},
      {"1970001:00:01", 60},
      {"1970001:01:00:00", 3600},
      {"1970001 01:00:00.5", 3600.5},
      {"1970001 \t 01:00", 3600},
      {"1970-01-01", 0},
      {"1970/01/01", 0},
      {"2000-02-29", 951782400},
      {"1969-12-31T23:59:59", -1},
      {"2001-01-01T00:00:00.25", 978307200.25},
      {"2001-01-01T00:00:00.25Z", 978307200.25},
      {"2001-01-01 00:00Z", 978307200},
      {"2001/01/01 00:00", 978307200},
      {"  2001-01-01  ", 978307200},
      {"0001-01-01", -62135596800},
      {"9999-12-31T23:59:59", 253402300799},
      {"93-06-01 12:30:15", 738937815},
      {"70-01-01 00:00:00", 0},
      {"69-12-31 00:00:00", 3155673600},  // 2069
      {"00-01-01 00:00:00", 946684800},
  };
  for (const auto& c : cases) {
    double time = -5;
    EXPECT_EQ(is_epoch_string(c.text, &time), 1) << c.text;
    EXPECT_EQ(time, c.time) << c.text;
    EXPECT_EQ(str2epoch(c.text), c.time) << c.text;
  }
}

TEST(TimeText, OfSevenDigitsThatAreNoYearDayIsANumber) {
  EXPECT_EQ(str2epoch("1970000"), 1970000);
  EXPECT_EQ(str2epoch("1970366"), 1970366);
  EXPECT_EQ(str2epoch("0000001"), 1);
  EXPECT_EQ(str2epoch("0001001"), -62135596800);
  EXPECT_EQ(str2epoch("197001"), 197001);
  EXPECT_EQ(str2epoch("19700010"), 19700010);
  EXPECT_EQ(str2epoch("1970001.0"), 1970001);
}

const struct {
  const char* what;
  std::vector<const char*> texts;
} NEARLY_RIGHT[] = {
    {"no number", {"", "   ", "-", "+", "+-5", "--5", "now", "nan", "inf", "-inf", "0x10", "1e999", "12 13", "1,5"}},
    {"no day", {"1970-13-01", "1970-00-01", "1970-02-29", "1970-01-32", "1970-01-00", "0000-01-01", "1970366 00:00"}},
    {"no date", {"1970-1-1", "1970-01/01", "1970/01-01", "1970.01.01", "19700-01-01", "1970-01-01Z"}},
    {"no place for a time",
     {"1970-01-01T", "1970-01-01TT00:00", "1970-01-01T 00:00", "1970-01-01t00:00", "1970-01-01:00:00"}},
    {"no time of the day",
     {"1970-01-01T24:00", "1970-01-01T23:60", "1970-01-01T23:59:60", "1970-01-01T23:59:99.5", "1970-01-01T-1:30"}},
    {"a time with digits missing",
     {"1970-01-01T23:59:59.", "1970-01-01T23:59:.5", "1970-01-01T23:59:5", "1970-01-01T23:5", "1970-01-01T23",
      "1970-01-01T2:30"}},
    {"more than a time",
     {"1970-01-01T23:59:59 Z", "1970-01-01T23:59:59ZZ", "1970-01-01T23:59:59+01:00", "1970-01-01T23:59:59x"}},
    {"no day of a year with a time", {"1970001T00:00", "1970001:", "1970001::00:00", "1970001 : 00:00"}},
    {"no year of two digits",
     {"93-06-01", "93-06-01 12:30", "93-06-01T12:30:15", "93/06/01 12:30:15", "93-02-29 12:30:15",
      "93-06-01 24:00:00"}},
};

TEST(TimeText, IsRefusedWhenItIsNearlyRight) {
  for (const auto& [what, texts] : NEARLY_RIGHT) {
    for (const char* text : texts) {
      SCOPED_TRACE(std::string(what) + ": " + text);
      double time = -5;
      EXPECT_EQ(is_epoch_string(text, &time), 0);
      EXPECT_EQ(time, -5);
      EXPECT_EQ(str2epoch(text), NULL_EPOCH);
    }
  }
}

TEST(TimeText, OfASecondWithManyDecimalsIsRoundedLikeAnyNumber) {
  EXPECT_EQ(str2epoch("1970-01-01T00:00:59.99999999999999999999"), 60);
  EXPECT_EQ(str2epoch("1970-01-01T00:00:00.1"), 0.1);
  EXPECT_EQ(str2epoch(("1970-01-01T00:00:01." + std::string(5000, '0')).c_str()), 1);
}

TEST(TimeText, CanBeAskedForWithoutAPlaceForTheTime) {
  EXPECT_EQ(is_epoch_string("2001-01-01", nullptr), 1);
  EXPECT_EQ(is_epoch_string("2001-13-01", nullptr), 0);
  EXPECT_EQ(is_epoch_string(nullptr, nullptr), 0);
  EXPECT_EQ(str2epoch(nullptr), NULL_EPOCH);
}

TEST(TimeText, GivesBackEveryTimeThatWasWritten) {
  std::mt19937_64 random(triglub_test::random_seed());
  std::uniform_int_distribution<long long> any(-62135596800, 253402300799);
  for (int i = 0; i < 20000; ++i) {
    const auto time = static_cast<double>(any(random));
    for (const char* format : {"%GT%H:%M:%SZ", "%Y/%m/%d %H:%M:%S", "%Y%j:%H:%M:%S", "%GT%H:%M:%S.%u"}) {
      const std::string text = epoch2str(time, format);
      ASSERT_EQ(str2epoch(text.c_str()), time) << text;
    }
  }
}

}  // namespace
