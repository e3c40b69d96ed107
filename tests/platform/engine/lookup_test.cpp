// dblookup: from names to the members of a handle.
#include <gtest/gtest.h>

#include "tables.h"

namespace triglub_test {
namespace {

class Lookup : public ::testing::Test {
 protected:
  Lookup() {
    tables_.add_all("site", {{{"sta", "AAK"}, {"ondate", "1990001"}}, {{"sta", "ANMO"}, {"ondate", "1995001"}}});
    tables_.add("sitechan", {{"sta", "AAK"}, {"chan", "BHZ"}, {"ondate", "1991001"}});
  }
  static Dbptr field(Dbptr view, const char* name) { return dblookup(view, nullptr, nullptr, name, nullptr); }

  Tables tables_;
};

TEST_F(Lookup, StartsATableWithFieldAndRecordUnset) {
  const Dbptr db = tables_.db();
  const Dbptr site = tables_.table("site");
  EXPECT_EQ(site.database, db.database);
  EXPECT_GE(site.table, 0);
  EXPECT_EQ(site.field, dbALL);
  EXPECT_EQ(site.record, dbALL);
  EXPECT_EQ(dblookup(at(field(site, "lat"), 1), nullptr, "site", nullptr, nullptr), site);
}

TEST_F(Lookup, KeepsMembersThatAreNotNamed) {
  const Dbptr lat = at(field(tables_.table("site"), "lat"), 1);
  EXPECT_EQ(dblookup(lat, nullptr, nullptr, nullptr, nullptr), lat);
  EXPECT_EQ(dblookup(lat, "", "", "", ""), lat);
  const Dbptr other = field(lat, "lon");
  EXPECT_EQ(other, (Dbptr{lat.database, lat.table, lat.field + 1, 1}));
}

TEST_F(Lookup, FindsFieldsBareAndQualified) {
  const Dbptr site = tables_.table("site");
  for (std::size_t i = 0; i < flat_schema().at("site").size(); ++i) {
    const std::string name = flat_schema().at("site")[i].name;
    EXPECT_EQ(field(site, name.c_str()).field, static_cast<std::int64_t>(i));
    EXPECT_EQ(field(site, ("site." + name).c_str()).field, static_cast<std::int64_t>(i));
  }
}

TEST_F(Lookup, ResolvesABareNameToTheFirstTableThatHasIt) {
  const Dbptr view = tables_.process({"dbopen sitechan", "dbjoin site"});
  EXPECT_EQ(field(view, "ondate"), field(view, "sitechan.ondate"));
  EXPECT_NE(field(view, "ondate"), field(view, "site.ondate"));
  EXPECT_EQ(field(view, "lat"), field(view, "site.lat"));
  EXPECT_EQ(text_at(view, "ondate", 0), "1991001");
  EXPECT_EQ(text_at(view, "site.ondate", 0), "1990001");
  const Dbptr other = tables_.process({"dbopen site", "dbjoin sitechan"});
  EXPECT_EQ(text_at(other, "ondate", 0), "1990001");
  EXPECT_EQ(text_at(other, "sitechan.ondate", 0), "1991001");
}

TEST_F(Lookup, LeavesWhatIsNotFoundUnsetAndAllBehindIt) {
  const Dbptr site = at(field(tables_.table("site"), "lat"), 1);
  CollectedLog log;
  for (const char* name : {"nothing", "site.nothing", "sitechan.sta", "nothing.sta", ".sta", "site.", ".", "Site.sta",
                           "LAT", "site.sta.sta", " sta"}) {
    EXPECT_EQ(field(site, name), (Dbptr{site.database, site.table, dbINVALID, dbINVALID})) << name;
    EXPECT_EQ(dblookup(site, nullptr, nullptr, name, "0"), (Dbptr{site.database, site.table, dbINVALID, dbINVALID}));
  }
  const Dbptr lost = {site.database, dbINVALID, dbINVALID, dbINVALID};
  EXPECT_EQ(dblookup(site, nullptr, "nothing", nullptr, nullptr), lost);
  EXPECT_EQ(dblookup(site, nullptr, "nothing", "sta", "0"), lost);
  EXPECT_EQ(dblookup(site, nullptr, "Site", "sta", "0"), lost);
  EXPECT_EQ(dblookup(tables_.db(), nullptr, nullptr, "sta", nullptr), lost);
  EXPECT_EQ(dblookup(site, "other", nullptr, nullptr, nullptr), Dbptr());
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Lookup, FindsRecordsByNumberAndMarker) {
  const Dbptr site = tables_.table("site");
  const auto record = [&](const char* name) { return dblookup(site, nullptr, nullptr, nullptr, name).record; };
  EXPECT_EQ(record("0"), 0);
  EXPECT_EQ(record("1"), 1);
  EXPECT_EQ(record("dbALL"), dbALL);
  EXPECT_EQ(record("dbNULL"), dbNULL);
  for (const char* name : {"2", "-1", "1x", " 1", "one", "99999999999999999999", "4294967296", "dbnull"}) {
    EXPECT_EQ(record(name), dbINVALID) << name;
  }
}

TEST_F(Lookup, FindsViewsByName) {
  const Dbptr site = tables_.table("site");
  const Dbptr view = dbsubset(site, "sta == 'AAK'", "one_station");
  EXPECT_EQ(tables_.table("one_station"), view);
  const Dbptr later = dbsubset(site, "sta == 'ANMO'", "one_station");
  EXPECT_EQ(tables_.table("one_station"), later);
  EXPECT_EQ(record_count(view), 1);  // still there, by its handle
}

TEST_F(Lookup, NeverTakesAViewForATable) {
  const Dbptr site = tables_.table("site");
  const Dbptr view = dbsubset(site, "sta == 'AAK'", "site");
  EXPECT_TRUE(is_view(view));
  EXPECT_EQ(tables_.table("site"), site);
}

TEST_F(Lookup, OfAnInvalidHandleFindsNothing) {
  EXPECT_EQ(dblookup(Dbptr(), nullptr, "site", nullptr, nullptr), Dbptr());
  EXPECT_EQ(dblookup({1000000, 0, 0, 0}, nullptr, "site", nullptr, nullptr), Dbptr());
  EXPECT_EQ(dblookup({tables_.db().database, 1000000, 0, 0}, nullptr, nullptr, "sta", nullptr).field, dbINVALID);
}

}  // namespace
}  // namespace triglub_test
