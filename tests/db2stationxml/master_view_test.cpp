#include <gmock/gmock.h>

#include "conversion.h"
#include "dbhelper.h"
#include "support/collected_log.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class MasterView : public Conversion {
 protected:
  MasterView() { verbosity = 0; }

  // "STA CHAN STAGE" of each record.
  std::vector<std::string> records() {
    Dbptr view = create_master_view(stations_.database(), subset_);
    std::vector<std::string> lines;
    const long count = db_nrecs(view);
    for (view.record = 0; view.record < count; ++view.record) {
      lines.push_back(db_fieldlookup(view, "sitechan.sta") + " " + db_fieldlookup(view, "sitechan.chan") + " " +
                      db_fieldlookup(view, "stage.stageid"));
    }
    return lines;
  }
};

TEST_F(MasterView, HasARecordForEachStageInOrder) {
  add_channels({"BHZ", "BHN"});
  for (const int stage : {4, 10, 1, 3, 2}) stations_.add_stage("AAK", "BHZ", stage);
  EXPECT_THAT(records(), ElementsAre("AAK BHN -1", "AAK BHZ 1", "AAK BHZ 2", "AAK BHZ 3", "AAK BHZ 4", "AAK BHZ 10"));
}

TEST_F(MasterView, IsSortedByStationAndChannel) {
  stations_.add_network("KR");
  for (const char* sta : {"B", "A"}) {
    stations_.add_station("KR", sta);
    for (const char* chan : {"Z", "N"}) stations_.add_channel(sta, chan);
  }
  EXPECT_THAT(records(), ElementsAre("A N -1", "A Z -1", "B N -1", "B Z -1"));
}

TEST_F(MasterView, TakesAChannelEpochOnce) {
  add_channels({"BHZ"});
  stations_.add_sensor("AAK", "BHZ", {{"inid", "5"}});
  stations_.add_stage("AAK", "BHZ", 1);
  EXPECT_THAT(records(), ElementsAre("AAK BHZ 1"));
}

TEST_F(MasterView, LeavesOutNetworksWithoutARow) {
  add_channels({"BHZ"});
  stations_.add_station("XX", "ANMO");
  stations_.add_channel("ANMO", "BHZ");
  EXPECT_THAT(records(), ElementsAre("AAK BHZ -1"));
}

TEST_F(MasterView, NeedsEverythingButInstrumentAndStages) {
  add_channels({"BHZ"});
  EXPECT_THAT(records(), ElementsAre("AAK BHZ -1"));
  Dbptr view = create_master_view(stations_.database(), subset_);
  view.record = 0;
  EXPECT_EQ(db_fieldlookup(view, "instrument.insname"), "-");
  EXPECT_EQ(db_fieldlookup(view, "network.netname"), "KR network");
}

TEST_F(MasterView, LeavesOutAChannelThatLacksARowOfAnyOtherTable) {
  const char* const tables[] = {"network", "snetsta", "site", "schanloc", "sensor", "calibration"};
  for (const std::string missing : tables) {
    Stations stations;
    for (const std::string sta : {"AAK", "ANMO"}) {
      const Row rows[] = {{{"net", sta}},
                          {{"snet", sta}, {"fsta", sta}, {"sta", sta}},
                          {{"sta", sta}, {"ondate", "1990001"}},
                          {{"sta", sta}, {"chan", "BHZ"}},
                          {{"sta", sta}, {"chan", "BHZ"}, {"time", "978307200.00000"}},
                          {{"sta", sta}, {"chan", "BHZ"}, {"time", "978307200.00000"}}};
      stations.add_row("sitechan", {{"sta", sta}, {"chan", "BHZ"}, {"ondate", "2001001"}});
      for (std::size_t i = 0; i < std::size(tables); ++i) {
        if (sta == "ANMO" || tables[i] != missing) stations.add_row(tables[i], rows[i]);
      }
    }
    Dbptr view = create_master_view(stations.database(), subset_);
    ASSERT_EQ(db_nrecs(view), 1) << missing;
    view.record = 0;
    EXPECT_EQ(db_fieldlookup(view, "sitechan.sta"), "ANMO") << missing;
  }
}

TEST_F(MasterView, KeepsEveryEpochOfAChannelInOrder) {
  add_channels({});
  for (const std::string chan : {"BHZ", "BHE"}) {
    const bool is_late = chan == "BHE";
    stations_.add_row("sitechan", {{"sta", "AAK"}, {"chan", chan}, {"ondate", is_late ? "2010001" : "2005001"}});
    if (!is_late) {
      stations_.add_row("sitechan", {{"sta", "AAK"}, {"chan", chan}, {"ondate", "2001001"}, {"offdate", "2005001"}});
    }
    stations_.add_row("schanloc", {{"sta", "AAK"}, {"chan", chan}});
    stations_.add_sensor("AAK", chan);
    stations_.add_row("calibration", {{"sta", "AAK"}, {"chan", chan}, {"time", Stations::begin}});
  }
  Dbptr view = create_master_view(stations_.database(), subset_);
  std::vector<std::string> epochs;
  const long count = db_nrecs(view);
  for (view.record = 0; view.record < count; ++view.record) {
    epochs.push_back(db_fieldlookup(view, "sitechan.chan") + " " + db_fieldlookup(view, "sitechan.ondate"));
  }
  EXPECT_THAT(epochs, ElementsAre("BHE 2010001", "BHZ 2001001", "BHZ 2005001"));
}

TEST_F(MasterView, TakesOnlyTheDatabaseOfTheHandle) {
  add_two_networks();
  const Dbptr db = stations_.database();
  const std::int64_t table = dblookup(db, nullptr, "network", nullptr, nullptr).table;
  for (const Dbptr& handle : {Dbptr{db.database, table, 1, 0}, Dbptr{db.database, dbINVALID, dbINVALID, dbINVALID},
                              Dbptr{db.database, 9999, 77, -5}}) {
    EXPECT_EQ(db_nrecs(create_master_view(handle, subset_)), 3) << as_string(handle);
  }
}

// A program that converts all day would gather them. What is made of whole tables before the subset serves the next.
TEST_F(MasterView, LeavesNoViewsOfASubsetButItselfAndTheOneWithNetworks) {
  add_two_networks();
  setarr(subset_, "sitechan.sta", "/AAK/");
  const Dbptr view = create_master_view(stations_.database(), subset_);
  const Dbptr with_net = dblookup(view, nullptr, "with_net", nullptr, nullptr);
  std::vector<std::int64_t> left;
  for (Dbptr made{view.database, 0, dbALL, dbALL}; made.table <= view.table; ++made.table) {
    std::string operations;
    dbquery(made, dbVIEW_OPERATIONS, operations);
    if (operations.find("dbsubset") != std::string::npos) left.push_back(made.table);
  }
  EXPECT_THAT(left, ElementsAre(with_net.table, view.table));
}

TEST_F(MasterView, IsNarrowedByEverySubset) {
  add_two_networks();
  EXPECT_THAT(records(), ElementsAre("AAK BHN -1", "AAK BHZ 1", "ANMO BHZ -1"));
  setarr(subset_, "sitechan.chan", "/BHZ/");
  EXPECT_THAT(records(), ElementsAre("AAK BHZ 1", "ANMO BHZ -1"));
  setarr(subset_, "snetsta.snet", "/K./");
  EXPECT_THAT(records(), ElementsAre("AAK BHZ 1"));
  setarr(subset_, "schanloc.loc", "/10/");
  EXPECT_THAT(records(), IsEmpty());
}

TEST_F(MasterView, IsInvalidWhenAStepFails) {
  add_channels({"BHZ"});
  const struct {
    const char* key;
    const char* value;
  } cases[] = {{"site.lat", "/42/"}, {"nosuch", "/x/"}, {"sitechan.sta", "/(/"}, {"sitechan.sta", "no slashes"}};
  for (const auto& c : cases) {
    rbtree* subset = newarr(nullptr);
    setarr(subset, c.key, c.value);
    const CollectedLog log;
    EXPECT_EQ(create_master_view(stations_.database(), subset).table, dbINVALID) << c.key;
    EXPECT_THAT(log.lines(), Not(IsEmpty()));
    freearr(subset, nullptr);
  }
  EXPECT_EQ(create_master_view(Dbptr{}, subset_).table, dbINVALID);
}

TEST_F(MasterView, IsInvalidWhenATableRefusesToLoad) {
  for (const char* table :
       {"sitechan", "snetsta", "schanloc", "network", "site", "sensor", "instrument", "calibration", "stage"}) {
    Stations stations;
    add_channels(stations, {"BHZ"});
    stations.add_stage("AAK", "BHZ", 1);
    stations.add_row("instrument", {{"inid", "1"}});
    stations.database();
    stations.write_file(std::string("db.") + table, "no row of any table, not at all, in no way, by no means\n");
    const CollectedLog log;
    EXPECT_THROW(db_nrecs(create_master_view(stations.database(), subset_)), dbquery_error) << table;
    EXPECT_THAT(log.lines_with("warning: "), ::testing::Contains(::testing::HasSubstr(table))) << table;
  }
}

TEST_F(MasterView, HasEveryFieldOfItsTables) {
  add_channels({"BHZ"});
  const Dbptr view = create_master_view(stations_.database(), subset_);
  for (const char* table :
       {"sitechan", "snetsta", "schanloc", "network", "site", "sensor", "instrument", "calibration", "stage"}) {
    for (const FlatField& field : flat_schema().at(table)) {
      EXPECT_NO_THROW(db_setfield(view, std::string(table) + "." + field.name)) << table << "." << field.name;
      EXPECT_NO_THROW(db_setfield(view, field.name)) << field.name;
    }
  }
  EXPECT_THROW(db_setfield(view, "affiliation.net"), std::runtime_error);
}

// Whichever way they come, they narrow the same view.
TEST_F(MasterView, TakesSubsetsFromTheLastKeyToTheFirst) {
  add_channels({"BHZ"});
  char pattern[] = " /B.*/ ";  // is trimmed in place
  setarr(subset_, "sitechan.chan", pattern);
  setarr(subset_, " snetsta.snet\t", "/KR/");
  setarr(subset_, "concat(sta, fchan)", "/AAK.*/");
  verbosity = 1;
  const CollectedLog log;
  EXPECT_EQ(db_nrecs(create_master_view(stations_.database(), subset_)), 1);
  EXPECT_THAT(log.lines_with("debug: dbprocess: dbsubset "),
              ElementsAre(StartsWith("debug: dbprocess: dbsubset sitechan.chan=~/B.*/:"),
                          StartsWith("debug: dbprocess: dbsubset concat(sta, fchan)=~/AAK.*/:"),
                          StartsWith("debug: dbprocess: dbsubset snetsta.snet=~/KR/:")));
}

TEST_F(MasterView, IsTracedStepByStep) {
  add_channels({"BHZ"});
  setarr(subset_, "sitechan.sta", "/AAK/");
  for (const unsigned int level : {1u, 2u, 3u}) {
    verbosity = level;
    const CollectedLog log;
    create_master_view(stations_.database(), subset_);
    EXPECT_THAT(
        log.lines_without("debug: Function"),
        ElementsAre(StartsWith("debug: dbprocess: dbopen sitechan"), StartsWith("debug: dbprocess: dbjoin snetsta"),
                    StartsWith("debug: dbprocess: dbjoin schanloc sta chan"),
                    StartsWith("debug: dbprocess: dbsubset sitechan.sta=~/AAK/"),
                    StartsWith("debug: dbprocess: dbjoin site"), StartsWith("debug: dbprocess: dbjoin sensor"),
                    StartsWith("debug: dbprocess: dbjoin -o instrument"),
                    StartsWith("debug: dbprocess: dbjoin calibration"),
                    StartsWith("debug: dbprocess: dbsort -u sitechan.sta sitechan.chan sitechan.ondate"),
                    StartsWith("debug: dbprocess: dbjoin -o stage"),
                    StartsWith("debug: dbprocess: dbsort sitechan.sta sitechan.chan sitechan.ondate stage.stageid"),
                    "debug: after process"));
  }
}

}  // namespace
}  // namespace triglub_test
