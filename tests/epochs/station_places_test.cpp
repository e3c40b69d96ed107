#include "epochs/station_places.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "epochs/station_choice.h"
#include "support/made_database.h"

namespace triglub {
namespace {

using testing::ElementsAre;
using triglub_test::at_hour;
using triglub_test::MadeDatabase;
using triglub_test::MadeRows;

std::string hour_text(Instant instant) {
  if (instant == kPast || instant == kFuture) return "open";
  return std::to_string((instant - 946684800000) / 3600000);
}

// The places of station AAK: "SITE BEGIN..END CHANNELS", with a "-" where the row never stands.
std::vector<std::string> places_of(const MadeRows& rows) {
  const MadeDatabase made(rows);
  const StationTables tables(made.db());
  const ChannelOrder order(tables);
  const EpochList epochs = find_epochs(tables, order, StationSet());
  ToldList told;
  StationPlaces places(tables, order, &told);
  places.take(epochs);
  std::vector<std::string> lines;
  for (const StationPlace& place : places.of(order.stations.find("AAK"))) {
    EXPECT_EQ(&places.of_site(place.site), &place);
    lines.push_back(std::to_string(place.site) + " " + hour_text(place.span.begin) + ".." + hour_text(place.span.end) +
                    " " + std::to_string(place.channels) + (place.stands ? "" : " -"));
  }
  return lines;
}

TEST(StationPlaces, MeetAtTheEarliestBorderOfTheChannels) {
  EXPECT_THAT(places_of({{"site", {{"ondate", "1999365"}, {"offdate", "2000001"}}},
                         {"site", {{"ondate", "2000001"}}},
                         {"sitechan", {{"chan", "BHE"}}},
                         {"sitechan", {{"chan", "BHZ"}}},
                         {"sensor", {{"chan", "BHE"}, {"time", at_hour(9)}}},
                         {"sensor", {{"chan", "BHZ"}, {"time", at_hour(5)}}},
                         {"sensor", {{"chan", "QQQ"}, {"time", at_hour(1)}}}}),
              ElementsAre("0 -24..5 0", "1 5..open 2"));
}

TEST(StationPlaces, AChannelWithoutASensorThatDayHasItsBorderAtMidnight) {
  EXPECT_THAT(places_of({{"site", {{"ondate", "1999365"}, {"offdate", "2000001"}}},
                         {"site", {{"ondate", "2000001"}}},
                         {"sitechan", {{"chan", "BHE"}}},
                         {"sitechan", {{"chan", "BHZ"}}},
                         {"sensor", {{"chan", "BHZ"}, {"time", at_hour(5)}}}}),
              ElementsAre("0 -24..0 1", "1 0..open 2"));
}

TEST(StationPlaces, AChannelThatIsNotThereThatDaySaysNothingOfTheBorder) {
  EXPECT_THAT(places_of({{"site", {{"ondate", "1999365"}, {"offdate", "2000001"}}},
                         {"site", {{"ondate", "2000001"}}},
                         {"sitechan", {{"chan", "BHE"}, {"ondate", "2000002"}}},
                         {"sitechan", {{"chan", "BHN"}, {"offdate", "1999365"}}},
                         {"sitechan", {{"chan", "BHZ"}}},
                         {"sensor", {{"chan", "BHZ"}, {"time", at_hour(5)}}}}),
              ElementsAre("0 -24..5 1", "1 5..open 2"));
}

TEST(StationPlaces, AStationWithoutChannelsHasItsBordersAtMidnight) {
  EXPECT_THAT(places_of({{"site", {{"ondate", "1999365"}, {"offdate", "2000001"}}}, {"site", {{"ondate", "2000001"}}}}),
              ElementsAre("0 -24..0 0", "1 0..open 0"));
}

TEST(StationPlaces, ChannelsAreCountedOnce) {
  EXPECT_THAT(places_of({{"site", {}},
                         {"sitechan", {{"chan", "BHE"}}},
                         {"sitechan", {{"offdate", "2000001"}}},
                         {"sitechan", {{"ondate", "2000001"}}}}),
              ElementsAre("0 open..open 2"));
}

TEST(StationPlaces, ARowThatIsCoveredOrNeverHoldsDoesNotStand) {
  EXPECT_THAT(places_of({{"site", {{"ondate", "2000001"}, {"offdate", "2000002"}, {"lddate", "1"}}},
                         {"site", {{"ondate", "2000001"}, {"offdate", "2000002"}, {"lddate", "2"}}},
                         {"site", {{"ondate", "2000003"}, {"offdate", "2000001"}}},
                         {"sitechan", {{"ondate", "2000001"}}}}),
              ElementsAre("0 0..48 0 -", "1 0..48 1", "2 48..24 0 -"));
}

}  // namespace
}  // namespace triglub
