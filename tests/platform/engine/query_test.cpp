// dbquery: every code, where it has an answer and where it has none.
#include <gtest/gtest.h>

#include "tables.h"

namespace triglub_test {
namespace {

class Query : public ::testing::Test {
 protected:
  Query() {
    tables_.add("sitechan", {{"sta", "AAK"}, {"chan", "BHZ"}, {"ondate", "1990001"}});
    tables_.add("site", {{"sta", "AAK"}, {"ondate", "1990001"}});
  }
  static std::string text(Dbptr db, int code) {
    const char* answer = nullptr;
    EXPECT_EQ(dbquery(db, code, &answer), 0) << code;
    return answer == nullptr ? "(null)" : answer;
  }
  static Dbptr field(Dbptr view, const std::string& name) {
    return dblookup(view, nullptr, nullptr, name.c_str(), nullptr);
  }

  Tables tables_;
};

TEST_F(Query, CountsRecordsAndFields) {
  long count = 0;
  ASSERT_EQ(dbquery(tables_.table("site"), dbRECORD_COUNT, &count), 0);
  EXPECT_EQ(count, 1);
  ASSERT_EQ(dbquery(tables_.table("site"), dbFIELD_COUNT, &count), 0);
  EXPECT_EQ(count, 12);
  const Dbptr view = tables_.process({"dbopen sitechan", "dbjoin site"});
  ASSERT_EQ(dbquery(view, dbFIELD_COUNT, &count), 0);
  EXPECT_EQ(count, 11 + 12);
  ASSERT_EQ(dbquery(at(field(view, "lat"), 0), dbRECORD_COUNT, &count), 0);  // field and record do not matter
  EXPECT_EQ(count, 1);
  ASSERT_EQ(dbquery(tables_.table("stage"), dbRECORD_COUNT, &count), 0);
  EXPECT_EQ(count, 0);
}

TEST_F(Query, AnswersTypesNamesAndNullsOfEveryField) {
  for (const auto& [table, fields] : flat_schema()) {
    const Dbptr view = tables_.table(table);
    for (const FlatField& expected : fields) {
      const Dbptr at_field = field(view, expected.name);
      EXPECT_EQ(text(at_field, dbFIELD_NAME), expected.name);
      EXPECT_EQ(text(at_field, dbFIELD_BASE_TABLE), table);
      EXPECT_EQ(text(at_field, dbNULL_VALUE), expected.null_text);
      int type = 0;
      EXPECT_EQ(dbquery(at_field, dbFIELD_TYPE, &type), 0);
      EXPECT_EQ(type == dbSTRING, expected.is_text);
    }
  }
}

TEST_F(Query, TellsTheFiveTypesApart) {
  const auto type_of = [&](const char* table, const char* name) {
    int type = 0;
    EXPECT_EQ(dbquery(field(tables_.table(table), name), dbFIELD_TYPE, &type), 0);
    return type;
  };
  EXPECT_EQ(type_of("site", "sta"), dbSTRING);
  EXPECT_EQ(type_of("site", "ondate"), dbYEARDAY);
  EXPECT_EQ(type_of("site", "lat"), dbREAL);
  EXPECT_EQ(type_of("site", "lddate"), dbTIME);
  EXPECT_EQ(type_of("sitechan", "chanid"), dbINTEGER);
}

TEST_F(Query, DescribesAField) {
  EXPECT_EQ(text(field(tables_.table("site"), "elev"), dbFIELD_DETAIL),
            "r9, km, null -999.0000: elevation of the surface");
  EXPECT_EQ(text(field(tables_.table("site"), "sta"), dbFIELD_DETAIL), "t6, null -: station");
}

TEST_F(Query, NamesTheTableThatAViewsFieldComesFrom) {
  const Dbptr view = tables_.process({"dbopen sitechan", "dbjoin site"});
  EXPECT_EQ(text(field(view, "sta"), dbFIELD_BASE_TABLE), "sitechan");
  EXPECT_EQ(text(field(view, "site.sta"), dbFIELD_BASE_TABLE), "site");
  EXPECT_EQ(text(field(view, "site.sta"), dbFIELD_NAME), "sta");
}

TEST_F(Query, SaysWhereAViewBegan) {
  EXPECT_EQ(text(tables_.table("site"), dbVIEW_OPERATIONS), "dbopen site");
  EXPECT_EQ(text(triglub::view_of_records(tables_.table("site"), {0}, nullptr), dbVIEW_OPERATIONS),
            "dbopen site\nrecords chosen by the program");
}

TEST_F(Query, AnswersTheOperationsOneToALine) {
  const Dbptr view =
      tables_.process({"dbopen  sitechan", " dbjoin -o site ", "dbsubset  sta =~ /A.*/", "dbsort -u sta chan",
                       "dbjoin -o schanloc sta chan", "dbjoin -o snetsta sta:fsta"});
  EXPECT_EQ(text(view, dbVIEW_OPERATIONS),
            "dbopen sitechan\ndbjoin -o site\ndbsubset sta =~ /A.*/\ndbsort -u sta chan\ndbjoin -o schanloc sta chan\n"
            "dbjoin -o snetsta sta:fsta");
}

TEST_F(Query, LeavesTheAnswerAloneWhereThereIsNone) {
  const Dbptr site = tables_.table("site");
  const Dbptr no_field = site;
  Dbptr far = site;
  far.field = 12;
  CollectedLog log;
  for (const Dbptr& db : {no_field, far}) {
    for (const int code : {dbFIELD_TYPE, dbFIELD_NAME, dbFIELD_DETAIL, dbFIELD_BASE_TABLE, dbNULL_VALUE}) {
      const char* answer = "as it was";
      EXPECT_LT(dbquery(db, code, &answer), 0) << code;
      EXPECT_STREQ(answer, "as it was");
    }
  }
  for (const Dbptr& db : {Dbptr(), tables_.db(), Dbptr{0, 999, 0, 0}, Dbptr{-1, 0, 0, 0}, Dbptr{999, 0, 0, 0}}) {
    for (int code = -600; code <= 10; ++code) {
      long answer = 42;
      EXPECT_LT(dbquery(db, code, &answer), 0) << code;
      EXPECT_EQ(answer, 42);
    }
  }
  for (const int code : {0, 1, -1, -303, -306, -369, -502}) {
    long answer = 42;
    EXPECT_LT(dbquery(field(site, "lat"), code, &answer), 0) << code;
    EXPECT_EQ(answer, 42);
  }
  EXPECT_LT(dbquery(site, dbRECORD_COUNT, nullptr), 0);
  EXPECT_TRUE(log.lines().empty());
}

// Callers of the classic interface know the codes by their numbers.
TEST(QueryCodes, HaveTheClassicNumbers) {
  EXPECT_EQ(dbRECORD_COUNT, -305);
  EXPECT_EQ(dbFIELD_COUNT, -304);
  EXPECT_EQ(dbFIELD_TYPE, -328);
  EXPECT_EQ(dbFIELD_BASE_TABLE, -354);
  EXPECT_EQ(dbFIELD_NAME, -320);
  EXPECT_EQ(dbFIELD_DETAIL, -310);
  EXPECT_EQ(dbVIEW_OPERATIONS, -368);
  EXPECT_EQ(dbNULL_VALUE, -505);
  EXPECT_EQ(dbTABLE_DIRNAME, -331);
  EXPECT_EQ(dbINVALID, -102);
  EXPECT_EQ(dbSORT_UNIQUE, 2);
  EXPECT_EQ(dbINTEGER, 2);
  EXPECT_EQ(dbREAL, 3);
  EXPECT_EQ(dbTIME, 4);
  EXPECT_EQ(dbYEARDAY, 5);
  EXPECT_EQ(dbSTRING, 6);
}

}  // namespace
}  // namespace triglub_test
