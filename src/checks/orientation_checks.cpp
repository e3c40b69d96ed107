// A code N, E or Z promises a direction within five degrees, pointing either way; 1, 2 and 3 promise nothing.
#include "checks/orientation_checks.h"

#include <cmath>

namespace triglub::checks {

namespace {

// High and low gain, accelerometer, mass position, gravimeter, geophone, rotation.
constexpr std::string_view kSeismic = "HLNMGPJ";
constexpr double kMaxAngle = 5.0 + 1e-9;

void check_figure(const Figure& angle, std::string_view name, int line, const Place& place) {
  if (angle.is_there()) return;
  place.tell(Rule::orientation_missing, line,
             "there is no " + std::string(name) + " of a seismic channel, expected one");
}

void check_range(const Channel& channel, const Place& place) {
  if (channel.azimuth && (*channel.azimuth < 0 || *channel.azimuth >= 360)) {
    place.tell(Rule::orientation_range, channel.azimuth.element->line,
               "Azimuth is " + text_of(*channel.azimuth) + ", expected 0 to below 360");
  }
  if (channel.dip && std::abs(*channel.dip) > 90) {
    place.tell(Rule::orientation_range, channel.dip.element->line,
               "Dip is " + text_of(*channel.dip) + ", expected -90 to 90");
  }
}

void tell_angle(const Channel& channel, const Figure& angle, const std::string& expected, const Place& place) {
  place.tell(Rule::orientation_code, angle.element->line,
             std::string(angle.element->name) + " is " + text_of(*angle) + " where the code ends in " +
                 channel.orientation() + ", expected within 5 degrees of " + expected);
}

// How far a line is from another, whichever way it points along it.
double turn_from(double azimuth, double axis) { return std::abs(std::remainder(azimuth - axis, 180.0)); }

void check_horizontal(const Channel& channel, double axis, const std::string& expected, const Place& place) {
  if (channel.azimuth && turn_from(*channel.azimuth, axis) > kMaxAngle) {
    tell_angle(channel, channel.azimuth, expected, place);
  }
  if (channel.dip && std::abs(*channel.dip) > kMaxAngle) tell_angle(channel, channel.dip, "0", place);
}

void check_vertical(const Channel& channel, const Place& place) {
  if (channel.dip && 90 - std::abs(*channel.dip) > kMaxAngle) tell_angle(channel, channel.dip, "-90 or 90", place);
}

}  // namespace

void check_orientation(const Channel& channel, const Place& place) {
  check_range(channel, place);
  if (channel.instrument() == '\0' || kSeismic.find(channel.instrument()) == std::string_view::npos) return;
  check_figure(channel.azimuth, "Azimuth", channel.element->line, place);
  check_figure(channel.dip, "Dip", channel.element->line, place);
  if (channel.orientation() == 'N') check_horizontal(channel, 0, "0 or 180", place);
  if (channel.orientation() == 'E') check_horizontal(channel, 90, "90 or 270", place);
  if (channel.orientation() == 'Z') check_vertical(channel, place);
}

}  // namespace triglub::checks
