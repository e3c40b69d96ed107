// dbex_compile, dbex_eval and dbex_evalstr over the records of a view.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class Evaluate : public ::testing::Test {
 protected:
  Evaluate() {
    tables_.add("sitechan",
                {{"sta", "AAK"}, {"chan", "BHZ"}, {"ondate", "1990001"}, {"chanid", "17"}, {"hang", "2.5"}});
    tables_.add("sitechan", {{"sta", "ANMO"}, {"chan", "BHN"}, {"ondate", "1991001"}, {"chanid", "0"}});
    tables_.add("site", {{"sta", "AAK"}, {"ondate", "1990001"}, {"lat", "42.6375"}});
  }
  static std::string text_of(Dbptr record, const char* expression) {
    char* text = nullptr;
    if (dbex_evalstr(record, expression, dbSTRING, &text) != 0) return "(failed)";
    const std::string copy = text;
    std::free(text);
    return copy;
  }

  Tables tables_;
};

TEST_F(Evaluate, GivesTheTypeThatIsAskedFor) {
  const Dbptr record = at(tables_.table("sitechan"), 0);
  std::int64_t integer = 0;
  EXPECT_EQ(dbex_evalstr(record, "hang * 3", dbINTEGER, &integer), 0);
  EXPECT_EQ(integer, 7);
  EXPECT_EQ(dbex_evalstr(record, "ondate + 1", dbYEARDAY, &integer), 0);
  EXPECT_EQ(integer, 1990002);
  double real = 0;
  EXPECT_EQ(dbex_evalstr(record, "chanid / 2", dbREAL, &real), 0);
  EXPECT_EQ(real, 8.5);
  EXPECT_EQ(dbex_evalstr(record, "epoch(ondate)", dbTIME, &real), 0);
  EXPECT_EQ(real, 631152000);
  EXPECT_EQ(text_of(record, "concat(sta, '_', chan)"), "AAK_BHZ");
  EXPECT_EQ(text_of(record, "hang"), "2.5");
  EXPECT_EQ(text_of(record, "hang + 0"), "2.5");
}

TEST_F(Evaluate, GivesTheSameCompiledFormForTheSameTextAndType) {
  const Dbptr view = tables_.table("sitechan");
  Expression* first = nullptr;
  Expression* second = nullptr;
  Expression* other_type = nullptr;
  ASSERT_EQ(dbex_compile(view, "hang * 2", &first, dbREAL), 0);
  ASSERT_EQ(dbex_compile(view, "hang * 2", &second, dbREAL), 0);
  ASSERT_EQ(dbex_compile(view, "hang * 2", &other_type, dbINTEGER), 0);
  EXPECT_EQ(first, second);
  EXPECT_NE(first, other_type);
  double real = 0;
  EXPECT_EQ(dbex_eval(at(view, 0), first, 0, &real), 0);
  EXPECT_EQ(real, 5);
  EXPECT_EQ(dbex_eval(at(view, 1), first, 0, &real), 0);
  EXPECT_EQ(real, -2);
}

TEST_F(Evaluate, SeesAbsentRowsAsNulls) {
  const Dbptr view = tables_.process({"dbopen sitechan", "dbjoin -o site"});
  EXPECT_EQ(text_of(at(view, 0), "str(is_null(lat))"), "0");
  EXPECT_EQ(text_of(at(view, 1), "str(is_null(lat))"), "1");
  EXPECT_EQ(text_of(at(view, 1), "str(is_null(site.sta))"), "1");
  EXPECT_EQ(text_of(at(view, 1), "str(is_null(sta))"), "0");
  EXPECT_EQ(text_of(at(view, 1), "lat"), "-999.0000");
  EXPECT_EQ(text_of(at(view, 1), "lat - 1"), "-1000");
  EXPECT_EQ(text_of(at(view, 1), "concat(site.sta, '!')"), "-!");
  EXPECT_EQ(text_of(at(view, 1), "str(lat == -999)"), "1");
}

TEST_F(Evaluate, ComplainsOfWhatDoesNotCompile) {
  const Dbptr record = at(tables_.table("sitechan"), 0);
  CollectedLog log;
  Expression* compiled = reinterpret_cast<Expression*>(&log);
  EXPECT_EQ(dbex_compile(record, "sta ==", &compiled, dbINTEGER), -1);
  EXPECT_EQ(compiled, nullptr);
  EXPECT_EQ(dbex_compile(record, "nothing + 1", &compiled, dbINTEGER), -1);
  EXPECT_EQ(dbex_compile(record, "1", &compiled, 7), -1);
  EXPECT_EQ(log.lines().size(), 3u);
  EXPECT_THAT(log.lines()[0], HasSubstr("sta ==\n"));
}

TEST_F(Evaluate, FailsQuietlyWhereARecordHasNoValue) {
  const Dbptr view = tables_.table("sitechan");
  Expression* compiled = nullptr;
  ASSERT_EQ(dbex_compile(view, "1 % chanid", &compiled, dbINTEGER), 0);
  CollectedLog log;
  std::int64_t number = 42;
  EXPECT_EQ(dbex_eval(at(view, 1), compiled, 0, &number), -1);  // division by zero
  EXPECT_EQ(dbex_eval(at(view, 2), compiled, 0, &number), -1);  // no such record
  EXPECT_EQ(dbex_eval(at(view, -1), compiled, 0, &number), -1);
  EXPECT_EQ(dbex_eval(view, compiled, 0, &number), -1);
  EXPECT_EQ(dbex_eval(Dbptr(), compiled, 0, &number), -1);
  EXPECT_EQ(dbex_eval(at(view, 0), nullptr, 0, &number), -1);
  EXPECT_EQ(number, 42);
  EXPECT_TRUE(log.lines().empty());
  EXPECT_EQ(dbex_eval(at(view, 0), compiled, 0, &number), 0);
  EXPECT_EQ(number, 1);
}

TEST_F(Evaluate, ClearsTheResultOfAFailedEvalstr) {
  const Dbptr record = at(tables_.table("sitechan"), 1);
  CollectedLog log;
  for (const char* expression : {"1 % chanid", "1 +"}) {
    std::int64_t integer = 42;
    EXPECT_EQ(dbex_evalstr(record, expression, dbINTEGER, &integer), -1);
    EXPECT_EQ(integer, 0);
    integer = 42;
    EXPECT_EQ(dbex_evalstr(record, expression, dbYEARDAY, &integer), -1);
    EXPECT_EQ(integer, 0);
    for (const int type : {dbREAL, dbTIME}) {
      double real = 42;
      EXPECT_EQ(dbex_evalstr(record, expression, type, &real), -1);
      EXPECT_EQ(real, 0);
    }
    char buffer[] = "text";
    char* text = buffer;
    EXPECT_EQ(dbex_evalstr(record, expression, dbSTRING, &text), -1);
    EXPECT_EQ(text, nullptr);
  }
}

}  // namespace
}  // namespace triglub_test
