// Expressions in which nulls propagate, and functions over the records of an element.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "element.h"

namespace triglub::expression {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void expect_texts(std::initializer_list<Case> cases, std::uint32_t record = 0) {
  for (const auto& [expression, text] : cases) EXPECT_EQ(text_in_element(expression, record), text) << expression;
}

TEST(Nulls, AreTheValueOfNullFields) {
  expect_texts({
      {"refsta", "null"},
      {"(offdate)", "null"},
      {"endtime", "null"},
      {"sta", "AAK"},
      {"elev", "1.6450"},
      {"inid", "0007"},
      {"nothing", ""},
  });
}

TEST(Nulls, MakeArithmeticNull) {
  expect_texts({
      {"offdate + 1", "null"},
      {"1 - offdate", "null"},
      {"offdate * lat", "null"},
      {"endtime / 2", "null"},
      {"offdate % 2", "null"},
      {"2 % endtime", "null"},
      {"-offdate", "null"},
      {"-endtime", "null"},
      {"- - offdate", "null"},
      {"0 * offdate", "null"},
      {"inid + 1", "8"},
      {"lat + 1", "43.6375"},
  });
}

TEST(Nulls, DoNotHideAFailure) {
  expect_texts({{"offdate + 1 / 0", "fails"}, {"1 / 0 + offdate", "fails"}, {"offdate / 0", "null"}});
}

TEST(Nulls, MakeComparisonsAndMatchesNull) {
  expect_texts({
      {"offdate == -1", "null"},
      {"offdate != -1", "null"},
      {"offdate < 1", "null"},
      {"1 <= endtime", "null"},
      {"refsta == '-'", "null"},
      {"refsta == refsta", "null"},
      {"refsta > 1", "null"},
      {"1 >= refsta", "null"},
      {"endtime == sta", "null"},
      {"refsta =~ /.*/", "null"},
      {"refsta !~ /.*/", "null"},
      {"offdate =~ /-1/", "null"},
      {"sta =~ /AA.*/", "1"},
      {"lat > 40", "1"},
  });
}

TEST(Nulls, CountAsFalseWhereAConditionIsAsked) {
  expect_texts({
      {"!offdate", "1"},
      {"!(offdate == -1)", "1"},
      {"!!offdate", "0"},
      {"offdate && 1", "0"},
      {"1 && offdate", "0"},
      {"offdate && offdate", "0"},
      {"offdate || 1", "1"},
      {"1 || offdate", "1"},
      {"offdate || 0", "0"},
      {"0 || offdate == -1", "0"},
      {"endtime || 0", "0"},
      {"refsta =~ /-/ || 0", "0"},
      {"offdate ? 1 : 2", "2"},
      {"offdate == -1 ? 'shut' : 'open'", "open"},
      {"1 ? offdate : 2", "null"},
      {"0 ? 1 : endtime", "null"},
      {"1 ? offdate : 2.5", "null"},
      {"0 ? sta : refsta", "null"},
      {"refsta =~ /x/ ? sta : chan", "BHZ"},
      {"inid == 7 && lat > 40 || 0", "1"},
  });
}

TEST(Nulls, MakeFunctionsNull) {
  expect_texts({
      {"abs(offdate)", "null"},
      {"abs(endtime)", "null"},
      {"min(1, offdate)", "null"},
      {"max(offdate, 1, 2)", "null"},
      {"max(endtime, offdate)", "null"},
      {"round(endtime)", "null"},
      {"sqrt(offdate)", "null"},
      {"pow(offdate, 2)", "null"},
      {"atan2(1, endtime)", "null"},
      {"int(refsta)", "null"},
      {"int(endtime)", "null"},
      {"real(refsta)", "null"},
      {"real(offdate)", "null"},
      {"str(refsta)", "null"},
      {"str(offdate)", "null"},
      {"str(offdate + 1)", "null"},
      {"format('%d', offdate)", "null"},
      {"format('%s', refsta)", "null"},
      {"format('%.1f', offdate)", "null"},
      {"format(fmt, endtime)", "null"},
      {"format(refsta, 1)", "null"},
      {"upper(refsta)", "null"},
      {"trim(refsta)", "null"},
      {"substr(refsta, 0, 1)", "null"},
      {"substr(sta, offdate, 1)", "null"},
      {"substr(sta, -1, offdate)", "null"},
      {"replace(sta, refsta, 'x')", "null"},
      {"length(refsta)", "null"},
      {"epoch(offdate)", "null"},
      {"yearday(endtime)", "null"},
      {"strtime(endtime, '%Y')", "null"},
      {"strtime(epoch(offdate), '%Y')", "null"},
      {"format('%.1f', lat)", "42.6"},
      {"epoch(1970002)", "86400"},
  });
}

TEST(Agreed, IsTheFirstUnlessTheSecondIsTheSame) {
  expect_texts({
      {"agreed(3, 3)", "3"},
      {"agreed(3, 3.0)", "3"},
      {"agreed(3, 4)", "3"},
      {"agreed(0.3, 0.1 + 0.2)", "0.3"},
      {"agreed(elev, 2)", "1.645"},
      {"agreed(offdate, 3)", "null"},
      {"agreed(offdate, 1 / 0)", "null"},
      {"agreed(3, offdate)", "3"},
      {"agreed(3, 1 / 0)", "fails"},
      {"agreed(1 / 0, 3)", "fails"},
      {"agreed(lat, endtime) + 1", "43.6375"},
      {"concat(agreed(1, 1), 'x')", "1x"},
      {"agreed(count(sta), 2)", "2"},
  });
}

TEST(Nulls, AreEmptyToConcat) {
  expect_texts({
      {"concat(refsta)", ""},
      {"concat(refsta, sta)", "AAK"},
      {"concat(sta, '.', refsta, offdate, endtime + 1, chan)", "AAK.BHZ"},
      {"concat(offdate)", ""},
      {"concat(sta, elev)", "AAK1.6450"},
      {"concat(1, sta)", "1AAK"},
      {"is_null(concat(refsta))", "0"},
  });
}

TEST(Nulls, AreTold) {
  expect_texts({
      {"is_null(offdate)", "1"},
      {"is_null((refsta))", "1"},
      {"is_null(lat)", "0"},
      {"is_null(offdate + 1)", "1"},
      {"is_null(lat + 1)", "0"},
      {"is_null(upper(refsta))", "1"},
      {"is_null(offdate == 1)", "1"},
      {"is_null(!offdate)", "0"},
      {"is_null('')", "0"},
      {"is_null(is_null(offdate))", "0"},
      {"is_null(1 / 0)", "fails"},
      {"is_null(offdate) && !is_null(lat)", "1"},
  });
}

TEST(Assume, GivesTheSecondForANull) {
  expect_texts({
      {"assume(offdate, 5)", "5"},
      {"assume(inid, 5)", "7"},
      {"assume(offdate, 2.5)", "2.5"},
      {"assume(inid, 2.5) / 2", "3.5"},
      {"assume(endtime, 3) / 2", "1.5"},
      {"assume(lat, 0) + 1", "43.6375"},
      {"assume(refsta, 'none')", "none"},
      {"assume(sta, 'none')", "AAK"},
      {"assume(refsta, refsta)", "null"},
      {"assume(offdate, endtime)", "null"},
      {"assume(assume(refsta, refsta), sta)", "AAK"},
      {"assume(refsta, assume(refsta, sta))", "AAK"},
      {"assume(elev, 0)", "1.645"},
      {"concat(assume(refsta, '?'), '.', assume(chan, '?'))", "?.BHZ"},
      {"assume(inid, 1 / 0)", "7"},
      {"assume(inid, int(sta))", "7"},
      {"assume(offdate, int(sta))", "fails"},
      {"assume(1 / 0, 1)", "fails"},
      {"assume(min(offdate, 1), 8) + assume(3, 4)", "11"},
  });
}

TEST(Assume, CountsItsSeconds) {
  const auto expression = compile_nullable("concat(assume(refsta, 'x'), assume(chan, 'y'), count(assume(lat, 0)))");
  ElementRecords records;
  Value value;
  EXPECT_EQ(expression->assumed(), 0U);
  ASSERT_TRUE(expression->evaluate(ElementRecord(0), &records, &value, nullptr));
  EXPECT_EQ(value.text(), "xBHZ3");
  EXPECT_EQ(expression->assumed(), 2U);  // refsta, and the second record's lat
  ASSERT_TRUE(expression->evaluate(ElementRecord(1), &records, &value, nullptr));
  EXPECT_EQ(value.text(), "xy3");
  EXPECT_EQ(expression->assumed(), 5U);
}

TEST(Xml, LeavesTheTextAlone) {
  expect_texts({
      {"xml(markup)", "a < b & c"},
      {"xml(concat('<', sta))", "<AAK"},
      {"xml(refsta)", "null"},
      {"xml('a\tb')", "a\tb"},
  });
}

TEST(OverRecords, FirstIsTheValueAtTheFirst) {
  for (const std::uint32_t record : {0U, 1U, 2U}) {
    expect_texts({{"first(sta)", "AAK"},
                  {"first(chan)", "BHZ"},
                  {"first(offdate)", "null"},
                  {"first(inid + 1)", "8"},
                  {"first(elev)", "1.645"},
                  {"first(1 / 0)", "fails"},
                  {"first(concat(sta, '.', chan))", "AAK.BHZ"}},
                 record);
  }
  expect_texts({{"concat(sta, first(sta))", "BFOAAK"}}, 1);
}

TEST(OverRecords, EarliestIsTheLeastButNull) {
  expect_texts({
      {"earliest(lat)", "-1.5"},
      {"earliest(endtime)", "3600"},
      {"earliest(offdate)", "1970002"},
      {"earliest(inid)", "7"},
      {"earliest(refsta)", "null"},
      {"earliest(sta)", "AAK"},
      {"earliest(chan)", "BHN"},
      {"earliest(concat(chan, sta))", "BFO"},
      {"earliest(-lat)", "-42.6375"},
      {"earliest(lower(chan))", "bhn"},
      {"earliest(int(inid * 1.5))", "10"},
      {"earliest(1 / inid)", "0.14285714285714285"},
      {"earliest(1 / (elev - 2))", "fails"},
  });
}

TEST(OverRecords, LatestIsTheGreatestOrNull) {
  expect_texts({
      {"last(chan)", "BHN"},
      {"last(concat(sta, '.', chan))", "AAK.BHN"},
      {"last(endtime)", "3600"},
      {"last(inid)", "null"},
      {"last(elev) - first(elev)", "0.355"},
      {"last(1 / (elev - 2))", "fails"},
      {"latest(elev)", "2"},
      {"latest(time)", "978307200"},
      {"latest(sta)", "BFO"},
      {"latest(concat(sta, chan))", "BFO"},
      {"latest(concat(chan, sta))", "BHZAAK"},
      {"latest(lat)", "null"},
      {"latest(chan)", "null"},
      {"latest(inid)", "null"},
      {"latest(endtime)", "null"},
      {"latest(assume(lat, 99))", "99"},
      {"latest(1 / (elev - 2))", "fails"},
  });
}

TEST(OverRecords, CountIsOfDistinctValuesButNull) {
  expect_texts({
      {"count(sta)", "2"},
      {"count(chan)", "2"},
      {"count(refsta)", "0"},
      {"count(lat)", "2"},
      {"count(inid)", "1"},
      {"count(elev)", "2"},  // 2.0 and 2.0000 are one number
      {"count(str(elev))", "3"},
      {"count(zero)", "1"},  // of both signs
      {"count(1)", "1"},
      {"count(concat(sta, chan))", "3"},
      {"count(concat('a long text that is made anew each time: ', sta))", "2"},
      {"count(sta == 'AAK')", "2"},
      {"count(lat > 0)", "2"},
      {"count(1 / (elev - 2))", "fails"},
  });
}

TEST(OverRecords, StandAmongOtherValues) {
  expect_texts({
      {"count(sta) + count(chan) * 10", "22"},
      {"latest(elev) - earliest(elev)", "0.355"},
      {"concat(earliest(chan), '-', earliest(sta), '-', latest(sta))", "BHN-AAK-BFO"},
      {"count(chan) > 1 ? 'several' : first(chan)", "several"},
      {"assume(latest(endtime), earliest(endtime))", "3600"},
      {"is_null(latest(endtime))", "1"},
      {"upper(first(lower(sta)))", "AAK"},
      {"first(sta) == earliest(sta)", "1"},
      {"latest(inid) == 7 || 0", "0"},
      {"1 || first(1 / 0)", "1"},
      {"sta =~ /AAK/ ? 1 : count(1 / 0)", "1"},
  });
}

TEST(OverRecords, DoNotNest) {
  const auto fault = [](std::string_view text) {
    Fault fault{};
    EXPECT_EQ(compile_nullable(text, &fault), nullptr) << text;
    return fault.text;
  };
  EXPECT_EQ(fault("1 + count(first(sta))"),
            "expected no function over records within count\n1 + count(first(sta))\n          ^");
  EXPECT_EQ(fault("first(sta) == first(concat(sta, latest(chan)))"),
            "expected no function over records within first\nfirst(sta) == first(concat(sta, latest(chan)))\n"
            "                                ^");
  EXPECT_NE(compile_nullable("concat(first(sta), count(chan), max(count(sta), count(chan)))"), nullptr);
}

TEST(NullableExpressions, SayWhatDoesNotCompile) {
  const Case cases[] = {
      {"assume(lat, 'x')", "expected a number as argument 2 of assume as argument 1 is"},
      {"assume(sta, 1)", "expected a text as argument 2 of assume as argument 1 is"},
      {"assume(sta)", "expected 2 arguments for assume"},
      {"count()", "expected 1 argument for count"},
      {"count(sta, chan)", "expected 1 argument for count"},
      {"xml(lat)", "expected a text as argument 1 of xml"},
      {"earliest(sta) + 1", "expected a number before +"},
      {"count", "expected a field, found no \"count\""},
      {"earlest(sta)", "expected a function, found no \"earlest\", did you mean 'earliest'?"},
      {"asume(lat, 1)", "expected a function, found no \"asume\", did you mean 'assume'?"},
      {"xyzzy(lat)", "expected a function, found no \"xyzzy\""},
      {"\xFF", "expected UTF-8"},
  };
  for (const auto& [text, expected] : cases) {
    Fault fault{};
    EXPECT_EQ(compile_nullable(text, &fault), nullptr) << text;
    EXPECT_EQ(fault.text.substr(0, fault.text.find('\n')), expected);
  }
}

TEST(NullableExpressions, AreUnknownWhereNullsAreValues) {
  for (const char* text :
       {"agreed(lat, 1)", "assume(lat, 1)", "first(sta)", "last(sta)", "earliest(lat)", "latest(lat)", "count(sta)"}) {
    Fault fault{};
    EXPECT_EQ(compile(text, dbSTRING, &fault), nullptr) << text;
    EXPECT_THAT(fault.text, testing::StartsWith("expected a function, found no \""));
    EXPECT_THAT(fault.text, testing::Not(testing::HasSubstr("did you mean")));
  }
  EXPECT_EQ(compile("is_null(lat + 1)"), nullptr);
  EXPECT_EQ(text_at_station("xml(markup)"), "a &lt; b &amp; c");
}

std::string_view name_of(int field) { return station_fields()[static_cast<std::size_t>(field)].name; }

std::vector<std::string_view> names_of(const std::vector<int>& fields) {
  std::vector<std::string_view> names;
  names.reserve(fields.size());
  for (const int field : fields) names.push_back(name_of(field));
  return names;
}

TEST(NullableExpressions, KnowTheirFields) {
  const auto mixed = compile_nullable("concat(chan, count(lat), is_null(offdate), chan, first(inid + lat))");
  EXPECT_TRUE(mixed->uses_records());
  EXPECT_EQ(mixed->bare_field(), kNoField);
  EXPECT_THAT(names_of(mixed->own_fields()), ElementsAre("chan", "offdate"));
  EXPECT_THAT(names_of(mixed->fields_over_records()), ElementsAre("lat", "inid"));

  const auto bare = compile_nullable(" (lat) ");
  EXPECT_FALSE(bare->uses_records());
  EXPECT_EQ(name_of(bare->bare_field()), "lat");
  EXPECT_THAT(names_of(bare->own_fields()), ElementsAre("lat"));
  EXPECT_THAT(bare->fields_over_records(), IsEmpty());
  EXPECT_THAT(compile_nullable("1 + 2")->own_fields(), IsEmpty());
}

TEST(NullableExpressions, KnowTheirKind) {
  const struct {
    const char* text;
    Kind kind;
  } cases[] = {
      {"inid", Kind::integer},
      {"lat", Kind::real},
      {"sta", Kind::text},
      {"first(inid)", Kind::integer},
      {"latest(lat)", Kind::real},
      {"earliest(sta)", Kind::text},
      {"count(sta)", Kind::integer},
      {"assume(inid, 1)", Kind::integer},
      {"assume(inid, lat)", Kind::real},
      {"assume(sta, chan)", Kind::text},
      {"lat == 1", Kind::integer},
  };
  for (const auto& [text, kind] : cases) EXPECT_EQ(compile_nullable(text)->kind(), kind) << text;
}

}  // namespace
}  // namespace triglub::expression
