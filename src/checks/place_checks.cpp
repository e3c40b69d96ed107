// A channel's elevation is that of its sensor, which may hang deep in a borehole; so is the ground's above it, by other
// authors. Either may be the one that is near the station's.
#include "checks/place_checks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace triglub::checks {

namespace {

constexpr double kEarthRadius = 6371.0;  // km
constexpr double kFarKilometres = 1.0;
constexpr double kFarMetres = 1000.0;

struct Range {
  std::string_view name;
  double least, most;
};
// From the deepest trench to the highest peak; depths also of sensors on masts, and of the deepest boreholes.
constexpr std::array<Range, 4> kRanges{
    {{"Latitude", -90, 90}, {"Longitude", -180, 180}, {"Elevation", -12000, 9000}, {"Depth", -1000, 13000}}};

void check_coordinate(const Range& range, const Element& element, const Place& place) {
  const Figure found = figure_in(&element, range.name);
  const std::string name(range.name);
  if (!found.is_there()) {
    place.tell(Rule::place_missing, element.line, "there is no " + name + ", expected one");
  } else if (found && (*found < range.least || *found > range.most)) {
    place.tell(Rule::place_range, found.element->line,
               name + " is " + text_of(*found) + ", expected " + text_of(range.least) + " to " + text_of(range.most));
  }
}

double radians(double degrees) { return degrees * std::numbers::pi / 180.0; }

double square(double x) { return x * x; }

// Along the surface, by the haversines; exact enough for what is near.
double kilometres(double latitude1, double longitude1, double latitude2, double longitude2) {
  const double across = square(std::sin(radians(latitude2 - latitude1) / 2));
  const double along = square(std::sin(radians(longitude2 - longitude1) / 2));
  const double part = across + std::cos(radians(latitude1)) * std::cos(radians(latitude2)) * along;
  return 2 * kEarthRadius * std::asin(std::min(1.0, std::sqrt(part)));
}

void check_distance(const Channel& channel, const Element& station, const Place& place) {
  const Figure latitude = figure_in(&station, "Latitude");
  const Figure longitude = figure_in(&station, "Longitude");
  if (!latitude || !longitude || !channel.latitude || !channel.longitude) return;
  const double distance = kilometres(*latitude, *longitude, *channel.latitude, *channel.longitude);
  if (distance <= kFarKilometres) return;
  place.tell(Rule::place_far, channel.latitude.element->line,
             about(distance) + " km away from its station, expected at most 1 km");
}

void check_height(const Channel& channel, const Element& station, const Place& place) {
  const Figure ground = figure_in(&station, "Elevation");
  if (!ground || !channel.elevation) return;
  const double of_sensor = std::abs(*channel.elevation - *ground);
  const double of_ground = std::abs(*channel.elevation + channel.depth.value.value_or(0) - *ground);
  if (std::min(of_sensor, of_ground) <= kFarMetres) return;
  place.tell(Rule::place_far, channel.elevation.element->line,
             about(of_sensor) + " m above or below its station, expected at most 1000 m");
}

}  // namespace

void check_station_place(const Element& station, const Place& place) {
  for (std::size_t i = 0; i < 3; ++i) check_coordinate(kRanges[i], station, place);
}

void check_channel_place(const Channel& channel, const Element& station, const Place& place) {
  for (const Range& range : kRanges) check_coordinate(range, *channel.element, place);
  check_distance(channel, station, place);
  check_height(channel, station, place);
}

}  // namespace triglub::checks
