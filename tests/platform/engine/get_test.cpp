// dbget and dbgetv: values out of a record.
#include <gtest/gtest.h>

#include <cstring>

#include "tables.h"

namespace triglub_test {
namespace {

class Get : public ::testing::Test {
 protected:
  Get() {
    tables_.add("sitechan",
                {{"sta", "AAK"}, {"chan", "BHZ"}, {"ondate", "1990001"}, {"chanid", "17"}, {"hang", "+1.50"}});
    tables_.add("sitechan", {{"sta", "ANMO"}, {"ondate", "1990001"}});
    tables_.add("site", {{"sta", "AAK"},
                         {"ondate", "1990001"},
                         {"lat", "42.6375"},
                         {"staname", "Ala Archa"},
                         {"lddate", "1700000000.00000"}});
  }
  static Dbptr field(Dbptr view, const char* name) { return dblookup(view, nullptr, nullptr, name, nullptr); }
  Dbptr joined() { return tables_.process({"dbopen sitechan", "dbjoin -o site"}); }

  Tables tables_;
};

TEST_F(Get, GivesTheTextsOfValuesTrimmed) {
  EXPECT_EQ(text_at(tables_.table("site"), "lat", 0), "42.6375");
  EXPECT_EQ(text_at(tables_.table("sitechan"), "chanid", 0), "17");
  EXPECT_EQ(text_at(tables_.table("site"), "staname", 0), "Ala Archa");
}

TEST_F(Get, GivesTheNullTextOfANull) {
  tables_.add("sensor", {});
  for (const FlatField& field : flat_schema().at("sensor")) {
    EXPECT_EQ(text_at(tables_.table("sensor"), field.name, 0), field.null_text);
  }
}

TEST_F(Get, ReadsAnAbsentRowAsNullInEveryField) {
  const Dbptr view = joined();
  ASSERT_EQ(record_count(view), 2);
  for (const FlatField& field : flat_schema().at("site")) {
    EXPECT_EQ(text_at(view, "site." + field.name, 1), field.null_text) << field.name;
  }
  double lat = 0, lddate = 0;
  std::int64_t ondate = 0;
  char sta[7] = "", staname[51] = "";
  ASSERT_EQ(dbgetv(at(view, 1), nullptr, "site.lat", &lat, "site.lddate", &lddate, "site.ondate", &ondate, "site.sta",
                   sta, "staname", staname, nullptr),
            0);
  EXPECT_EQ(lat, -999);
  EXPECT_EQ(lddate, -9999999999.999);
  EXPECT_EQ(ondate, -1);
  EXPECT_STREQ(sta, "-");
  EXPECT_STREQ(staname, "-");
}

TEST_F(Get, ReadsTheNullRecord) {
  for (const Dbptr& view : {tables_.table("site"), joined(), tables_.table("stage")}) {
    const Dbptr null = at(field(view, "sta"), dbNULL);
    char text[1024] = "";
    EXPECT_EQ(dbget(null, text), 0);
    EXPECT_STREQ(text, "-");
    double lddate = 0;
    char sta[7] = "";
    EXPECT_EQ(dbgetv(null, nullptr, "sta", sta, "lddate", &lddate, nullptr), 0);
    EXPECT_STREQ(sta, "-");
    EXPECT_EQ(lddate, -9999999999.999);
  }
}

TEST_F(Get, FillsVariablesOfEveryType) {
  char sta[7] = "", chan[9] = "", descrip[51] = "xx";
  std::int64_t ondate = 0, offdate = 0, chanid = 0;
  double hang = 0, vang = 0, lddate = 0;
  ASSERT_EQ(
      dbgetv(at(tables_.table("sitechan"), 0), nullptr, "sta", sta, "chan", chan, "descrip", descrip, "ondate", &ondate,
             "offdate", &offdate, "chanid", &chanid, "hang", &hang, "vang", &vang, "lddate", &lddate, nullptr),
      0);
  EXPECT_STREQ(sta, "AAK");
  EXPECT_STREQ(chan, "BHZ");
  EXPECT_STREQ(descrip, "-");
  EXPECT_EQ(ondate, 1990001);
  EXPECT_EQ(offdate, -1);
  EXPECT_EQ(chanid, 17);
  EXPECT_EQ(hang, 1.5);
  EXPECT_EQ(vang, -1);
  EXPECT_EQ(lddate, -9999999999.999);
}

TEST_F(Get, TakesNamesOfTheTableThatIsGiven) {
  const Dbptr view = at(joined(), 1);
  char sta[7] = "";
  ASSERT_EQ(dbgetv(view, nullptr, "sta", sta, nullptr), 0);
  EXPECT_STREQ(sta, "ANMO");
  ASSERT_EQ(dbgetv(view, "site", "sta", sta, nullptr), 0);
  EXPECT_STREQ(sta, "-");
  ASSERT_EQ(dbgetv(view, "sitechan", "sta", sta, nullptr), 0);
  EXPECT_STREQ(sta, "ANMO");
  ASSERT_EQ(dbgetv(view, "", "sta", sta, nullptr), 0);
  EXPECT_STREQ(sta, "ANMO");
  double lat = 0;
  EXPECT_LT(dbgetv(view, "sitechan", "lat", &lat, nullptr), 0);
  EXPECT_LT(dbgetv(view, "stage", "sta", sta, nullptr), 0);
}

TEST_F(Get, FillsWhatComesBeforeAFieldThatIsNotThere) {
  char sta[7] = "";
  double lat = 7;
  EXPECT_LT(dbgetv(at(tables_.table("site"), 0), nullptr, "sta", sta, "nothing", &lat, "lat", &lat, nullptr), 0);
  EXPECT_STREQ(sta, "AAK");
  EXPECT_EQ(lat, 7);
  EXPECT_EQ(dbgetv(at(tables_.table("site"), 0), nullptr, nullptr), 0);  // nothing asked for
}

TEST_F(Get, CutsTextsToTheFieldsWidthBetweenCharacters) {
  struct Case {
    std::string in_file, whole, cut;  // the field `refsta` has 6 bytes
  };
  for (const auto& [in_file, whole, cut] : std::vector<Case>{
           {"abcdef", "abcdef", "abcdef"},
           {"\xC3\xBC\xC3\xBC\xC3\xBC", "\xC3\xBC\xC3\xBC\xC3\xBC", "\xC3\xBC\xC3\xBC\xC3\xBC"},
           {"\xFC\xFC\xFC\xFC\xFC\xFC", "\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC", "\xC3\xBC\xC3\xBC\xC3\xBC"},
           {"abcde\xFC", "abcde\xC3\xBC", "abcde"},
           {"abcd\xFC", "abcd\xC3\xBC", "abcd\xC3\xBC"},
           {"a\xFC\xFC\xFC", "a\xC3\xBC\xC3\xBC\xC3\xBC", "a\xC3\xBC\xC3\xBC"},
       }) {
    Tables tables;
    tables.add("site", {{"refsta", in_file}});
    EXPECT_EQ(text_at(tables.table("site"), "refsta", 0), whole);
    char text[8];
    std::memset(text, '#', sizeof text);
    ASSERT_EQ(dbgetv(at(tables.table("site"), 0), nullptr, "refsta", text, nullptr), 0);
    EXPECT_EQ(text, cut);
    EXPECT_EQ(text[7], '#') << "writes no more than width + 1 bytes";
  }
}

TEST_F(Get, LeavesTheBufferAloneWhereThereIsNoValue) {
  const Dbptr site = tables_.table("site");
  Dbptr far = at(site, 0);
  far.field = 12;
  Dbptr negative = at(site, 0);
  negative.field = -1;
  CollectedLog log;
  for (const Dbptr& db :
       {Dbptr(), at(site, 0), field(site, "sta"), at(field(site, "sta"), 1), at(field(site, "sta"), -1),
        at(field(site, "sta"), dbINVALID), at(field(site, "sta"), std::int64_t{1} << 32), far, negative,
        Dbptr{site.database, 999, 0, 0}, Dbptr{999, 0, 0, 0}, tables_.db()}) {
    char text[1024] = "as it was";
    EXPECT_EQ(dbget(db, text), -102);
    EXPECT_STREQ(text, "as it was");
  }
  for (const Dbptr& db : {Dbptr(), site, at(site, 1), at(site, -1), at(site, std::int64_t{1} << 32), tables_.db()}) {
    double lat = 7;
    EXPECT_LT(dbgetv(db, nullptr, "lat", &lat, nullptr), 0);
    EXPECT_EQ(lat, 7);
  }
  EXPECT_TRUE(log.lines().empty());
}

}  // namespace
}  // namespace triglub_test
