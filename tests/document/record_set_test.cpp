#include "document/record_set.h"

#include <gtest/gtest.h>

#include <string>

#include "epochs/record_view.h"
#include "support/made_database.h"

namespace triglub {
namespace {

using triglub_test::MadeDatabase;

// Records: a place without channels (TKM), then two channels of AAK.
class RecordSetOfAStation : public testing::Test {
 protected:
  RecordSetOfAStation()
      : made_({{"site", {}},
               {"site", {{"sta", "TKM"}}},
               {"snetsta", {}},
               {"snetsta", {{"fsta", "A"}, {"sta", "TKM"}}},
               {"network", {{"net", "KR"}}},
               {"sitechan", {{"chan", "BHE"}}},
               {"sitechan", {}},
               {"sensor", {}}}),
        view_(make_record_view(made_.db(), {}, &findings_).view),
        records_(view_, kEpoch) {}
  ~RecordSetOfAStation() override { release_view(view_); }

  std::string place(std::uint32_t record, TableMask tables) const {
    return made_.shortened(records_.place(record, tables));
  }

  Findings findings_;
  MadeDatabase made_;
  Dbptr view_;
  RecordSet records_;
};

constexpr TableMask kAll = (TableMask{1} << kRecordTables) - 1;

TEST_F(RecordSetOfAStation, KnowsWhichTablesHaveOneRowForAll) {
  ASSERT_EQ(records_.size(), 3U);
  const TableMask of_station = mask_of(kSnetsta) | mask_of(kNetwork) | mask_of(kSite) | mask_of(kNetworkEpoch) |
                               mask_of(kStationEpoch) | mask_of(kSchanloc) | mask_of(kInstrument) |
                               mask_of(kCalibration) | mask_of(kStage) | mask_of(kChain);
  EXPECT_EQ(records_.constant_tables(kAll, {nullptr, 1, 2}), of_station);
  EXPECT_EQ(records_.constant_tables(kAll, {nullptr, 2, 1}), kAll);
  const std::uint32_t numbers[] = {0, 2};
  EXPECT_EQ(records_.constant_tables(mask_of(kNetwork) | mask_of(kSite) | mask_of(kSitechan), {numbers, 0, 2}),
            mask_of(kNetwork));
}

TEST_F(RecordSetOfAStation, ComparesRowsOfTheTablesThatAreAskedFor) {
  EXPECT_TRUE(records_.are_same(mask_of(kSite), 1, 2));
  EXPECT_FALSE(records_.are_same(mask_of(kSite) | mask_of(kSitechan), 1, 2));
  EXPECT_TRUE(records_.are_same(0, 0, 2));
}

TEST_F(RecordSetOfAStation, PlacesAreRowsOfFiles) {
  EXPECT_EQ(place(2, mask_of(kSensor)), "sensor:1");
  EXPECT_EQ(place(2, mask_of(kSite) | mask_of(kSensor)), "site:1");
  EXPECT_EQ(place(1, mask_of(kSensor)), "sitechan:1") << "an absent row is told by the first that is there";
  EXPECT_EQ(place(2, mask_of(kEpoch)), "sitechan:2") << "a row that was worked out is in no file";
  EXPECT_EQ(place(0, mask_of(kSensor)), "snetsta:2");
  EXPECT_EQ(place(0, 0), "snetsta:2");
}

TEST(RecordSetPlaces, AreRightWhereTheNameOfADatabaseHasABlank) {
  triglub_test::FlatDatabase files("my network");
  files.add_row("site", {{"sta", "AAK"}});
  files.add_row("sitechan", {{"sta", "AAK"}, {"chan", "BHZ"}});
  files.add_row("snetsta", {{"snet", "KR"}, {"fsta", "AAK"}, {"sta", "AAK"}});
  Dbptr db;
  ASSERT_EQ(dbopen(files.write().c_str(), "r", &db), 0);
  Findings findings;
  const RecordSet records(make_record_view(db, {}, &findings).view, kEpoch);
  EXPECT_EQ(records.place(0, mask_of(kSite)), files.prefix() + ".site:1");
  dbclose(db);
}

TEST(TableMask, HasABitForEachTable) {
  EXPECT_EQ(mask_of(std::vector<std::size_t>{}), 0U);
  EXPECT_EQ(mask_of(std::vector<std::size_t>{0, 3}), 9U);
}

}  // namespace
}  // namespace triglub
