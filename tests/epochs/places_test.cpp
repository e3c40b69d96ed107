#include "epochs/places.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace triglub {
namespace {

// Two places: row 1 from 10 to 20, row 2 from 30 to 40.
const HeldRows kTwo = {{{10, 20}, 0, 1}, {{30, 40}, 0, 2}};
// One from 10 on, one up to 10.
const HeldRows kOpenEnd = {{{10, kFuture}, 0, 1}};
const HeldRows kOpenBegin = {{{kPast, 10}, 0, 1}};

struct Case {
  const char* what;
  HeldRows sites;
  Instant instant;
  Span sitechan;
  std::optional<Span> sensor;
  std::string place;  // of a widened one with a "+"
};

const Case kCases[] = {
    {"a row that holds", kTwo, 15, {kPast, kFuture}, {}, "1"},
    {"another that holds", kTwo, 30, {kPast, kFuture}, {}, "2"},
    {"a tail keeps the row before", kTwo, 20, {15, 25}, {}, "1+"},
    {"a tail up to the next row", kTwo, 25, {15, 30}, {}, "1+"},
    {"a tail into the next row is a gap", kTwo, 25, {15, 31}, {}, "-"},
    {"a head has the row behind", kTwo, 25, {22, 35}, {}, "2+"},
    {"a head from the end of the row before", kTwo, 25, {20, 35}, {}, "2+"},
    {"between two rows there is none", kTwo, 25, {22, 28}, {}, "-"},
    {"a tail behind the last row", kTwo, 45, {35, 50}, {}, "2+"},
    {"an open tail is a gap", kTwo, 45, {35, kFuture}, {}, "-"},
    {"a head before the first row", kTwo, 5, {0, 15}, {}, "1+"},
    {"an open head is a gap", kTwo, 5, {kPast, 15}, {}, "-"},
    {"all behind the last row", kTwo, 45, {42, 50}, {}, "-"},
    {"all before the first row", kTwo, 5, {0, 10}, {}, "-"},
    {"where the channel is open its sensor is looked at", kTwo, 45, {35, kFuture}, Span{38, 50}, "2+"},
    {"a sensor's head", kTwo, 5, {kPast, 15}, Span{2, 12}, "1+"},
    {"an open sensor helps not", kTwo, 45, {35, kFuture}, Span{38, kFuture}, "-"},
    {"a sensor behind the last row helps not", kTwo, 45, {35, kFuture}, Span{41, 50}, "-"},
    {"the channel is asked before its sensor", kTwo, 25, {15, 28}, Span{22, 35}, "1+"},
    {"a channel across is asked in vain, its sensor not", kTwo, 25, {15, 35}, Span{22, 35}, "2+"},
    {"a head before an open row", kOpenEnd, 5, {0, kFuture}, {}, "1+"},
    {"a tail behind an open row", kOpenBegin, 15, {kPast, 20}, {}, "1+"},
    {"no rows at all", {}, 5, {0, 10}, Span{0, 10}, "-"},
};

TEST(Places, ChannelsThatReachOutOfTheirPlaceKeepIt) {
  for (const Case& c : kCases) {
    Places places;
    places.start(c.sites);
    const HeldRow sitechan = {c.sitechan};
    const HeldRow sensor = {c.sensor.value_or(Span{})};
    const Places::Place place = places.at(c.instant, sitechan, c.sensor ? &sensor : nullptr);
    const std::string row = place.site == kAbsent ? "-" : std::to_string(place.site) + (place.is_widened ? "+" : "");
    EXPECT_EQ(row, c.place) << c.what;
  }
}

struct EndCase {
  const char* what;
  Instant instant;
  Span span;
  bool ends;
};

const EndCase kEnds[] = {
    {"open where the station is closed", 45, {35, kFuture}, true},
    {"open before the station was there", 5, {kPast, 15}, true},
    {"closed", 45, {35, 50}, false},
    {"open, but not from a place", 45, {42, kFuture}, false},
    {"between two places", 25, {15, kFuture}, false},
};

TEST(Places, AnOpenSpanEndsWithTheStation) {
  for (const EndCase& c : kEnds) {
    Places places;
    places.start(kTwo);
    places.at(c.instant, HeldRow{c.span}, nullptr);
    EXPECT_EQ(places.ends_with_station(c.span), c.ends) << c.what;
  }
}

}  // namespace
}  // namespace triglub
