#include <gmock/gmock.h>

#include "dbhelper.h"
#include "one_site.h"
#include "support/collected_log.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

using DbQuery = OneSite;

template <typename Call>
void expect_query_error(Call call, const std::string& message) {
  try {
    call();
    ADD_FAILURE() << "no exception";
  } catch (const dbquery_error& e) {
    EXPECT_STREQ(e.what(), "invalid response from querying the database");
    EXPECT_EQ(e.std::runtime_error::what(), message);
  }
}

TEST(DbqueryError, SaysTheSameWhateverItWasMadeWith) {
  const dbquery_error error("something else");
  EXPECT_STREQ(error.what(), "invalid response from querying the database");
  EXPECT_STREQ(std::runtime_error(error).what(), "something else");
}

TEST_F(DbQuery, CountsRecordsAndFields) {
  EXPECT_EQ(db_nrecs(table("site")), 1);
  EXPECT_EQ(db_nrecs(table("sensor")), 2);
  EXPECT_EQ(db_nrecs(table("network")), 0);
  EXPECT_EQ(db_nfields(table("site")), 12);
  EXPECT_EQ(db_nfields(table("network")), 6);
}

TEST_F(DbQuery, TellsEachFieldType) {
  EXPECT_EQ(db_getfieldtype(db_setfield(table("site"), "sta")), dbSTRING);
  EXPECT_EQ(db_getfieldtype(db_setfield(table("site"), "lat")), dbREAL);
  EXPECT_EQ(db_getfieldtype(db_setfield(table("site"), "ondate")), dbYEARDAY);
  EXPECT_EQ(db_getfieldtype(db_setfield(table("sensor"), "time")), dbTIME);
  EXPECT_EQ(db_getfieldtype(db_setfield(table("sensor"), "inid")), dbINTEGER);
}

TEST_F(DbQuery, ThrowsForWhatCannotBeCounted) {
  const Dbptr unset;
  expect_query_error([&] { db_nrecs(unset); }, "unsuccessful query of dbRECORD_COUNT");
  expect_query_error([&] { db_nfields(unset); }, "unsuccessful query of dbFIELD_COUNT");
  expect_query_error([&] { db_getfieldtype(unset); }, "unsuccessful query of dbFIELD_TYPE");
  expect_query_error([&] { db_getfieldtype(table("site")); }, "unsuccessful query of dbFIELD_TYPE");
}

TEST_F(DbQuery, AnswersTexts) {
  std::string text = "before";
  EXPECT_EQ(dbquery(db_setfield(table("site"), "lat"), dbFIELD_NAME, text), 0);
  EXPECT_EQ(text, "lat");
}

TEST_F(DbQuery, EmptiesTheTextWhenThereIsNoAnswer) {
  std::string text = "before";
  EXPECT_LT(dbquery(Dbptr{}, dbFIELD_NAME, text), 0);
  EXPECT_EQ(text, "");
}

TEST_F(DbQuery, FindsFieldsBareAndQualified) {
  const Dbptr bare = db_setfield(first("site"), "lat");
  const Dbptr qualified = db_setfield(first("site"), "site.lat");
  EXPECT_EQ(bare, qualified);
  EXPECT_EQ(bare.record, 0);
  EXPECT_EQ(bare.table, table("site").table);
}

TEST_F(DbQuery, ThrowsAPlainErrorForAnUnknownField) {
  for (const char* field : {"", "nosuch", "site.nosuch", "network.net", "LAT"}) {
    try {
      db_setfield(first("site"), field);
      ADD_FAILURE() << field;
    } catch (const dbquery_error&) {
      ADD_FAILURE() << field;
    } catch (const std::runtime_error& e) {
      EXPECT_EQ(e.what(), "db field [" + std::string(field) + "] not found");
    }
  }
}

TEST_F(DbQuery, LooksUpValuesTrimmed) {
  EXPECT_EQ(db_fieldlookup(first("site"), "staname"), "Ala Archa");
  EXPECT_EQ(db_fieldlookup(first("site"), "site.lat"), "42.6375");
  EXPECT_EQ(db_fieldlookup(first("site"), "refsta"), "-");
}

TEST_F(DbQuery, ThrowsForAValueThatCannotBeRead) {
  Dbptr beyond = table("site");
  beyond.record = 1;
  expect_query_error([&] { db_fieldlookup(beyond, "lat"); }, "dbget was unable to retrieve value of field [lat]");
}

TEST_F(DbQuery, FallsBackForUnreadableValuesOnly) {
  EXPECT_EQ(db_fieldlookup(first("site"), "sta", "none"), "AAK");
  Dbptr beyond = table("site");
  beyond.record = 1;
  EXPECT_EQ(db_fieldlookup(beyond, "sta", "none"), "none");
  try {
    db_fieldlookup(first("site"), "nosuch", "none");
    ADD_FAILURE() << "no exception";
  } catch (const std::runtime_error& e) {
    EXPECT_STREQ(e.what(), "db field [nosuch] not found");
  }
}

TEST_F(DbQuery, GivesNullValues) {
  EXPECT_EQ(get_nullvalue(table("site"), "lat"), "-999.0000");
  EXPECT_EQ(get_nullvalue(table("site"), "site.ondate"), "-1");
  EXPECT_EQ(get_nullvalue(db_setfield(table("site"), "sta")), "-");
  EXPECT_THROW(get_nullvalue(table("site"), "nosuch"), std::runtime_error);
}

TEST_F(DbQuery, SharesNullValuesOfFieldsAtTheSamePosition) {
  // site.lat and sitechan.chanid both stand at position 3.
  EXPECT_EQ(get_nullvalue(table("site"), "lat"), "-999.0000");
  EXPECT_EQ(get_nullvalue(table("sitechan"), "chanid"), "-999.0000");
  EXPECT_EQ(get_nullvalue(table("site"), "lat"), "-999.0000");
}

TEST_F(DbQuery, RemembersThatANullValueCouldNotBeHad) {
  Dbptr nowhere;
  nowhere.field = 3;
  EXPECT_EQ(get_nullvalue(nowhere), "");
  EXPECT_EQ(get_nullvalue(table("site"), "lat"), "");
}

TEST(Handle, IsInvalidWhenAnyMemberIs) {
  EXPECT_FALSE(any_dbinvalid({0, 1, 2, 3}));
  EXPECT_FALSE(any_dbinvalid({0, 1, dbALL, dbNULL}));
  EXPECT_TRUE(any_dbinvalid({dbINVALID, 1, 2, 3}));
  EXPECT_TRUE(any_dbinvalid({0, dbINVALID, 2, 3}));
  EXPECT_TRUE(any_dbinvalid({0, 1, dbINVALID, 3}));
  EXPECT_TRUE(any_dbinvalid({0, 1, 2, dbINVALID}));
  EXPECT_TRUE(any_dbinvalid({}));
}

TEST_F(DbQuery, TellsEmptyViews) {
  EXPECT_FALSE(is_empty(table("site")));
  EXPECT_TRUE(is_empty(table("network")));
  expect_query_error([] { is_empty(Dbptr{}); }, "unsuccessful query of dbRECORD_COUNT");
}

TEST_F(DbQuery, DumpsTheFieldsOfAView) {
  const Dbptr network = first("network");
  const CollectedLog log;
  dumpViewFieldnames(network);
  ASSERT_EQ(log.lines().size(), 8u);
  EXPECT_EQ(log.lines()[0], "notify: " + as_string(network) + " --");
  EXPECT_THAT(log.lines()[1], StartsWith("notify: field [0]: network.net = "));
  EXPECT_THAT(log.lines()[2], StartsWith("notify: field [1]: network.netname = "));
  EXPECT_THAT(log.lines()[6], StartsWith("notify: field [5]: network.lddate = "));
  EXPECT_THAT(log.lines()[7], StartsWith("debug: This view was achieved by: "));
}

TEST(Dump, ShowsOnlyHeadAndOriginOfAViewWithoutFields) {
  const CollectedLog log;
  dumpViewFieldnames(Dbptr{});
  EXPECT_THAT(log.lines(),
              ElementsAre("notify: db(-102.-102.-102.-102) --", HasSubstr("debug: This view was achieved by: ")));
}

}  // namespace
}  // namespace triglub_test
