// Where two band codes have the same rates, they tell the corner of the sensor, which is not looked at.
#include "checks/rate_checks.h"

#include <algorithm>
#include <array>

namespace triglub::checks {

namespace {

struct Band {
  char code;
  double least, below;  // samples a second
};
constexpr double kNoLimit = 1e300;
constexpr std::array<Band, 18> kBands{{{'J', 5000, kNoLimit},
                                       {'F', 1000, 5000},
                                       {'G', 1000, 5000},
                                       {'D', 250, 1000},
                                       {'C', 250, 1000},
                                       {'E', 80, 250},
                                       {'S', 10, 80},
                                       {'H', 80, 250},
                                       {'B', 10, 80},
                                       {'M', 1, 10},
                                       {'L', 0.95, 1.05},
                                       {'V', 0.1, 1},
                                       {'U', 0.01, 0.1},
                                       {'W', 0.001, 0.01},
                                       {'R', 1e-4, 1e-3},
                                       {'P', 1e-5, 1e-4},
                                       {'T', 1e-6, 1e-5},
                                       {'Q', 0, 1e-6}}};
// Rates are measured, or written with few digits.
constexpr double kSlack = 0.01;

// Channels of texts, or of what somebody keeps in them.
bool has_samples(const Channel& channel) {
  return channel.band() != 'A' && channel.band() != 'O' && channel.code != "LOG";
}

std::string expected_of(const Band& band) {
  if (band.below >= kNoLimit) return "at least " + text_of(band.least);
  return text_of(band.least) + " to " + text_of(band.below);
}

void check_band(const Channel& channel, const Place& place) {
  if (channel.band() == '\0') return;
  const auto* const band =
      std::find_if(kBands.begin(), kBands.end(), [&](const Band& one) { return one.code == channel.band(); });
  const std::string found = text_of(*channel.rate) + " samples a second where the band code is " + channel.band();
  if (band == kBands.end()) {
    place.tell(Rule::band_code, channel.rate.element->line, found + ", expected a code that FDSN has given a meaning");
  } else if (*channel.rate < band->least * (1 - kSlack) || *channel.rate > band->below * (1 + kSlack)) {
    place.tell(Rule::band_code, channel.rate.element->line, found + ", expected " + expected_of(*band));
  }
}

}  // namespace

void check_rate(const Channel& channel, const Place& place) {
  const int line = channel.element->line;
  if (!channel.rate.is_there()) {
    if (has_samples(channel)) place.tell(Rule::rate_missing, line, "there is no SampleRate, expected one");
    return;
  }
  if (!channel.rate) return;
  if (*channel.rate < 0 || (*channel.rate == 0 && has_samples(channel))) {
    return place.tell(Rule::rate_range, channel.rate.element->line,
                      "SampleRate is " + text_of(*channel.rate) + ", expected above 0");
  }
  if (has_samples(channel)) check_band(channel, place);
}

}  // namespace triglub::checks
