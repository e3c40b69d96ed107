#include "epochs/partners.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/made_database.h"

namespace triglub {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using triglub_test::MadeDatabase;
using triglub_test::MadeRows;

// What a database's partners are, with what was told as "REMARK ROW OTHER".
struct Found {
  explicit Found(const MadeRows& rows) : made(rows), tables(made.db()), order(tables), partners(tables, order, &told) {}

  std::vector<std::string> told_lines() const {
    std::vector<std::string> lines;
    for (const Told& one : told) {
      lines.push_back(std::to_string(static_cast<int>(one.remark)) + " " + std::to_string(one.row) + " " +
                      std::to_string(one.other));
    }
    return lines;
  }

  MadeDatabase made;
  StationTables tables;
  ChannelOrder order;
  ToldList told;
  Partners partners;
};

std::string told(Remark remark, int row, int other) {
  return std::to_string(static_cast<int>(remark)) + " " + std::to_string(row) + " " + std::to_string(other);
}

TEST(Partners, StationsAreByNetworkCodeAndStation) {
  const Found found({{"site", {{"sta", "A"}}},
                     {"site", {{"sta", "B"}}},
                     {"snetsta", {{"snet", "KR"}, {"fsta", "X"}, {"sta", "B"}}},
                     {"snetsta", {{"snet", "KR"}, {"fsta", "X"}, {"sta", "A"}}},
                     {"snetsta", {{"snet", "II"}, {"fsta", "Z"}, {"sta", "A"}}},
                     {"snetsta", {{"snet", "KR"}, {"fsta", "A"}, {"sta", "B"}}},
                     {"network", {{"net", "KR"}}}});
  std::vector<std::uint32_t> rows;
  std::vector<std::uint32_t> networks;
  for (const PublishedStation& station : found.partners.published()) {
    rows.push_back(station.snetsta);
    networks.push_back(station.network);
  }
  EXPECT_THAT(rows, ElementsAre(2, 3, 1, 0));
  EXPECT_THAT(networks, ElementsAre(kAbsent, 0, 0, 0));
  EXPECT_THAT(found.told_lines(), IsEmpty());
}

TEST(Partners, NullCodesAndUnknownStationsJoinNothing) {
  const Found found({{"site", {}},
                     {"snetsta", {{"snet", "-"}}},
                     {"snetsta", {{"fsta", "-"}}},
                     {"snetsta", {{"sta", "-"}}},
                     {"snetsta", {{"sta", "Q"}}},
                     {"network", {{"net", "-"}}},
                     {"instrument", {{"inid", "-1"}}},
                     {"sensor", {{"inid", "-1"}}}});
  EXPECT_THAT(found.partners.published(), IsEmpty());
  EXPECT_THAT(found.partners.networks(), IsEmpty());
  EXPECT_EQ(found.partners.instrument_of(0), kAbsent);
  EXPECT_THAT(found.told_lines(), IsEmpty());
}

TEST(Partners, OfRowsOfOneKeyTheLaterLoadDateCountsThenTheLaterRow) {
  const Found found({{"site", {}},
                     {"snetsta", {{"lddate", "2"}}},
                     {"snetsta", {{"lddate", "1"}}},
                     {"snetsta", {}},
                     {"network", {{"net", "KR"}}},
                     {"network", {{"net", "KR"}}},
                     {"instrument", {{"inid", "5"}, {"lddate", "9"}}},
                     {"instrument", {{"inid", "5"}, {"lddate", "8"}}},
                     {"sensor", {{"inid", "5"}}}});
  ASSERT_EQ(found.partners.published().size(), 1U);
  EXPECT_EQ(found.partners.published().front().snetsta, 0U);
  EXPECT_EQ(found.partners.published().front().network, 1U);
  EXPECT_EQ(found.partners.instrument_of(0), 0U);
  EXPECT_EQ(found.partners.instrument_of(kAbsent), kAbsent);
  EXPECT_THAT(found.told_lines(), ElementsAre(told(Remark::clash_network, 0, 1), told(Remark::clash_snetsta, 0, 1),
                                              told(Remark::clash_snetsta, 0, 2), told(Remark::clash_instrument, 0, 1)));
}

TEST(ChannelCodes, EachChannelHasTheLaterRow) {
  const Found found({{"sitechan", {{"chan", "A"}}},
                     {"sitechan", {{"chan", "B"}}},
                     {"sitechan", {{"chan", "C"}}},
                     {"schanloc", {{"chan", "C"}, {"loc", "10"}, {"lddate", "5"}}},
                     {"schanloc", {{"chan", "A"}}},
                     {"schanloc", {{"chan", "C"}, {"loc", "20"}}},
                     {"schanloc", {{"chan", "-"}}}});
  ChannelCodes codes(found.tables, found.order);
  ToldList more;
  EXPECT_EQ(codes.row_of(found.order.sitechan.key_of_row(0), &more), 1U);
  EXPECT_EQ(codes.row_of(found.order.sitechan.key_of_row(1), &more), kAbsent);
  EXPECT_EQ(codes.row_of(found.order.sitechan.key_of_row(2), &more), 0U);
  EXPECT_EQ(codes.row_of(found.order.sitechan.key_of_row(2), &more), 0U) << "asked again";
  ASSERT_EQ(more.size(), 1U);
  EXPECT_EQ(more.front().remark, Remark::clash_schanloc);
}

}  // namespace
}  // namespace triglub
