// RecordExpression over the records of views.
#include "platform/record_expression.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <barrier>
#include <thread>

#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using triglub::RecordExpression;
using triglub::RecordList;
using triglub::RecordValue;
using triglub::ValueKind;

class RecordExpressions : public ::testing::Test {
 protected:
  RecordExpressions() {
    tables_.add("sitechan", {{"sta", "AAK"}, {"chan", "BHZ"}, {"ondate", "1990001"}, {"hang", "2.50"}});
    tables_.add("sitechan", {{"sta", "AAK"}, {"chan", "BHN"}, {"ondate", "1991001"}, {"offdate", "1999001"}});
    tables_.add("sitechan", {{"sta", "ANMO"}, {"chan", "BHZ"}, {"ondate", "1992001"}, {"hang", "90.0"}});
    tables_.add("site", {{"sta", "AAK"}, {"ondate", "1990001"}, {"lat", "42.6375"}, {"staname", "Ala <Archa>"}});
    view_ = tables_.process({"dbopen sitechan", "dbjoin -o site sta"});
  }

  std::unique_ptr<RecordExpression> compile(const char* text) {
    std::string fault;
    auto expression = RecordExpression::compile(view_, text, &fault);
    if (expression == nullptr) throw std::runtime_error(fault);
    return expression;
  }
  std::string text_at(const char* text, std::uint32_t record, const RecordList& records = {.count = 3}) {
    const auto expression = compile(text);
    RecordValue value;
    if (!expression->evaluate_text(record, records, &value)) return value.is_null ? "fails" : "fails with a value";
    return value.is_null ? "null" : std::string(value.text);
  }
  Texts texts_of(const char* text) { return {text_at(text, 0), text_at(text, 1), text_at(text, 2)}; }
  std::string fault_of(const char* text) {
    std::string fault;
    return RecordExpression::compile(view_, text, &fault) == nullptr ? fault : "compiles";
  }

  Tables tables_;
  Dbptr view_;
};

TEST_F(RecordExpressions, GiveEachRecordsValue) {
  EXPECT_THAT(texts_of("chan"), ElementsAre("BHZ", "BHN", "BHZ"));
  EXPECT_THAT(texts_of("offdate"), ElementsAre("null", "1999001", "null"));
  EXPECT_THAT(texts_of("offdate + 1"), ElementsAre("null", "1999002", "null"));
  EXPECT_THAT(texts_of("concat(sta, '_', chan)"), ElementsAre("AAK_BHZ", "AAK_BHN", "ANMO_BHZ"));
  EXPECT_THAT(texts_of("xml(staname)"), ElementsAre("Ala <Archa>", "Ala <Archa>", "null"));
  EXPECT_THAT(texts_of("1 / (ondate - 1991001)"), ElementsAre(HasSubstr("-0.001"), "fails", HasSubstr("0.001")));
}

TEST_F(RecordExpressions, TakeAbsentRowsForNulls) {
  EXPECT_THAT(texts_of("lat"), ElementsAre("42.6375", "42.6375", "null"));
  EXPECT_THAT(texts_of("site.sta"), ElementsAre("AAK", "AAK", "null"));
  EXPECT_THAT(texts_of("assume(lat, 0)"), ElementsAre("42.6375", "42.6375", "0"));
}

TEST_F(RecordExpressions, GiveValuesOfTheirKind) {
  RecordValue value;
  const auto integer = compile("ondate + 1");
  EXPECT_EQ(integer->kind(), ValueKind::integer);
  ASSERT_TRUE(integer->evaluate(1, {}, &value));
  EXPECT_FALSE(value.is_null);
  EXPECT_EQ(value.integer, 1991002);

  const auto real = compile("hang");
  EXPECT_EQ(real->kind(), ValueKind::real);
  ASSERT_TRUE(real->evaluate(2, {}, &value));
  EXPECT_EQ(value.real, 90);
  const auto computed = compile("hang / 4");
  ASSERT_TRUE(computed->evaluate(2, {}, &value));
  EXPECT_EQ(value.real, 22.5);

  const auto text = compile("lower(sta)");
  EXPECT_EQ(text->kind(), ValueKind::text);
  ASSERT_TRUE(text->evaluate(2, {}, &value));
  EXPECT_EQ(value.text, "anmo");

  const auto bare_integer = compile("ondate");
  ASSERT_TRUE(bare_integer->evaluate(2, {}, &value));
  EXPECT_EQ(value.integer, 1992001);
  const auto bare_text = compile("chan");
  ASSERT_TRUE(bare_text->evaluate(1, {}, &value));
  EXPECT_EQ(value.text, "BHN");
}

TEST_F(RecordExpressions, GiveFieldsAsDbgetDoes) {
  const std::string text = triglub_test::text_at(view_, "hang", 0);  // "2.50", or "2.5" of a table in memory
  EXPECT_EQ(text_at("hang", 0), text);
  EXPECT_EQ(text_at("hang + 0", 0), "2.5");
  EXPECT_EQ(text_at("concat(hang)", 0), text);
  EXPECT_EQ(text_at("assume(hang, 1)", 0), "2.5");
  EXPECT_TRUE(compile("(hang)")->is_field());
  EXPECT_FALSE(compile("hang + 0")->is_field());
}

TEST_F(RecordExpressions, SeeTheRecordsOfTheElement) {
  EXPECT_EQ(text_at("count(chan)", 0), "2");
  EXPECT_EQ(text_at("first(chan)", 0, {.first = 1, .count = 2}), "BHN");
  EXPECT_EQ(text_at("count(chan)", 2, {.first = 2, .count = 1}), "1");
  EXPECT_EQ(text_at("latest(ondate)", 0, {.count = 2}), "1991001");
  const std::uint32_t numbers[] = {2, 0};
  EXPECT_EQ(text_at("first(sta)", 0, {.numbers = numbers, .count = 2}), "ANMO");
  EXPECT_EQ(text_at("latest(ondate)", 0, {.numbers = numbers, .count = 2}), "1992001");
  EXPECT_EQ(text_at("concat(chan, earliest(lat))", 1, {.numbers = numbers, .count = 2}), "BHN42.6375");
  EXPECT_EQ(text_at("latest(lat)", 0, {.numbers = numbers, .count = 2}), "null");
  EXPECT_TRUE(compile("count(chan)")->uses_records());
  EXPECT_FALSE(compile("chan")->uses_records());
}

TEST_F(RecordExpressions, KeepATextOverRecordsUntilTheNextEvaluation) {
  const auto expression = compile("latest(concat('a text longer than is kept in place: ', sta, chan))");
  RecordValue value;
  for (const std::uint32_t count : {1U, 2U, 3U}) {
    ASSERT_TRUE(expression->evaluate(0, {.count = count}, &value));
    EXPECT_EQ(value.text, std::string("a text longer than is kept in place: ") + (count == 3 ? "ANMOBHZ" : "AAKBHZ"));
  }
}

TEST_F(RecordExpressions, KnowTheirTables) {
  const auto mixed = compile("concat(lat, chan, elev)");
  EXPECT_THAT(mixed->tables(), ElementsAre(0, 1));
  EXPECT_THAT(mixed->all_tables(), ElementsAre(0, 1));
  const auto over_records = compile("concat(lat, count(chan))");
  EXPECT_THAT(over_records->tables(), ElementsAre(1));
  EXPECT_THAT(over_records->all_tables(), ElementsAre(0, 1));
  const auto constant = compile("now()");
  EXPECT_THAT(constant->tables(), IsEmpty());
  EXPECT_THAT(constant->all_tables(), IsEmpty());
  EXPECT_THAT(compile("concat(sta, is_null(ondate), chan)")->tables(), ElementsAre(0));
}

TEST_F(RecordExpressions, CountWhatIsAssumed) {
  const auto expression = compile("assume(lat, 0)");
  RecordValue value;
  for (const std::uint32_t record : {0U, 1U, 2U, 2U}) expression->evaluate(record, {}, &value);
  EXPECT_EQ(expression->assumed(), 2U);
}

TEST_F(RecordExpressions, SayWhichNameWasMeant) {
  EXPECT_EQ(fault_of("1 + lta"), "expected a field, found no \"lta\", did you mean 'lat'?\n1 + lta\n    ^");
  EXPECT_EQ(fault_of("site.lta"), "expected a field, found no \"site.lta\", did you mean 'site.lat'?\nsite.lta\n^");
  EXPECT_EQ(fault_of("sitechn.hang"),
            "expected a field, found no \"sitechn.hang\", did you mean 'sitechan.hang'?\nsitechn.hang\n^");
  EXPECT_EQ(fault_of("wavelength"), "expected a field, found no \"wavelength\"\nwavelength\n^");
  EXPECT_EQ(fault_of("xyz(sta)"), "expected a function, found no \"xyz\"\nxyz(sta)\n^");
  EXPECT_EQ(fault_of("cont(sta)"), "expected a function, found no \"cont\", did you mean 'count'?\ncont(sta)\n^");
}

TEST_F(RecordExpressions, NeedNoPlaceForTheFault) {
  EXPECT_EQ(RecordExpression::compile(view_, "lta", nullptr), nullptr);
  EXPECT_EQ(RecordExpression::compile(Dbptr(), "lat", nullptr), nullptr);
}

TEST_F(RecordExpressions, NeedAView) {
  std::string fault;
  EXPECT_EQ(RecordExpression::compile(Dbptr(), "lat", &fault), nullptr);
  EXPECT_EQ(fault, "an expression needs a view to be compiled for: lat");
}

TEST(NumberIn, IsWhatExpressionsTakeForOne) {
  EXPECT_EQ(triglub::number_in(" -1.50 "), -1.5);
  EXPECT_EQ(triglub::number_in("+2e3"), 2000);
  EXPECT_EQ(triglub::number_in("7"), 7);
  for (const char* text : {"", " ", "x", "1x", "0x10", "inf", "nan", "1e999", "1 2", "-"}) {
    EXPECT_EQ(triglub::number_in(text), std::nullopt) << text;
  }
}

TEST(AppendShortest, ReadsBackToTheSame) {
  const struct {
    double number;
    const char* text;
  } cases[] = {{0, "0"}, {-0.0, "0"}, {0.1, "0.1"}, {-1.5, "-1.5"}, {100000, "1e+05"}, {1.0 / 3, "0.3333333333333333"}};
  for (const auto& [number, text] : cases) {
    std::string appended = "<";
    triglub::append_shortest(number, &appended);
    EXPECT_EQ(appended, std::string("<") + text);
  }
}

TEST(AppendRounded, WritesTheFewestDigitsWithinTheDoubt) {
  const struct {
    double number;
    double doubt;
    const char* text;
  } cases[] = {{1 / 14.285714, 2.45e-9, "0.07"}, {62.3 - 90, 0.05, "-27.7"}, {1642.9999999999998, 0.05, "1643"},
               {-0.00001, 0.00005, "0"},         {100004, 50, "1e+05"},      {0.1 + 0.2, 0, "0.30000000000000004"}};
  for (const auto& [number, doubt, text] : cases) {
    std::string appended = "<";
    triglub::append_rounded(number, doubt, &appended);
    EXPECT_EQ(appended, std::string("<") + text);
    EXPECT_EQ(triglub::number_in(text), triglub::rounded_within(number, doubt));
  }
}

TEST(AppendDecimal, WritesAllDigits) {
  std::string text = "<";
  triglub::append_decimal(-9223372036854775807, &text);
  EXPECT_EQ(text, "<-9223372036854775807");
}

// --- doubts ----------------------------------------------------------------------------------------------------------

class RecordExpressionsInDoubt : public ::testing::Test {
 protected:
  RecordExpressionsInDoubt() {
    tables_.add("calibration", {{"sta", "A"}, {"calib", "0.39811"}, {"calper", "14.285714"}, {"fc", "0.07"}});
    tables_.add("calibration", {{"sta", "B"}, {"calib", "12.345678"}, {"calper", "1"}, {"samprate", "20"}});
    tables_.add("calibration", {{"sta", "C"}, {"calib", "0.5"}, {"calper", "3"}, {"fc", "0.3334"}});
    tables_.add("site", {{"sta", "A"}, {"elev", "0.123"}, {"lat", "62.14325"}, {"lon", "0.1"}, {"dnorth", "0.2"}});
    tables_.add("site", {{"sta", "B"}, {"elev", "1.645"}, {"lat", "1"}, {"deast", "0.1"}});
    tables_.add("sitechan", {{"sta", "A"}, {"edepth", "0.0021"}, {"vang", "62.3"}, {"hang", "0"}});
    tables_.add("sitechan", {{"sta", "B"}, {"edepth", "0"}, {"vang", "90.123"}});
    view_ = tables_.process({"dbopen calibration", "dbjoin -o site sta", "dbjoin -o sitechan sta"});
  }

  struct Read {
    std::string text;
    double doubt;
  };
  Read at(const char* text, std::uint32_t record) {
    std::string fault;
    const auto expression = RecordExpression::compile(view_, text, &fault);
    if (expression == nullptr) return {fault, -1};
    RecordValue value;
    if (!expression->evaluate_text(record, {.count = 3}, &value)) return {"fails", value.doubt};
    return {value.is_null ? "null" : std::string(value.text), value.doubt};
  }

  Tables tables_;
  Dbptr view_;
};

TEST_F(RecordExpressionsInDoubt, HaveTheSmallestDoubtOfTheirFields) {
  const double lat = 62.14325;
  const struct {
    const char* expression;
    std::uint32_t record;
    double doubt;
  } cases[] = {
      {"lat", 0, 5e-6},
      {"lon", 0, 5e-5},
      {"-lat", 0, 5e-6},
      {"abs(lat)", 0, 5e-6},
      {"real(lat)", 0, 5e-6},
      {"lat + 1", 0, 5e-6},
      {"0.5 - lat", 0, 5e-6},
      {"lat + lon", 0, 5e-6},
      {"lon - lat", 0, 5e-6},
      {"lat - edepth - elev", 0, 5e-6},
      {"lon * 1000", 0, 5e-2},
      {"lon * -2", 0, 1e-4},
      {"lon / 4", 0, 1.25e-5},
      {"lat * lon", 0, 5e-7},
      {"lat / lon", 0, 5e-5},
      {"lon / lat", 0, 0.1 * 5e-6 / (lat * lat)},
      {"1 / calper", 0, 5e-7 / (14.285714 * 14.285714)},
      {"1e9 / calib", 0, 1e9 * 5e-9 / (0.39811 * 0.39811)},
      {"lat * 0", 0, 0},
      // a factor of 1 is none
      {"elev / calper", 1, 5e-5},
      {"elev * lat", 1, 5e-5},
      {"1 / calper", 1, 0},
      {"12.5 * lat", 1, 0},
      // of the one that is taken
      {"1 ? lat : lon", 0, 5e-6},
      {"0 ? lat : lon", 0, 5e-5},
      {"0 ? lat : 2", 0, 0},
      {"assume(lon, 2)", 0, 5e-5},
      {"assume(lon, 2)", 2, 0},
      {"assume(lon, lat + 1)", 0, 5e-5},
      {"first(lat)", 1, 5e-6},
      {"last(calper)", 0, 5e-7},
      {"earliest(elev)", 0, 5e-5},
      {"latest(calib)", 0, 5e-7},
      {"latest(lat)", 0, 0},
      {"first(lat) * 2", 0, 1e-5},
      // none
      {"5 * 2.5", 0, 0},
      {"1 - hang * 0", 0, 0},
      {"sqrt(lat)", 0, 0},
      {"max(lat, lon)", 0, 0},
      {"round(lat)", 0, 0},
      {"lat % 7", 0, 0},
      {"int(lat)", 0, 0},
      {"calibration.time + 0.5", 0, 0},
      {"count(lat) / 3", 0, 0},
      {"lat > 3", 0, 0},
      {"offdate / 3", 0, 0},
  };
  for (const auto& [expression, record, doubt] : cases) {
    EXPECT_DOUBLE_EQ(at(expression, record).doubt, doubt) << expression << ": " << at(expression, record).text;
  }
}

TEST_F(RecordExpressionsInDoubt, AreWrittenWithTheDigitsThatTheyHave) {
  const struct {
    const char* expression;
    std::uint32_t record;
    const char* text;
  } cases[] = {
      {"1 / calper", 0, "0.07"},
      {"1 / calper", 1, "1"},
      {"1 / calper", 2, "0.3333333"},
      {"1e9 / calib", 0, "2511868600"},
      {"1e9 / calib", 1, "81000007"},
      {"1e9 / calib", 2, "2e+09"},
      {"(elev - edepth) * 1000", 0, "120.9"},
      {"elev * 1000 - edepth * 1000", 1, "1645"},
      {"vang - 90", 0, "-27.7"},
      {"vang - 90", 1, "0.123"},
      {"lon + dnorth - 0.3", 0, "0"},
      {"dnorth - lon - lon", 0, "0"},
      {"lon - lat / lat * 0.1", 0, "0"},
      {"deast / 3 * 3", 1, "0.1"},
      {"calper * calper", 0, "204.08162"},
      {"lat * 3", 0, "186.42975"},
      {"lon * 1e-300", 0, "1e-301"},
      {"lon * 1e300", 0, "1e+299"},
      {"0.1 + 0.2", 0, "0.30000000000000004"},
      {"lat * 3", 2, "null"},
      // within texts too
      {"concat(elev * 1000 - edepth * 1000, ' m')", 0, "120.9 m"},
      {"concat(first(elev) - first(edepth), '')", 0, "0.1209"},
      {"str(1 / calper)", 0, "0.07"},
      {"format('%s', 1 / calper)", 0, "0.07"},
      {"1 / calper =~ /0.07/", 0, "1"},
      {"format('%.10f', 1 / calper)", 0, "0.0700000014"},
  };
  for (const auto& [expression, record, text] : cases) EXPECT_EQ(at(expression, record).text, text) << expression;
}

TEST_F(RecordExpressionsInDoubt, AgreeWithWhatIsWithinTheDoubt) {
  const struct {
    const char* expression;
    std::uint32_t record;
    const char* text;
    double doubt;
  } cases[] = {
      {"agreed(1 / calper, fc)", 0, "0.07", 0},
      {"agreed(1 / calper, fc)", 1, "1", 0},                 // no fc
      {"agreed(1 / calper, fc)", 2, "0.3333333", 5e-7 / 9},  // another
      {"agreed(fc, 1 / calper)", 0, "0.07000000140000", 0},  // as it is, and not as it could be written
      {"agreed(calper, 14.2857145)", 0, "14.2857145", 0},    // half a place
      {"agreed(calper, 14.2857146)", 0, "14.285714", 5e-7},  // and more
      {"agreed(calper, 3)", 2, "3", 0},
      {"agreed(lat, 1 / 0)", 2, "null", 0},  // what is not needed is not asked
      {"agreed(lat, 1 / 0)", 0, "fails", 0},
      {"agreed(lat, fc)", 2, "null", 0},
      {"agreed(3, 3.0)", 0, "3", 0},
      {"agreed(3, 4)", 0, "3", 0},
      {"agreed(2.5, offdate)", 0, "2.5", 0},
      {"agreed(calibration.time, 5)", 0, "null", 0},
      {"agreed(first(calper), first(calper) + 0.0000001)", 1, "14.2857141", 0},
      {"agreed(1 / calper, fc) == fc", 0, "1", 0},
      {"is_null(agreed(fc, lat))", 1, "1", 0},
  };
  for (const auto& [expression, record, text, doubt] : cases) {
    const Read read = at(expression, record);
    EXPECT_EQ(read.text.substr(0, std::string(text).size()), text) << expression;
    EXPECT_DOUBLE_EQ(read.doubt, doubt) << expression;
  }
  EXPECT_THAT(at("agreed(sta, 1)", 0).text, HasSubstr("expected a number as argument 1 of agreed"));
  EXPECT_THAT(at("agreed(1)", 0).text, HasSubstr("expected 2 arguments for agreed"));
}

TEST_F(RecordExpressionsInDoubt, LookAtTheLastRecord) {
  EXPECT_EQ(at("last(calibration.sta)", 0).text, "C");
  EXPECT_EQ(at("last(calper)", 0).text, "3");
  EXPECT_EQ(at("last(lat)", 0).text, "null");
  EXPECT_EQ(at("first(calper) - last(calper)", 1).text, "11.285714");
  EXPECT_THAT(at("last(first(lat))", 0).text, HasSubstr("expected no function over records within last"));
}

// --- threads ---------------------------------------------------------------------------------------------------------

// The values of some expressions, compiled anew, at all records of a view of channels and places.
Texts values_of(Dbptr view, std::uint32_t count) {
  Texts texts;
  for (const char* text : {"hang", "concat(sta, '.', chan, ' ', lat)", "count(chan)", "assume(offdate, 2999001)",
                           "staname =~ /Station [1-3]/ ? upper(staname) : 'other'", "latest(concat(sta, chan))"}) {
    const auto expression = RecordExpression::compile(view, text, nullptr);
    if (expression == nullptr) return {};
    for (std::uint32_t record = 0; record < count; ++record) {
      RecordValue value;
      const bool succeeds = expression->evaluate_text(record, {.first = record / 10 * 10, .count = 10}, &value);
      texts.push_back(!succeeds ? "fails" : value.is_null ? "null" : std::string(value.text));
    }
  }
  return texts;
}

TEST(RecordExpressionThreads, ShareAView) {
  constexpr std::uint32_t kRecords = 400;
  constexpr std::size_t kThreads = 8;
  Tables tables;
  for (std::uint32_t i = 0; i < kRecords; ++i) {
    const std::string sta = "S" + std::to_string(i / 4);
    tables.add("sitechan", {{"sta", sta},
                            {"chan", "BH" + std::to_string(i % 4)},
                            {"ondate", "1990001"},
                            {"offdate", i % 3 == 0 ? "-1" : "1999001"},
                            {"hang", std::to_string(i % 90) + ".50"}});
    if (i % 8 == 0) {
      tables.add(
          "site",
          {{"sta", sta}, {"ondate", "1990001"}, {"lat", "1.50"}, {"staname", "Station " + std::to_string(i % 5)}});
    }
  }
  const Dbptr view = tables.process({"dbopen sitechan", "dbjoin -o site sta"});
  ASSERT_EQ(record_count(view), kRecords);

  std::array<Texts, kThreads> texts;
  std::barrier start(kThreads);
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (Texts& of_thread : texts) {
    threads.emplace_back([&] {
      start.arrive_and_wait();
      of_thread = values_of(view, kRecords);
    });
  }
  for (std::thread& thread : threads) thread.join();
  const Texts expected = values_of(view, kRecords);
  EXPECT_EQ(expected.size(), 6 * kRecords);
  for (const Texts& of_thread : texts) EXPECT_TRUE(of_thread == expected);
}

}  // namespace
}  // namespace triglub_test
