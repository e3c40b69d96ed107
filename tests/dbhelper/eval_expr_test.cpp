#include <gmock/gmock.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <locale>
#include <random>
#include <sstream>

#include "dbhelper.h"
#include "one_site.h"
#include "support/collected_log.h"
#include "support/random_seed.h"

namespace triglub_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using EvalExpr = OneSite;

Pf* parameters(const char* text) {
  Pf* pf = nullptr;
  if (pfparse(text, "test", &pf) != 0) throw std::runtime_error("pfparse");
  return pf;
}

// The complaints; the lines of the expression compiler, which come first, are its own business.
std::string last_line(const CollectedLog& log) { return log.lines().empty() ? "" : log.lines().back(); }

TEST(DateFormats, ComeFromTheParameterFile) {
  EXPECT_EQ(date_xml_with_ms_format, "Uninitialized. Initialize with date_formats_init.");
  EXPECT_EQ(date_xml_format, "Uninitialized. Initialize with date_formats_init.");
  const CollectedLog log;
  Pf* pf = parameters("epochtime_xmlstring_format %GT%H:%M:%S.%u\njdate_xmlstring_format %G\n");
  date_formats_init(pf);
  pffree(pf);
  EXPECT_EQ(date_xml_with_ms_format, "%GT%H:%M:%S.%u");
  EXPECT_EQ(date_xml_format, "%G");
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(DateFormats, AreEmptyAfterAComplaintWhenMissing) {
  const CollectedLog log;
  Pf* pf = parameters("root_node a\n");
  date_formats_init(pf);
  pffree(pf);
  EXPECT_EQ(date_xml_with_ms_format, "");
  EXPECT_EQ(date_xml_format, "");
  EXPECT_THAT(log.lines(), ElementsAre("warning: pfget_string: [epochtime_xmlstring_format] not found",
                                       "warning: pfget_string: [jdate_xmlstring_format] not found"));
}

TEST_F(EvalExpr, RendersNumbersInSixDigits) {
  const struct {
    const char* expr;
    int type;
    const char* text;
  } cases[] = {
      {"123.456789", dbREAL, "123.457"},
      {"1234567", dbREAL, "1.23457e+06"},
      {"12.5", dbREAL, "12.5"},
      {"40", dbREAL, "40"},
      {"100000", dbREAL, "100000"},
      {"999999.5", dbREAL, "1e+06"},
      {"0.0001", dbREAL, "0.0001"},
      {"0.00001", dbREAL, "1e-05"},
      {"-0.5", dbREAL, "-0.5"},
      {"calper * 2", dbREAL, "25"},
      {"978307200.12345", dbTIME, "9.78307e+08"},
      {"1234567", dbINTEGER, "1234567"},
      {"-17", dbINTEGER, "-17"},
      {"12.9", dbINTEGER, "12"},
      {"9007199254740993", dbINTEGER, "9007199254740993"},
      {"2001001", dbYEARDAY, "2001001"},
      {"inid", dbINTEGER, "-1"},
  };
  const Dbptr sensor = first("sensor");
  for (const auto& c : cases) EXPECT_EQ(eval_expr(sensor, c.expr, c.type), c.text) << c.expr;
}

TEST_F(EvalExpr, RendersRealsAsAStreamDoes) {
  std::mt19937_64 random(random_seed());
  std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
  std::uniform_int_distribution<int> exponent(-30, 30);
  const Dbptr sensor = first("sensor");
  for (int i = 0; i < 2000; ++i) {
    const double value = mantissa(random) * std::pow(10.0, exponent(random));
    char expr[64];
    std::snprintf(expr, sizeof expr, "%.17g", value);
    std::ostringstream expected;
    expected.imbue(std::locale::classic());
    expected << value;
    ASSERT_EQ(eval_expr(sensor, expr, dbREAL), expected.str()) << expr;
  }
}

// A program that embeds the library may have chosen a locale of its own.
class GroupedDigits : public std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST_F(EvalExpr, RendersNumbersTheSameInEveryLocale) {
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new GroupedDigits));
  const std::string real = eval_expr(first("sensor"), "123456.5", dbREAL);
  const std::string whole = eval_expr(first("sensor"), "1234567", dbINTEGER);
  std::locale::global(before);
  EXPECT_EQ(real, "123456");
  EXPECT_EQ(whole, "1234567");
}

TEST_F(EvalExpr, ComplainsAndGoesOnWithZero) {
  for (const char* expr : {"1 / 0", "nosuch + 1", "1 +"}) {
    for (const int type : {dbREAL, dbTIME, dbINTEGER, dbYEARDAY}) {
      const CollectedLog log;
      EXPECT_EQ(eval_expr(first("sensor"), expr, type), "0") << expr;
      EXPECT_EQ(last_line(log), std::string("warning: dbex_evalstr failure [") + expr + "]");
    }
  }
}

TEST_F(EvalExpr, EndsTheProcessForATypeThatIsNoNumber) {
  const Dbptr sensor = first("sensor");
  for (const int type : {int{dbSTRING}, 0, 1, 7, -1}) {
    EXPECT_EXIT(eval_expr(sensor, "sta", type), ::testing::ExitedWithCode(1), "fatal:  unknown evaluation") << type;
  }
}

using EvalEpoch = OneSite;

TEST_F(EvalEpoch, RendersTimesWithMilliseconds) {
  const struct {
    const char* expr;
    const char* text;
  } cases[] = {
      {"time", "2001-01-01T00:00:00.123"},
      {"0.0", "1970-01-01T00:00:00.000"},
      {"0.9996", "1970-01-01T00:00:01.000"},
      {"-0.001", "2599-12-31T23:59:59.999"},
      {"-9999999999.999", "2599-12-31T23:59:59.999"},
      {"lddate", "2599-12-31T23:59:59.999"},
      {"9999999999.999", "2286-11-20T17:46:39.999"},
      {"epoch(1969365)", "2599-12-31T23:59:59.999"},
      {"0 - 1e-300", "2599-12-31T23:59:59.999"},
      {"0 * -1.0", "1970-01-01T00:00:00.000"},
      {"'0.5'", "1970-01-01T00:00:00.500"},
  };
  for (const auto& c : cases) EXPECT_EQ(eval_epoch_expr(first("sensor"), c.expr), c.text) << c.expr;
}

TEST(EndOfTime, IsNamed) { EXPECT_EQ(DATETIME_ENDVAL, "2599-12-31T23:59:59.999"); }

TEST_F(EvalEpoch, TakesNoNoticeOfTheParameterFilesFormats) {
  date_xml_with_ms_format = "%Y";
  EXPECT_EQ(eval_epoch_expr(first("sensor"), "0"), "1970-01-01T00:00:00.000");
}

TEST_F(EvalEpoch, IsEmptyWhenTheExpressionDoesNotCompile) {
  for (const char* expr : {"1 +", "nosuch"}) {
    const CollectedLog log;
    EXPECT_EQ(eval_epoch_expr(first("sensor"), expr), "");
    EXPECT_EQ(last_line(log), std::string("warning: failure compiling expr ") + expr);
  }
}

TEST_F(EvalEpoch, IsABadDateWhenItDoesNotEvaluate) {
  const CollectedLog log;
  EXPECT_EQ(eval_epoch_expr(first("sensor"), "1 / 0"), "0000-00-00T00:00:00ERR");
  EXPECT_THAT(log.lines(), ElementsAre("warning: failure to evaluate 1 / 0"));
}

TEST_F(EvalEpoch, RefusesAHandleThatIsNotSet) {
  const Dbptr sensor = first("sensor");
  const Dbptr handles[] = {{dbINVALID, sensor.table, sensor.field, 0},
                           {sensor.database, dbINVALID, sensor.field, 0},
                           {sensor.database, sensor.table, dbINVALID, 0},
                           {sensor.database, sensor.table, sensor.field, dbINVALID}};
  for (const Dbptr& handle : handles) {
    try {
      eval_epoch_expr(handle, "time");
      ADD_FAILURE() << as_string(handle);
    } catch (const std::runtime_error& e) {
      EXPECT_STREQ(e.what(), "invalid db field");
    }
  }
}

using EvalJday = OneSite;

TEST_F(EvalJday, RendersDaysWithoutMilliseconds) {
  const struct {
    const char* expr;
    const char* text;
  } cases[] = {
      {"ondate", "2001-01-01T00:00:00"},      {"2001001", "2001-01-01T00:00:00"},
      {"2000366", "2000-12-31T00:00:00"},     {"1970002", "1970-01-02T00:00:00"},
      {"1970001", "2599-12-31T23:59:59.999"}, {"1969365", "2599-12-31T23:59:59.999"},
      {"offdate", "2599-12-31T23:59:59.999"}, {"2001366", "2599-12-31T23:59:59.999"},
      {"0", "2599-12-31T23:59:59.999"},       {"-2001001", "2599-12-31T23:59:59.999"},
      {"2001000", "2599-12-31T23:59:59.999"}, {"9999365", "9999-12-31T00:00:00"},
      {"2001001.9", "2001-01-01T00:00:00"},   {"'2001002'", "2001-01-02T00:00:00"},
      {"4296968297", "2001-01-01T00:00:00"},  // a day is a number of 32 bits: 2^32 more is the same day
  };
  for (const auto& c : cases) EXPECT_EQ(eval_jday_expr(first("site"), c.expr), c.text) << c.expr;
}

TEST_F(EvalJday, IsABadDateWhenTheExpressionDoesNotCompile) {
  const CollectedLog log;
  EXPECT_EQ(eval_jday_expr(first("site"), "1 +"), "0000-00-00T00:00:00ERR");
  EXPECT_EQ(last_line(log), "warning: failure with eval_jday_expr 1 +");
}

TEST_F(EvalJday, IsABadDateWhenItDoesNotEvaluate) {
  const CollectedLog log;
  EXPECT_EQ(eval_jday_expr(first("site"), "1 / 0"), "0000-00-00T00:00:00ERR");
  EXPECT_THAT(log.lines(), ElementsAre("warning: failure to evaluate 1 / 0"));
}

TEST_F(EvalJday, DoesNotCheckTheHandlesField) {
  Dbptr site = first("site");
  site.field = dbINVALID;
  EXPECT_EQ(eval_jday_expr(site, "ondate"), "2001-01-01T00:00:00");
}

using EvalStr = OneSite;

TEST_F(EvalJday, TakesNoNoticeOfTheParameterFilesFormats) {
  date_xml_format = "%Y";
  EXPECT_EQ(eval_jday_expr(first("site"), "2001001"), "2001-01-01T00:00:00");
}

TEST_F(EvalStr, StripsBlanks) {
  EXPECT_EQ(eval_str_expr(first("site"), "sta"), "AAK");
  EXPECT_EQ(eval_str_expr(first("site"), "'  two  words '"), "two  words");
  EXPECT_EQ(eval_str_expr(first("site"), "'   '"), "");
  EXPECT_EQ(eval_str_expr(first("site"), "lat"), "42.6375");
}

TEST_F(EvalStr, ThrowsWithTheMarkAndTheExpression) {
  for (const char* expr : {"nosuch", "1 / 0", "'open"}) {
    const CollectedLog log;
    try {
      eval_str_expr(first("site"), expr);
      ADD_FAILURE() << expr;
    } catch (const std::runtime_error& e) {
      EXPECT_EQ(e.what(), std::string("failure to eval_str_expr %s") + expr);
    }
  }
}

}  // namespace
}  // namespace triglub_test
