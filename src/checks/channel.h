// A channel epoch as the rules see it.
#ifndef TRIGLUB_CHECKS_CHANNEL_H
#define TRIGLUB_CHECKS_CHANNEL_H

#include <complex>
#include <optional>
#include <string>
#include <vector>

#include "checks/element.h"

namespace triglub::checks {

struct Gain {
  const Element* element = nullptr;
  Figure value;
  Figure frequency;
};

// Texts without white space around them; empty: not stated.
struct Units {
  std::string input;
  std::string output;
};

enum class FilterKind { poles_zeros, coefficients, fir, list };

// A root with where it stands.
struct Root {
  std::complex<double> value;
  int line = 0;
};

struct ListPoint {
  double frequency = 0;
  double amplitude = 0;
  int line = 0;
};

// Numbers that cannot be read make a filter incomplete; rules that need all of them pass it over, for it has been told.
struct Filter {
  FilterKind kind = FilterKind::poles_zeros;
  const Element* element = nullptr;
  Units units;
  bool is_complete = true;
  bool is_digital = false;   // of samples, not of a continuous signal
  bool is_in_hertz = false;  // of a continuous signal: roots, or powers of frequency, in hertz and not radians a second
  std::string symmetry;      // of a fir
  std::vector<double> numerators;  // of a fir as they are written: one half of a symmetric one
  std::vector<double> denominators;
  std::vector<Root> zeros;
  std::vector<Root> poles;
  Figure normalization;
  Figure normalization_frequency;
  std::vector<ListPoint> points;  // in the order of the document
};

struct Decimation {
  const Element* element = nullptr;
  Figure input_rate;
  Figure factor;
  Figure offset;
  Figure delay;
  Figure correction;
};

struct Stage {
  const Element* element = nullptr;
  std::string number;
  std::optional<Filter> filter;
  std::optional<Decimation> decimation;
  std::optional<Gain> gain;
  std::optional<Units> polynomial;  // of a stage that is one

  bool is_digital() const { return filter && filter->is_digital; }
  // What is known of its units; null: nothing.
  const Units* units() const;
};

struct Sensitivity {
  Gain gain;
  Units units;
};

// Refers to the element that it was read from, which has to stay.
struct Channel {
  const Element* element = nullptr;
  std::string code;
  std::string location;
  Figure latitude, longitude, elevation, depth;
  Figure azimuth, dip;
  Figure rate;
  const Element* response = nullptr;
  std::optional<Sensitivity> sensitivity;
  bool has_instrument_polynomial = false;
  std::vector<Stage> stages;

  // The instrument code, second letter of a code of three or second word of one with underscores; 0: none of one
  // letter.
  char instrument() const;
  char band() const;
  char orientation() const;
};

Channel read_channel(const Element& element);

}  // namespace triglub::checks

#endif
