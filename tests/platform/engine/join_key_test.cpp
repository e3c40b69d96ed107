// dbjoin: which fields a join compares, what nulls do, which rows come out and in which order.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "support/scoped_limit.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Join {
  Texts view_keys = {};
  Texts table_keys = {};
  bool outer = false;
};

Dbptr join(Dbptr a, Dbptr b, const Join& how = {}) {
  TextTbl first(how.view_keys);
  TextTbl second(how.table_keys);
  const bool natural = how.view_keys.empty() && how.table_keys.empty();
  return dbjoin(a, b, natural ? nullptr : first.address(), natural ? nullptr : second.address(), how.outer ? 1 : 0,
                nullptr, nullptr);
}

// --- natural joins ---------------------------------------------------------------------------------------------------

TEST(NaturalJoin, ComparesTheKeysThatBothHave) {
  Tables tables;
  tables.add_all(
      "sitechan",
      {{{"sta", "AAK"}, {"chan", "BHZ"}}, {{"sta", "AAK"}, {"chan", "BHN"}}, {{"sta", "ANMO"}, {"chan", "BHZ"}}});
  tables.add_all("schanloc", {{{"sta", "AAK"}, {"chan", "BHN"}, {"loc", "00"}},
                              {{"sta", "AAK"}, {"chan", "BHZ"}, {"loc", "10"}},
                              {{"sta", "ANMO"}, {"chan", "BHE"}, {"loc", "20"}}});
  EXPECT_THAT(records_of(join(tables.table("sitechan"), tables.table("schanloc")), {"sta", "chan", "loc"}),
              ElementsAre("AAK BHZ 10", "AAK BHN 00"));
}

// fsta is of snetsta's primary key, but the view has no such field; sta is of the alternate key.
TEST(NaturalJoin, ComparesPrimaryAndAlternateKeysByName) {
  Tables tables;
  tables.add_all("site", {{{"sta", "AAK"}}, {{"sta", "XYZ"}}});
  tables.add_all("snetsta", {{{"snet", "KR"}, {"fsta", "AAK"}, {"sta", "XYZ"}},
                             {{"snet", "II"}, {"fsta", "XYZ"}, {"sta", "AAK"}}});
  EXPECT_THAT(records_of(join(tables.table("site"), tables.table("snetsta")), {"site.sta", "snet"}),
              ElementsAre("AAK II", "XYZ KR"));
  // Seen from snetsta, site's primary key has sta only.
  EXPECT_THAT(records_of(join(tables.table("snetsta"), tables.table("site")), {"snet", "site.sta"}),
              ElementsAre("KR XYZ", "II AAK"));
}

// Only the joined table's keys count: affiliation has net in its key, the view's own keys do not matter.
TEST(NaturalJoin, LooksAtTheJoinedTablesKeysOnly) {
  Tables tables;
  tables.add_all("network", {{{"net", "KR"}}, {{"net", "II"}}});
  tables.add_all("affiliation", {{{"net", "II"}, {"sta", "AAK"}}, {{"net", "KR"}, {"sta", "AAK"}}});
  EXPECT_THAT(records_of(join(tables.table("network"), tables.table("affiliation")), {"net", "sta"}),
              ElementsAre("KR AAK", "II AAK"));
  // dir and dfile are in both, and no keys.
  tables.close();
  tables.add("instrument", {{"inid", "1"}, {"dir", "a"}}).add("stage", {{"stageid", "1"}, {"dir", "a"}});
  CollectedLog log;
  EXPECT_EQ(join(tables.table("instrument"), tables.table("stage")), Dbptr());
  EXPECT_THAT(log.lines(), ElementsAre("warning: dbjoin: the view and the table stage share no key"));
}

TEST(NaturalJoin, DoesNotRestrictOnAForeignKeyThatIsNullOnEitherSide) {
  Tables tables;
  tables.add_all("sitechan", {{{"sta", "A"}, {"chanid", "1"}}, {{"sta", "A"}, {"chanid", "-1"}}});
  tables.add_all("sensor", {{{"sta", "A"}, {"chanid", "1"}, {"jdate", "11"}},
                            {{"sta", "A"}, {"chanid", "2"}, {"jdate", "12"}},
                            {{"sta", "A"}, {"jdate", "13"}},
                            {{"sta", "B"}, {"jdate", "14"}}});
  EXPECT_THAT(records_of(join(tables.table("sitechan"), tables.table("sensor")), {"sitechan.chanid", "jdate"}),
              ElementsAre("1 11", "1 13", "-1 11", "-1 12", "-1 13"));
}

// Seen from sensor, chanid is sitechan's alternate key and restricts, null or not.
TEST(NaturalJoin, AlwaysRestrictsOnPrimaryAndAlternateKeys) {
  Tables tables;
  tables.add_all("sitechan", {{{"sta", "A"}, {"chanid", "1"}}, {{"sta", "A"}, {"chanid", "-1"}}});
  tables.add_all("sensor", {{{"sta", "A"}, {"chanid", "1"}}, {{"sta", "A"}, {"chanid", "2"}}, {{"sta", "A"}}});
  EXPECT_THAT(records_of(join(tables.table("sensor"), tables.table("sitechan")), {"sensor.chanid", "sitechan.chanid"}),
              ElementsAre("1 1", "-1 -1"));
}

TEST(NaturalJoin, FindsNoInstrumentForANullInid) {
  Tables tables;
  tables.add_all("sensor",
                 {{{"sta", "A"}, {"inid", "7"}}, {{"sta", "B"}, {"inid", "-1"}}, {{"sta", "C"}, {"inid", "8"}}});
  tables.add("instrument", {{"inid", "7"}, {"insname", "STS-2"}});
  EXPECT_THAT(records_of(join(tables.table("sensor"), tables.table("instrument")), {"sta", "insname"}),
              ElementsAre("A STS-2"));
  EXPECT_THAT(records_of(join(tables.table("sensor"), tables.table("instrument"), {.outer = true}), {"sta", "insname"}),
              ElementsAre("A STS-2", "B -", "C -"));
}

// Every shared field is a foreign key: what can match is found through its values all the same.
TEST(NaturalJoin, OnForeignKeysAloneKeepsTheTablesOrder) {
  Tables tables;
  tables.add_all("instrument", {{{"inid", "7"}}, {{"inid", "-1"}}, {{"inid", "9"}}});
  tables.add_all("sensor", {{{"inid", "7"}, {"sta", "A"}},
                            {{"sta", "B"}},
                            {{"inid", "8"}, {"sta", "C"}},
                            {{"inid", "7"}, {"sta", "D"}},
                            {{"sta", "E"}}});
  EXPECT_THAT(records_of(join(tables.table("instrument"), tables.table("sensor")), {"instrument.inid", "sta"}),
              ElementsAre("7 A", "7 B", "7 D", "7 E", "-1 A", "-1 B", "-1 C", "-1 D", "-1 E", "9 B", "9 E"));
}

TEST(NaturalJoin, OnForeignKeysAloneBearsManyRows) {
  Tables tables;
  constexpr int kRows = 20000;
  for (int i = 0; i < kRows; ++i) {
    tables.add("instrument", {{"inid", std::to_string(i)}});
    tables.add("sensor", {{"inid", std::to_string(kRows - 1 - i)}});
  }
  const Dbptr view = join(tables.table("instrument"), tables.table("sensor"));
  ASSERT_EQ(record_count(view), kRows);
  const auto rows = triglub::base_rows(view, "sensor");
  for (int i = 0; i < kRows; ++i)
    ASSERT_EQ(rows[static_cast<std::size_t>(i)], static_cast<std::uint32_t>(kRows - 1 - i));
}

TEST(NaturalJoin, ResolvesTheViewsFieldsBare) {
  // Of the two ondates and stas that the view has, the first table's are compared.
  Tables tables;
  tables.add("sitechan", {{"sta", "A"}, {"chan", "Z"}});
  tables.add("snetsta", {{"snet", "KR"}, {"fsta", "B"}, {"sta", "B"}});
  tables.add_all("schanloc",
                 {{{"sta", "A"}, {"chan", "Z"}, {"loc", "00"}}, {{"sta", "B"}, {"chan", "Z"}, {"loc", "10"}}});
  const Dbptr view = join(tables.table("sitechan"), tables.table("snetsta"), {{"sta"}, {"snet"}, true});
  const Dbptr two = join(tables.table("sitechan"), tables.table("snetsta"), {{"ctype"}, {"auth"}});
  EXPECT_THAT(records_of(join(view, tables.table("schanloc")), {"loc"}), ElementsAre("00"));
  EXPECT_THAT(records_of(join(two, tables.table("schanloc")), {"loc"}), ElementsAre("00"));
}

TEST(NaturalJoin, ComparesTheFieldsOfAbsentRowsAsNulls) {
  Tables tables;
  tables.add_all("sitechan", {{{"sta", "A"}, {"chan", "Z"}}, {{"sta", "B"}, {"chan", "Z"}}});
  tables.add("sensor", {{"sta", "A"}, {"chan", "Z"}, {"inid", "7"}});
  tables.add_all("instrument", {{{"inid", "-1"}, {"insname", "none"}}, {{"inid", "7"}, {"insname", "some"}}});
  EXPECT_THAT(
      records_of(tables.process({"dbopen sitechan", "dbjoin -o sensor", "dbjoin -o instrument"}), {"sta", "insname"}),
      ElementsAre("A some", "B none"));
}

// --- named keys ------------------------------------------------------------------------------------------------------

TEST(NamedJoin, ComparesTheNamedFieldsAlone) {
  Tables tables;
  tables.add_all("sitechan", {{{"sta", "A"}, {"chan", "Z"}, {"ondate", "1990001"}},
                              {{"sta", "B"}, {"chan", "N"}, {"ondate", "1990001"}}});
  tables.add_all("schanloc", {{{"sta", "A"}, {"chan", "N"}, {"loc", "1"}},
                              {{"sta", "B"}, {"chan", "N"}, {"loc", "2"}},
                              {{"sta", "B"}, {"chan", "Z"}, {"loc", "3"}}});
  EXPECT_THAT(records_of(join(tables.table("sitechan"), tables.table("schanloc"), {{"sta"}, {"sta"}}), {"sta", "loc"}),
              ElementsAre("A 1", "B 2", "B 3"));
  EXPECT_THAT(records_of(join(tables.table("sitechan"), tables.table("schanloc"), {{"sta", "chan"}, {"sta", "chan"}}),
                         {"sta", "loc"}),
              ElementsAre("B 2"));
}

TEST(NamedJoin, ComparesFieldsOfDifferentNames) {
  Tables tables;
  tables.add_all("snetsta",
                 {{{"snet", "KR"}, {"sta", "A"}}, {{"snet", "II"}, {"sta", "B"}}, {{"snet", "XX"}, {"sta", "C"}}});
  tables.add_all("network", {{{"net", "II"}, {"netname", "two"}}, {{"net", "KR"}, {"netname", "one"}}});
  for (const Join& how : {Join{{"snetsta.snet"}, {"network.net"}}, Join{{"snet"}, {"net"}}}) {
    EXPECT_THAT(records_of(join(tables.table("snetsta"), tables.table("network"), how), {"sta", "netname"}),
                ElementsAre("A one", "B two"));
  }
}

TEST(NamedJoin, ComparesNullsAsValues) {
  Tables tables;
  tables.add_all("sitechan", {{{"chanid", "-1"}, {"sta", "A"}}, {{"chanid", "2"}, {"sta", "B"}}});
  tables.add_all("sensor", {{{"chanid", "-1"}, {"jdate", "1"}}, {{"chanid", "2"}, {"jdate", "2"}}});
  EXPECT_THAT(
      records_of(join(tables.table("sitechan"), tables.table("sensor"), {{"chanid"}, {"chanid"}}), {"sta", "jdate"}),
      ElementsAre("A 1", "B 2"));
}

TEST(NamedJoin, ComparesIntegersWithReals) {
  Tables tables;
  tables.add_all("sitechan", {{{"chanid", "40"}, {"hang", "0.0"}}, {{"chanid", "20"}, {"hang", "-0.0"}}});
  tables.add_all(
      "calibration",
      {{{"samprate", "20"}, {"commid", "0"}}, {{"samprate", "40.5"}}, {{"samprate", "40"}, {"commid", "1"}}});
  EXPECT_THAT(records_of(join(tables.table("sitechan"), tables.table("calibration"), {{"chanid"}, {"samprate"}}),
                         {"chanid", "samprate"}),
              ElementsAre("40 40", "20 20"));
  EXPECT_THAT(records_of(join(tables.table("calibration"), tables.table("sitechan"), {{"samprate"}, {"chanid"}}),
                         {"chanid", "samprate"}),
              ElementsAre("20 20", "40 40"));
  EXPECT_THAT(
      records_of(join(tables.table("sitechan"), tables.table("calibration"), {{"hang"}, {"commid"}}), {"chanid"}),
      ElementsAre("40", "20"));
}

TEST(NamedJoin, NamesWhatItCannotCompare) {
  Tables tables;
  tables.add("sitechan", {{"sta", "A"}}).add("sensor", {{"sta", "A"}});
  const auto complaint = [&](const Texts& view_keys, const Texts& table_keys) {
    const Dbptr a = tables.table("sitechan");
    const Dbptr b = tables.table("sensor");
    CollectedLog log;
    EXPECT_EQ(join(a, b, {view_keys, table_keys}), Dbptr());
    return log.lines().size() == 1 ? log.lines()[0] : "not one complaint";
  };
  EXPECT_EQ(complaint({"x"}, {"sta"}), "warning: dbjoin: the view has no key field 'x'");
  EXPECT_EQ(complaint({"sta"}, {"x"}), "warning: dbjoin: the table sensor has no key field 'x'");
  EXPECT_EQ(complaint({"sta"}, {"sitechan.sta"}), "warning: dbjoin: the table sensor has no key field 'sitechan.sta'");
  EXPECT_EQ(complaint({"sta"}, {"sensor.x"}), "warning: dbjoin: the table sensor has no key field 'sensor.x'");
  EXPECT_EQ(complaint({"sta", "chan"}, {"sta"}), "warning: dbjoin: 2 keys of the view against 1 of the table sensor");
  EXPECT_EQ(complaint({"sta"}, {"chanid"}),
            "warning: dbjoin: cannot compare sta with sensor.chanid: one is a text, the other a number");
  EXPECT_EQ(complaint({"hang"}, {"instant"}),
            "warning: dbjoin: cannot compare hang with sensor.instant: one is a text, the other a number");
  EXPECT_EQ(complaint({"ondate::x"}, {"time::endtime"}), "warning: dbjoin: the view has no key field 'ondate::x'");
  EXPECT_EQ(complaint({"ondate::offdate"}, {"x::endtime"}),
            "warning: dbjoin: the table sensor has no key field 'x::endtime'");
  EXPECT_EQ(complaint({"ondate::offdate"}, {"time"}), "warning: dbjoin: the view has no key field 'ondate::offdate'");
  EXPECT_EQ(complaint({"sta::chan"}, {"time::endtime"}),
            "warning: dbjoin: 'sta::chan' of the view is no range: it needs two dates or two times");
  EXPECT_EQ(complaint({"ondate::hang"}, {"time::endtime"}),
            "warning: dbjoin: 'ondate::hang' of the view is no range: it needs two dates or two times");
  EXPECT_EQ(complaint({"ondate::offdate"}, {"sta::chan"}),
            "warning: dbjoin: 'sta::chan' of the table sensor is no range: it needs two dates or two times");
  EXPECT_EQ(complaint({"ondate::offdate"}, {"jdate::endtime"}),
            "warning: dbjoin: 'jdate::endtime' of the table sensor is no range: it needs two dates or two times");
}

// --- what comes out --------------------------------------------------------------------------------------------------

TEST(JoinResult, KeepsTheViewsOrderThenTheTables) {
  Tables tables;
  for (const char* sta : {"B", "A", "B"}) tables.add("sitechan", {{"sta", sta}});
  for (const char* chan : {"3", "1", "2"})
    for (const char* sta : {"A", "B"}) tables.add("schanloc", {{"sta", sta}, {"chan", chan}});
  EXPECT_THAT(records_of(join(tables.table("sitechan"), tables.table("schanloc"), {{"sta"}, {"sta"}}),
                         {"sta", "schanloc.chan"}),
              ElementsAre("B 3", "B 1", "B 2", "A 3", "A 1", "A 2", "B 3", "B 1", "B 2"));
}

TEST(JoinResult, TakesTheSecondViewsRecordsInItsOrder) {
  Tables tables;
  tables.add("sitechan", {{"sta", "A"}});
  for (const char* chan : {"3", "1", "2", "4"}) tables.add("schanloc", {{"sta", "A"}, {"chan", chan}});
  const Dbptr sitechan = tables.table("sitechan");
  const Dbptr sorted = dbsort(tables.table("schanloc"), TextTbl({"chan"}).get(), 0, nullptr);
  const auto chans = [&](Dbptr b, bool outer = false) {
    return texts_of(join(sitechan, b, {{"sta"}, {"sta"}, outer}), "schanloc.chan");
  };
  EXPECT_THAT(chans(sorted), ElementsAre("1", "2", "3", "4"));
  EXPECT_THAT(chans(dbsubset(sorted, "chan != '2'", nullptr)), ElementsAre("1", "3", "4"));
  EXPECT_THAT(chans(dbsubset(tables.table("schanloc"), "chan > '1'", nullptr)), ElementsAre("3", "2", "4"));
  EXPECT_THAT(chans(triglub::view_of_records(sorted, {3, 0, 3}, nullptr)), ElementsAre("4", "1", "4"));
  EXPECT_THAT(chans(dbsubset(sorted, "0", nullptr)), IsEmpty());
  EXPECT_THAT(chans(dbsubset(sorted, "0", nullptr), true), ElementsAre("-"));
}

TEST(JoinResult, KeepsRecordsWithoutAMatchWhenOuter) {
  Tables tables;
  for (const char* sta : {"A", "B", "C"}) tables.add("sitechan", {{"sta", sta}});
  tables.add_all("schanloc", {{{"sta", "B"}, {"loc", "1"}}, {{"sta", "B"}, {"loc", "2"}}});
  EXPECT_THAT(records_of(tables.process({"dbopen sitechan", "dbjoin -o schanloc"}), {"sta", "loc"}),
              ElementsAre("A -", "B 1", "B 2", "C -"));
  EXPECT_THAT(records_of(tables.process({"dbopen sitechan", "dbjoin -o stage"}), {"sta", "stage.sta", "stageid"}),
              ElementsAre("A - -1", "B - -1", "C - -1"));
  EXPECT_EQ(record_count(tables.process({"dbopen sitechan", "dbjoin stage"})), 0);
  EXPECT_EQ(record_count(tables.process({"dbopen stage", "dbjoin -o sitechan"})), 0);
}

TEST(JoinResult, ReportsTheKeys) {
  Tables tables;
  tables.add("sitechan", {{"sta", "A"}}).add("sensor", {{"sta", "A"}});
  const auto keys_of = [&](const Texts& view_keys, const Texts& table_keys) {
    TextTbl first(view_keys), second(table_keys);
    Tbl* keys = nullptr;
    const bool natural = view_keys.empty();
    const Dbptr view = dbjoin(tables.table("sitechan"), tables.table("sensor"), natural ? nullptr : first.address(),
                              natural ? nullptr : second.address(), 0, &keys, nullptr);
    EXPECT_TRUE(is_view(view));
    Texts texts;
    for (long i = 0; i < maxtbl(keys); ++i) texts.emplace_back(static_cast<const char*>(gettbl(keys, i)));
    freetbl(keys, std::free);
    return texts;
  };
  EXPECT_THAT(keys_of({}, {}), ElementsAre("sta", "chan", "time::endtime", "chanid"));
  EXPECT_THAT(keys_of({"sta"}, {"sta"}), ElementsAre("sta"));
  EXPECT_THAT(keys_of({"chanid", "ondate::offdate"}, {"inid", "time::endtime"}),
              ElementsAre("chanid:inid", "ondate::offdate:time::endtime"));
}

TEST(JoinResult, CanBeLookedUpByName) {
  Tables tables;
  tables.add("sitechan", {{"sta", "A"}}).add("site", {{"sta", "A"}});
  const Dbptr view = dbjoin(tables.table("sitechan"), tables.table("site"), nullptr, nullptr, 0, nullptr, "both");
  EXPECT_EQ(tables.table("both"), view);
}

TEST(JoinResult, IsInvalidForViewsThatCannotBeJoined) {
  Tables tables, others;
  tables.add("sitechan", {{"sta", "A"}}).add("site", {{"sta", "A"}});
  others.add("site", {{"sta", "A"}});
  const Dbptr sitechan = tables.table("sitechan");
  const Dbptr both = join(sitechan, tables.table("site"));
  CollectedLog log;
  EXPECT_EQ(join(sitechan, others.table("site")), Dbptr());
  EXPECT_EQ(join(tables.table("snetsta"), both), Dbptr());
  EXPECT_THAT(log.lines(), ElementsAre("warning: dbjoin: the views are of different databases",
                                       "warning: dbjoin: the second view must be of one table"));
  EXPECT_EQ(join(Dbptr(), sitechan), Dbptr());
  EXPECT_EQ(join(sitechan, Dbptr()), Dbptr());
  EXPECT_EQ(log.lines().size(), 2u) << "invalid handles go through without a word";
}

// --- joins that are too large ---------------------------------------------------------------------------------------

// `rows` rows of each table, all of one station and channel.
void add_rows_of_one_key(Tables* tables, int rows) {
  for (int i = 0; i < rows; ++i) {
    tables->add("schanloc", {{"sta", "AAK"}, {"chan", "BHZ"}, {"loc", std::to_string(i % 90)}});
    tables->add("sitechan", {{"sta", "AAK"}, {"chan", "BHZ"}, {"ondate", "-1"}, {"offdate", "-1"}});
  }
}

TEST(LargeJoin, IsMadeUpToTheLimitAndRefusedBeyond) {
  Tables tables;
  add_rows_of_one_key(&tables, 20);
  for (const bool outer : {false, true}) {
    for (const std::uint64_t most : {399u, 400u, 401u}) {
      const triglub::ScopedLimit limit(triglub::Limit::join_rows, most);
      const CollectedLog log;
      const Dbptr joined = join(tables.table("sitechan"), tables.table("schanloc"), {{}, {}, outer});
      EXPECT_EQ(is_view(joined), most >= 400);
      if (most >= 400) continue;
      EXPECT_THAT(log.lines(),
                  ElementsAre("warning: dbjoin: sitechan with schanloc on sta chan: more than 399 rows of a join (the "
                              "limit join-rows)"));
    }
  }
}

TEST(LargeJoin, IsRefusedAsAStepOfAListToo) {
  Tables tables;
  add_rows_of_one_key(&tables, 20);
  tables.add("site", {{"sta", "AAK"}});
  const triglub::ScopedLimit limit(triglub::Limit::join_rows, 100);
  const CollectedLog log;
  EXPECT_FALSE(is_view(tables.process({"dbopen sitechan", "dbjoin site", "dbjoin schanloc sta"})));
  EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("sitechan site with schanloc on sta: more than 100 rows of a join"),
                                       HasSubstr("'dbjoin schanloc sta' failed")));
}

// Records that come to nothing take time all the same: a hundred rows may be looked at for each that a join may have.
TEST(LargeJoin, IsRefusedWhereTooManyRowsAreLookedAtInVain) {
  Tables tables;
  for (int i = 0; i < 20; ++i) {
    tables.add("sitechan", {{"sta", "AAK"}, {"chan", "BHZ"}, {"ondate", "2000001"}, {"offdate", "2000010"}});
    tables.add("sensor", {{"sta", "AAK"}, {"chan", "BHZ"}, {"time", "1000000000"}, {"endtime", "1000000001"}});
  }
  for (const std::uint64_t most : {3u, 4u}) {
    const triglub::ScopedLimit limit(triglub::Limit::join_rows, most);
    const CollectedLog log;
    const Dbptr joined = join(tables.table("sitechan"), tables.table("sensor"));
    EXPECT_EQ(is_view(joined), most == 4);
    EXPECT_EQ(log.lines().size(), most == 4 ? 0u : 1u);
  }
}

}  // namespace
}  // namespace triglub_test
