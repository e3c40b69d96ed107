// Writes the example database "observatory" and its response files.
//
//     make_example DIR      makes DIR/observatory.site, DIR/observatory.stage ... and DIR/resp/...
//
// The seismometers are real models with their published nominal figures; the networks, stations and places are
// invented. README.md says where each figure comes from. The output depends on nothing but this file: no clock, no
// locale, and computed coefficients are rounded well above the last bits in which mathematical libraries differ.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <numbers>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using Complex = std::complex<double>;
using std::numbers::pi;

constexpr double kLoadDate = 1704067200;      // 2024-01-01, on every row
constexpr double kStandardGravity = 9.80665;  // m/s**2
constexpr double kNoEnd = 9999999999.999;     // the null of an end time
constexpr double kNotStated = -1;             // the null of most real fields
constexpr const char* kNone = "-";            // the null of text fields
constexpr double kNanoUnitsPerUnit = 1e9;     // calib is in 1e-9 units per count

// ---------------------------------------------------------------- text

std::string number(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// A number for a response file: twelve significant digits, and none of them beyond 1e-12, far above the last bits of
// a sine.
std::string coefficient(double value) {
  const double rounded = std::round(value * 1e12) / 1e12;
  return number("%.12g", rounded == 0 ? 0.0 : rounded);
}

// A sampling rate for a table; the fast ones give up decimals to stay within the eleven columns.
std::string rate_text(double rate) { return number("%.7f", rate).substr(0, 11); }

// What is written: file name, relative to the folder, to content.
using Files = std::map<std::string, std::string>;

// Adds a row to a table: the fields at their fixed widths, one blank between them, and last the load date. A field
// too wide for its column would make the row longer than the table's.
[[gnu::format(printf, 4, 5)]] void add_row(Files& files, const char* table, std::size_t width, const char* format,
                                           ...) {
  char line[512];
  std::va_list fields;
  va_start(fields, format);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): started above; the analyzer loses sight of that
  const int length = std::vsnprintf(line, sizeof line, format, fields);
  va_end(fields);
  const std::string row = line + number(" %17.5f\n", kLoadDate);
  if (length < 0 || row.size() != width + 1) throw std::length_error("a field is too wide: " + row);
  files[std::string("observatory.") + table] += row;
}

// The element of a list that has that name.
template <typename List>
const auto& named(const List& list, const std::string& name) {
  const auto found = std::find_if(list.begin(), list.end(), [&](const auto& element) { return element.name == name; });
  if (found == list.end()) throw std::out_of_range("there is no " + name);
  return *found;
}

// ---------------------------------------------------------------- time

struct Instant {
  long day = -1;      // year and day of the year, yyyyddd; -1 for an open end
  double second = 0;  // of that day
};

double epoch_seconds(Instant instant) {
  if (instant.day < 0) return kNoEnd;
  const long year = instant.day / 1000;
  const long before = year - 1;
  const long days_before_year = before * 365 + before / 4 - before / 100 + before / 400;
  constexpr long kDaysBefore1970 = 719162;
  const long days = days_before_year - kDaysBefore1970 + instant.day % 1000 - 1;
  return static_cast<double>(days * 86400) + instant.second;
}

// ---------------------------------------------------------------- sensors

struct Sensor {
  std::string name;  // as files are named
  std::string instype;
  std::string units;                // of the input
  std::string rsptype;              // V velocity, A acceleration
  double gain = 1;                  // volts per unit, at gain_hz
  double gain_hz = 1;               // 0: far above the corner, where the response of these sensors tends to 1
  std::vector<Complex> poles = {};  // radians per second
  std::vector<Complex> zeros = {};
  double pole_tolerance = 0;  // as a part of the pole; 0 when none is published
  bool as_table = false;      // written as frequency, amplitude and phase
};

std::vector<Complex> with_conjugates(std::vector<Complex> real, const std::vector<Complex>& pairs) {
  for (const Complex& root : pairs) real.insert(real.end(), {root, std::conj(root)});
  return real;
}

// A mass on a spring, seen by a coil: two zeros at the origin and two poles.
Sensor pendulum(Sensor sensor, double natural_hz, double damping) {
  const Complex pole = 2 * pi * natural_hz * Complex(-damping, std::sqrt(1 - damping * damping));
  sensor.poles = {pole, std::conj(pole)};
  sensor.zeros = {0, 0};
  return sensor;
}

std::vector<Sensor> make_sensors() {
  // The geophone's coil of 5500 ohm gives 276.8 V s/m, of which the 8905 ohm that damp it leave this.
  const double l4c_gain = 276.8 * 8905 / (8905 + 5500);
  // -201 dB under 1 V per micropascal.
  const double hydrophone_gain = 1e6 * std::pow(10, -201 / 20.0);
  return {
      {"sts1", "STS1", "m/s", "V", 2400, 1, with_conjugates({}, {{-0.01234, 0.01234}, {-39.18, 49.12}}), {0, 0}},
      {"sts2_gen1", "STS2", "m/s", "V", 1500, 1, with_conjugates({-251.3}, {{-0.037, 0.037}, {-131.0, 467.3}}), {0, 0}},
      {"sts2_gen3", "STS2", "m/s", "V", 1500, 1,
       with_conjugates({-15.64, -255.1, -374.8, -520.3, -13300}, {{-0.037, 0.037}, {-97.34, 400.7}, {-10530, 10050}}),
       with_conjugates({0, 0, -15.15, -176.6}, {{-463.1, 430.5}})},
      {"t120pa",
       "T120PA",
       "m/s",
       "V",
       1201,
       1,
       with_conjugates({-178}, {{-0.03852, 0.03658}, {-135, 160}, {-671, 1154}}),
       {0, 0, -90, -160.7, -3108}},
      {"tc120",
       "TC120",
       "m/s",
       "V",
       749.1,
       1,
       with_conjugates({-371.2}, {{-0.03691, 0.03702}, {-373.9, 475.5}, {-588.4, 1508}}),
       {0, 0, -434.1}},
      {"episensor", "ES-T", "m/s**2", "A", 10 / kStandardGravity, 1,
       with_conjugates({}, {{-981, 1009}, {-3290, 1263}})},
      pendulum({"l4c", "L-4C", "m/s", "V", l4c_gain, 0, {}, {}, 0.05}, 1.0, 0.707),
      pendulum({"sm6", "SM-6", "m/s", "V", 28.8, 0}, 4.5, 0.56),
      pendulum({"s13", "S-13", "m/s", "V", 629, 0, {}, {}, 0, true}, 1.0, 0.7),
      {"hti96", "HTI-96", "Pa", kNone, hydrophone_gain, 0, {-2 * pi * 2}, {0}},
      {"setra270", "270", "Pa", kNone, 5 / 30000.0, 0},  // 5 V for 300 hPa
  };
}

const Sensor& sensor(const std::string& name) {
  static const std::vector<Sensor> sensors = make_sensors();
  return named(sensors, name);
}

Complex response(const Sensor& sensor, double hz) {
  const Complex s(0, 2 * pi * hz);
  Complex value = 1;
  for (const Complex& zero : sensor.zeros) value *= s - zero;
  for (const Complex& pole : sensor.poles) value /= s - pole;
  return value;
}

std::string roots(const std::vector<Complex>& values, double tolerance) {
  std::string text = std::to_string(values.size()) + "\n";
  for (const Complex& value : values) {
    text += coefficient(value.real()) + "  " + coefficient(value.imag());
    if (tolerance > 0) {
      text += "  " + coefficient(std::abs(value.real()) * tolerance);
      text += "  " + coefficient(std::abs(value.imag()) * tolerance);
    }
    text += "\n";
  }
  return text;
}

// Poles and zeros, normalised to 1 at `hz`.
std::string paz_file(const Sensor& sensor, double hz) {
  std::string text = "# poles and zeros in radians per second\ntheoretical  1  sensor  paz  nominal\n";
  text += number("%.12g", 1 / std::abs(response(sensor, hz)));
  if (hz != 1) text += "  " + number("%g", hz);  // 1 Hz is what an absent frequency means
  return text + "\n# poles\n" + roots(sensor.poles, sensor.pole_tolerance) + "# zeros\n" + roots(sensor.zeros, 0);
}

// The same response as a table in third-octave steps, amplitude 1 at `hz`.
std::string fap_file(const Sensor& sensor, double hz) {
  static const double steps[] = {0.1,  0.125, 0.16, 0.2, 0.25, 0.315, 0.4, 0.5, 0.63, 0.8, 1,
                                 1.25, 1.6,   2,    2.5, 3.15, 4,     5,   6.3, 8,    10};
  std::string text = "# frequency in hertz, amplitude, phase in degrees, and the tolerances of these two\n";
  text += "theoretical  1  sensor  fap2  nominal\n" + std::to_string(std::size(steps)) + "\n";
  const double reference = std::abs(response(sensor, hz));
  for (const double step : steps) {
    const Complex value = response(sensor, step);
    text += number("%g", step) + "  " + number("%.4g", std::abs(value) / reference) + "  " +
            number("%.2f", std::arg(value) * 180 / pi) + "  0.02  1.5\n";
  }
  return text;
}

// ---------------------------------------------------------------- digital filters

struct Fir {
  std::string name;  // of its file
  double rate = 0;   // of its input, samples per second
  int decimation = 1;
  std::vector<double> numerators;
  std::optional<double> delay = {};  // samples; -1 says what absence says too, that it is not stated
};

// The modified Bessel function of the first kind and order zero, by its power series.
double bessel_i0(double x) {
  double sum = 1;
  double term = 1;
  for (int k = 1; term > sum * 1e-17; ++k) {
    term *= (x / 2 / k) * (x / 2 / k);
    sum += term;
  }
  return sum;
}

std::vector<double> to_unit_sum(std::vector<double> values) {
  double sum = 0;
  for (const double value : values) sum += value;
  for (double& value : values) value /= sum;
  return values;
}

// A linear-phase low pass: sinc under a Kaiser window, 80 dB down from `stop_edge` (cycles per sample) on.
std::vector<double> low_pass(int length, double stop_edge) {
  constexpr double kAttenuationDb = 80;
  const double beta = 0.1102 * (kAttenuationDb - 8.7);
  const double transition = (kAttenuationDb - 7.95) / (14.36 * (length - 1));
  const double cutoff = stop_edge - transition / 2;
  const double middle = (length - 1) / 2.0;
  std::vector<double> values(static_cast<std::size_t>(length));
  for (int i = 0; i <= length - 1 - i; ++i) {
    const double x = i - middle;
    const double sinc = x == 0 ? 2 * cutoff : std::sin(2 * pi * cutoff * x) / (pi * x);
    const double value =
        sinc * bessel_i0(beta * std::sqrt(std::max(0.0, 1 - x * x / (middle * middle)))) / bessel_i0(beta);
    values[static_cast<std::size_t>(i)] = value;
    values[static_cast<std::size_t>(length - 1 - i)] = value;  // the very same number: symmetric to the last bit
  }
  return to_unit_sum(std::move(values));
}

// Twelve two-sample means in a row, the cheap filter near the converter.
std::vector<double> binomial() {
  return {1 / 4096.0,   12 / 4096.0,  66 / 4096.0,  220 / 4096.0, 495 / 4096.0, 792 / 4096.0, 924 / 4096.0,
          792 / 4096.0, 495 / 4096.0, 220 / 4096.0, 66 / 4096.0,  12 / 4096.0,  1 / 4096.0};
}

// Multiplies by the section whose pair of zeros lies at that radius and angle.
std::vector<double> with_zeros(const std::vector<double>& values, double radius, double angle) {
  const double section[] = {1, -2 * radius * std::cos(angle), radius * radius};
  std::vector<double> product(values.size() + 2);
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (std::size_t j = 0; j < std::size(section); ++j) product[i + j] += values[i] * section[j];
  }
  return product;
}

// A half-band low pass without precursors, its peak at the eighth sample of 53. All zeros lie inside the unit circle:
// those near it make the stop band, the double ones further in keep the pass band level. They are taken in an order
// that keeps every partial product small; one kind after the other would cost half the digits.
std::vector<double> minimum_phase() {
  constexpr int kStopPairs = 18;
  constexpr int kStride = 5;  // has no factor in common with 18, so every pair is met once
  std::vector<double> values = {1};
  for (int i = 0; i < kStopPairs; ++i) {
    const int k = i * kStride % kStopPairs;
    values = with_zeros(values, 0.99, pi * (0.5 + 0.5 * (k + 0.5) / kStopPairs));
    if (i % 4 != 3) continue;
    const double inner = pi * 0.35 * (i - 1) / 16;  // four of them: i is 3, 7, 11, 15
    values = with_zeros(with_zeros(values, 0.78, inner), 0.78, inner);
  }
  return to_unit_sum(std::move(values));
}

std::string fir_file(const Fir& fir) {
  std::string text = "theoretical  1  digitizer  fir  nominal\n" + number("%g", fir.rate);
  if (fir.delay) text += "  " + number("%g", *fir.delay);
  text += "\n# numerators\n" + std::to_string(fir.numerators.size()) + "\n";
  for (const double value : fir.numerators) text += coefficient(value) + "\n";
  return text + "# denominators\n0\n";
}

// ---------------------------------------------------------------- digitizers

struct Digitizer {
  std::string name;
  double counts_per_volt = 1;
  double rate = 0;           // at the converter
  bool states_units = true;  // false: its filters' input units are left to the stage before
  std::vector<Fir> filters = {};
  std::string preamplifier_file = kNone;
};

// A filter whose output is not yet the final rate has only the final band to protect: its stop band may begin at
// three quarters of its output rate. The last one's begins at the Nyquist frequency of its output.
std::vector<double> inner(int length, int decimation) { return low_pass(length, 0.75 / decimation); }
std::vector<double> last(int length, int decimation) { return low_pass(length, 0.5 / decimation); }

std::vector<Digitizer> make_digitizers() {
  const double fine = 419430.4;       // 24 bits over 40 V
  const double finer = 838860.8;      // 24 bits over 20 V
  const double portable = 1677721.6;  // 24 bits over 10 V
  const double school = 13107.2;      // 16 bits over 5 V
  const double tape = 204.8;          // 12 bits over 20 V
  const Fir first = {"24k_div12.fir", 24000, 12, inner(121, 12)};
  const Fir second = {"2k_div10.fir", 2000, 10, inner(121, 10)};
  const Fir mean1 = {"mean_3200.fir", 3200, 2, binomial(), 6};
  const Fir mean2 = {"mean_1600.fir", 1600, 2, binomial(), 6};
  const Fir mean3 = {"mean_800.fir", 800, 2, binomial(), 6};
  const Fir wide = {"1k_div5.fir", 1000, 5, inner(71, 5)};
  return {
      {"fine/100", fine, 24000, true, {first, second, {"200_div2.fir", 200, 2, last(85, 2), 42}}},
      {"fine/40", fine, 24000, true, {first, second, {"200_div5.fir", 200, 5, last(160, 5), 79.5}}},
      {"fine/1",
       fine,
       24000,
       true,
       {first,
        {"2k_div20.fir", 2000, 20, inner(201, 20)},
        {"100_div10.fir", 100, 10, inner(121, 10)},
        {"10_div10.fir", 10, 10, last(260, 10)}}},
      {"cascade/200", finer, 3200, false, {mean1, mean2, {"800_div4.fir", 800, 4, last(160, 4), 79.5}}},
      {"cascade/100", finer, 3200, false, {mean1, mean2, mean3, {"400_div4.fir", 400, 4, last(160, 4), 79.5}}},
      {"cascade/40", finer, 3200, false, {mean1, mean2, mean3, {"400_div10.fir", 400, 10, last(260, 10)}}},
      {"portable/100", portable, 1000, true, {wide, {"200_div2_odd.fir", 200, 2, last(101, 2)}}, "flat.paz"},
      {"minimum/100", portable, 1000, true, {wide, {"200_div2_minimum.fir", 200, 2, minimum_phase(), -1}}},
      {"school/100",
       school,
       1600,
       true,
       {{"1600_div4.fir", 1600, 4, inner(48, 4)}, {"400_div4_even.fir", 400, 4, last(128, 4)}}},
      // Magnetic tape, digitised years later: these filters could look ahead, so their output is not late at all.
      {"tape/20",
       tape,
       400,
       true,
       {{"400_div4_tape.fir", 400, 4, inner(47, 4), 0}, {"100_div5_tape.fir", 100, 5, last(121, 5), 0}}},
  };
}

const Digitizer& digitizer(const std::string& name) {
  static const std::vector<Digitizer> digitizers = make_digitizers();
  return named(digitizers, name);
}

// ---------------------------------------------------------------- set-ups: a sensor, perhaps a preamplifier, a
// digitizer

struct Setup {
  std::string name;
  std::string insname;      // empty: no row in the instrument table
  std::string sensor;       // empty: nothing but the recorder's own log
  double hz = 1;            // the frequency of all its gains
  double preamplifier = 0;  // its gain; 0: there is none
  std::string digitizer;
};

struct Stage {
  double gain = 1;
  std::string iunits, ounits, gtype;
  int decimation = -1;  // -1: not digital
  double rate = -1;     // of the output, samples per second
  std::string dir = kNone, dfile = kNone;
};

const std::vector<Setup>& setups() {
  static const std::vector<Setup> all = {
      {"sts1-bh", "STS-1 & 24-bit digitizer", "sts1", 0.05, 0, "fine/40"},
      {"sts1-lh", "STS-1 & 24-bit digitizer", "sts1", 0.05, 0, "fine/1"},
      {"sts2-bh", "STS-2 generation 1 & 24-bit digitizer", "sts2_gen1", 1, 0, "fine/40"},
      {"sts2-lh", "STS-2 generation 1 & 24-bit digitizer", "sts2_gen1", 0.02, 0, "fine/1"},
      {"sts2-bh-new", "STS-2 generation 1 & 24-bit cascade", "sts2_gen1", 1, 0, "cascade/40"},
      {"sts2-hh", "STS-2 generation 3 & 24-bit cascade", "sts2_gen3", 1, 0, "cascade/100"},
      {"t120-bh", "Trillium 120PA & 24-bit digitizer", "t120pa", 1, 0, "fine/40"},
      {"t120-hh", "Trillium 120PA & 24-bit digitizer", "t120pa", 1, 0, "fine/100"},
      {"t120-hh-new", "Trillium 120PA & portable recorder", "t120pa", 1, 2, "portable/100"},
      {"tc-hh", "Trillium Compact 120 s & portable recorder", "tc120", 1, 0, "portable/100"},
      {"tc-hh-minimum", "Trillium Compact 120 s, minimum-phase recorder", "tc120", 1, 0, "minimum/100"},
      {"tc-bh", "Trillium Compact 120 s & 24-bit cascade", "tc120", 1, 0, "cascade/40"},
      {"episensor", "EpiSensor ES-T, ±2 g & 24-bit cascade", "episensor", 1, 0, "cascade/200"},
      {"l4c", "L-4C, corner < 1.1 Hz & 24-bit cascade", "l4c", 10, 0, "cascade/100"},
      {"l4c-old", "L-4C, corner < 1.1 Hz & school recorder", "l4c", 10, 16, "school/100"},
      {"sm6-32", "Géophone SM-6, 4.5 Hz, gain 32", "sm6", 10, 32, "school/100"},
      {"sm6-64", "Géophone SM-6, 4.5 Hz, gain 64", "sm6", 10, 64, "school/100"},
      {"sm6-128", "", "sm6", 10, 128, "school/100"},
      {"s13-tape", "S-13, magnetic tape digitised in 1994", "s13", 5, 20, "tape/20"},
      {"hydrophone", "HTI-96-MIN hydrophone & 24-bit cascade", "hti96", 10, 100, "cascade/200"},
      {"barometer", "Baromètre Setra 270 & 24-bit digitizer", "setra270", 0.1, 0, "fine/1"},
      {"log", "Recorder's own log", "", 1, 0, ""},
  };
  return all;
}

// The row of a set-up, one of those above, in the instrument table, from 1; -1 when it has none.
long instrument_id(const Setup& setup) {
  if (setup.insname.empty()) return -1;
  return std::count_if(setups().data(), &setup, [](const Setup& earlier) { return !earlier.insname.empty(); }) + 1;
}

std::string sensor_file(const Setup& setup) {
  const Sensor& device = sensor(setup.sensor);
  return device.name + "_" + number("%g", setup.hz) + "Hz." + (device.as_table ? "fap2" : "paz");
}

// The gain at the set-up's frequency, to the eight digits that the table will show.
double sensor_gain(const Setup& setup) {
  const Sensor& device = sensor(setup.sensor);
  const double reference = device.gain_hz == 0 ? 1 : std::abs(response(device, device.gain_hz));
  return std::stod(number("%.8g", device.gain * std::abs(response(device, setup.hz)) / reference));
}

std::vector<Stage> stages(const Setup& setup) {
  if (setup.sensor.empty()) return {};
  const Sensor& device = sensor(setup.sensor);
  const Digitizer& recorder = digitizer(setup.digitizer);
  const char* type = device.as_table ? "fap2" : "paz";
  std::vector<Stage> chain = {
      {sensor_gain(setup), device.units, "V", type, -1, -1, "resp/sensors", sensor_file(setup)}};
  if (setup.preamplifier > 0 && recorder.preamplifier_file == kNone) {
    chain.push_back({setup.preamplifier, kNone, kNone, "gain"});
  } else if (setup.preamplifier > 0) {
    chain.push_back({setup.preamplifier, "V", "V", "paz", -1, -1, "resp/recorders", recorder.preamplifier_file});
  }
  chain.push_back({recorder.counts_per_volt, "V", "counts", "digitizer", 1, recorder.rate});
  const std::string iunits = recorder.states_units ? "counts" : kNone;
  for (const Fir& fir : recorder.filters) {
    const double rate = fir.rate / fir.decimation;
    chain.push_back({1, iunits, "counts", "fir", fir.decimation, rate, "resp/recorders", fir.name});
  }
  return chain;
}

struct Calibration {
  std::string units = kNone;
  double rate = 0;
  double calib = 0;  // null
  double period = kNotStated;
  double hz = kNotStated;
  double ncalib = 1;  // null
};

Calibration calibration(const Setup& setup) {
  const std::vector<Stage> chain = stages(setup);
  if (chain.empty()) return {};
  double counts_per_unit = 1;
  for (const Stage& stage : chain) counts_per_unit *= stage.gain;
  const double calib = kNanoUnitsPerUnit / counts_per_unit;
  return {chain.front().iunits, chain.back().rate, calib, 1 / setup.hz, setup.hz, calib};
}

// ---------------------------------------------------------------- networks and stations

struct Site {
  long on = -1, off = -1;
  double lat = 0, lon = 0, elev = 0;  // degrees, degrees, kilometres
  std::string name = kNone;
  std::string reference = kNone;
  double north = 0, east = 0;  // kilometres from the reference station
};

struct Channel {
  std::string chan, code, location;
  std::string setup;
  Instant on, off;
  double depth = 0;                               // kilometres
  double azimuth = kNotStated, dip = kNotStated;  // degrees; dip from vertical up
  std::string description = kNone;
};

struct Station {
  std::string sta, network, code;  // the database's own name; network and station as they are published
  std::vector<Site> sites;
  std::vector<Channel> channels;
};

// An installation: what the channels of one sensor have in common.
struct Mount {
  std::string location, suffix;  // location code; what the database adds to the channel code to name the channel
  double depth = 0;
  double north = 0;  // azimuth of the first horizontal component
  std::string description = kNone;
};

// A channel without a direction.
std::vector<Channel> scalar(const Mount& mount, const std::string& code, const std::string& setup, Instant on) {
  Channel channel = {code + mount.suffix, code, mount.location, setup, on, {}, mount.depth};
  channel.description = mount.description;
  return {channel};
}

// The channels of a seismometer: band and instrument letters, then one channel for each component.
std::vector<Channel> components(const Mount& mount, const std::string& band, const std::string& orientations,
                                const std::string& setup, Instant on, Instant off = {}) {
  std::vector<Channel> channels;
  for (const char orientation : orientations) {
    Channel channel = scalar(mount, band + orientation, setup, on).front();
    const bool second = orientation == 'E' || orientation == '2';
    channel.off = off;
    channel.dip = orientation == 'Z' ? 0 : 90;
    channel.azimuth = orientation == 'Z' ? 0 : mount.north + (second ? 90 : 0);
    channels.push_back(channel);
  }
  return channels;
}

Station station(const std::string& sta, const std::string& network, const std::string& code,
                const std::vector<Site>& sites, const std::vector<std::vector<Channel>>& groups) {
  Station station = {sta, network, code, sites, {}};
  std::vector<Channel>& channels = station.channels;
  for (const auto& group : groups) channels.insert(channels.end(), group.begin(), group.end());
  std::sort(channels.begin(), channels.end(),
            [](const Channel& a, const Channel& b) { return std::tie(a.chan, a.on.day) < std::tie(b.chan, b.on.day); });
  return station;
}

const std::map<std::string, std::string>& networks() {
  static const std::map<std::string, std::string> all = {
      {"9K", "Kitchen-table seismology: schools & friends"},
      {"XA", "Observatoires des îles & des caps"},
      {"XB", "Fjord and Salt Cavern Network"},
      {"XC", "Quiet sites experiment (noise < low-noise model + 10 dB)"},
  };
  return all;
}

// In the order of their names, in which the networks take turns.
std::vector<Station> stations() {
  const Mount plain = {"", "", 0.0};
  const Mount dashed = {kNone, "", 0.0};  // "no location code" as another hand writes it
  const Mount vault = {"00", "_00", 0.0, 0.0, "in the vault"};
  const Mount cave = {"00", "_00", 0.0850, 0.0, "on bare salt"};
  // Whoever set this one up read a full circle where others write 0.
  const Mount full_circle = {"00", "_00", 0.0850, 360.0, "on bare salt"};
  // A change of recorder in the middle of a day and between two seconds.
  const Instant swap = {2015185, 34200.25};
  return {
      station("ALVA", "XB", "ALVA",
              {{2001150, -1, 61.2345, 7.1021, 0.3420, "Alvagård, Storvik & Sons' quarry", "ALVA"}},
              {components(vault, "BH", "ZNE", "sts2-bh", {2001150}, {2012075}),
               components(vault, "BH", "ZNE", "sts2-bh-new", {2012075}),
               components(vault, "LH", "ZNE", "sts2-lh", {2001150}, {2012075})}),
      station("BORENA", "XA", "BOREN", {{2010001, -1, 47.5012, -8.2500, 0.2150, "Borehole of Boren", "BORENA"}},
              {components({"10", "_10", 0.1200, 37.0, "cemented at 120 m, azimuth by gyroscope"}, "BH", "Z12",
                          "t120-bh", {2010001}),
               components({"00", "_00", 0.0, 0.0, "pier at the well head"}, "HN", "ZNE", "episensor", {2011032})}),
      station("CAVERN", "XB", "CAVE", {{1994200, -1, 13.9021, 40.4017, -0.1120, "Salt cavern, third level", "CAVERN"}},
              {components(cave, "BH", "Z", "sts1-bh", {1994200}), components(cave, "LH", "ZE", "sts1-lh", {1994200}),
               components(full_circle, "LH", "N", "sts1-lh", {1994200}),
               scalar({"", "", 0.0850, 0.0, "beside the seismometers"}, "LDO", "barometer", {1996001})}),
      station("DUNE", "XA", "DUNE", {{2013100, -1, -16.7500, 180.0000, 0.0090, "Dune on the date line"}},
              {components({"", "", 0.0015}, "HH", "ZNE", "tc-hh", {2013100})}),
      station("EIDER", "XC", "EIDER",
              {{2009300, -1, 51.9000, -179.9312, 0.0870, "Eider Skerry <north landing>", "EIDER"}},
              {components(vault, "HH", "ZNE", "sts2-hh", {2009300})}),
      station("FJORD", "XB", "FJORD",
              {{2005120, 2013200, 62.1000, 6.9000, 0.0250, "Fjord, boat house", "FJORD"},
               {2013200, -1, 62.1432, 6.8777, 0.0610, "Fjord, church hill", "FJORD"}},
              {components({"00", "_00", 0.0, 0.0, "boat house"}, "BH", "ZNE", "t120-bh", {2005120}, {2013200}),
               components({"00", "_00", 0.0020, 0.0, "church hill"}, "BH", "ZNE", "t120-bh", {2013200})}),
      station("GULL", "XA", "GULL", {{2008032, -1, -54.2801, -36.4950, 0.0310, "Île aux Goélands", "GULL"}},
              {components(vault, "HH", "ZNE", "t120-hh", {2008032}, swap),
               components(vault, "HH", "ZNE", "t120-hh-new", swap),
               components({"10", "_10", 0.0}, "HN", "Z", "episensor", swap)}),
      station("HOLM", "9K", "HOLM", {{2016001, 2021001, 55.6010, 12.6512, 0.0060, "Holm school, cellar", "HOLM"}},
              {components(dashed, "EH", "Z", "sm6-32", {2016001}, {2017100}),
               components(dashed, "EH", "Z", "sm6-64", {2017100}, {2018200}),
               components({kNone, "", 0.0, 0.0, "recorder on loan"}, "EH", "Z", "sm6-128", {2018200}, {2019300}),
               components(dashed, "EH", "Z", "sm6-64", {2019300}, {2021001})}),
      // This name is in Latin-1, as it was typed in 2003.
      station("ISLA", "XC", "ISLA",
              {{2003090, -1, -33.6400, -78.8300, 0.0040, "Isla Pe\361a Larga, casa del p\341rroco", "ISLA"}},
              {components({"10", "_10", 0.0, 0.0, "bolted to rock"}, "HN", "ZNE", "episensor", {2003090}),
               components({"00", "_00", 0.0}, "EH", "Z", "l4c", {2003090})}),
      station("JETTY", "XB", "JETTY", {{2018001, -1, 59.0130, 5.7240, -0.0120, "Jetty, on the sea floor"}},
              {scalar({"00", "_00", 0.0, 0.0, "2 m above the mud"}, "EDH", "hydrophone", {2018001}),
               scalar({"00", "_00", 0.0, 0.0, "in the harbour office"}, "LDO", "barometer", {2018001})}),
      // Two networks use the code KELP; the database tells them apart.
      station("KELP", "9K", "KELP", {{2019010, -1, -41.2000, 174.9000, 0.0120}},
              {components(dashed, "EH", "ZNE", "sm6-32", {2019010})}),
      station("KELPB1", "XA", "KELP",
              {{2014040, -1, -42.4100, 173.6890, 0.0180, "Kelp Point array, element B1", "KELPA0", 0.1210, -0.0450}},
              {components({"00", "_BH00", 0.0300, 0.0, "30 m hole"}, "HH", "ZNE", "tc-hh", {2014040}),
               components({"10", "_BH10", 0.0300, 0.0, "same sensor, second recorder"}, "HH", "Z", "tc-hh-minimum",
                          {2014040})}),
      station("LOFT", "XC", "LOFT", {{2020060, -1, 45.1000, 11.3000, 0.0450, "Loft & cellar, test bench", "LOFT"}},
              {components({"00", "_00", 0.0, 0.0, "on the granite table"}, "BH", "ZNE", "tc-bh", {2020060}),
               scalar({kNone, "", 0.0, 0.0, "what the recorder says of itself"}, "LOG", "log", {2020060}),
               scalar({kNone, "", 0.0, 0.0, "clock quality"}, "ACE", "log", {2020060})}),
      station("NESS", "XA", "NESS", {{1964032, -1, 57.3200, -4.4400, 0.0530, "Ness old observatory", "NESS"}},
              {components({"", "", 0.0, 0.0, "seismograph of 1964"}, "SH", "Z", "s13-tape", {1964032}, {1979001}),
               components(plain, "EH", "Z", "l4c-old", {1979001}, {1996153}),
               components(vault, "BH", "Z", "sts2-bh", {1996153})}),
  };
}

// ---------------------------------------------------------------- tables

void write_channel(Files& files, const Station& station, const Channel& channel, long chanid) {
  const char* sta = station.sta.c_str();
  const char* chan = channel.chan.c_str();
  const double time = epoch_seconds(channel.on);
  const double endtime = epoch_seconds(channel.off);
  const Setup& setup = named(setups(), channel.setup);
  const Calibration figures = calibration(setup);
  add_row(files, "sitechan", 140, "%-6s %-8s %8ld %8ld %8ld %-4s %9.4f %6.1f %6.1f %-50s", sta, chan, channel.on.day,
          chanid, channel.off.day, "n", channel.depth, channel.azimuth, channel.dip, channel.description.c_str());
  add_row(files, "sensor", 139, "%-6s %-8s %17.5f %17.5f %8ld %8ld %8ld %16.6f %16.6f %6.2f %-1s", sta, chan, time,
          endtime, instrument_id(setup), chanid, channel.on.day, 1.0, figures.period, 0.0, "y");
  add_row(files, "calibration", 175, "%-6s %-8s %17.5f %17.5f %-16s %-16s %11s %16.8g %16.6f %16.6f %8d", sta, chan,
          time, endtime, kNone, figures.units.c_str(), rate_text(figures.rate).c_str(), figures.calib, figures.period,
          figures.hz, -1);
  int stageid = 0;
  for (const Stage& stage : stages(setup)) {
    const bool digital = stage.decimation > 0;
    add_row(files, "stage", 318,
            "%-6s %-8s %17.5f %17.5f %8d %-16s %16.8g %-16s %-16s %10.6f %-20s %8d %8d %11s %11s %-64s %-32s", sta,
            chan, time, endtime, ++stageid, kNone, stage.gain, stage.iunits.c_str(), stage.ounits.c_str(), 1.0,
            stage.gtype.c_str(), digital ? 0 : -1, stage.decimation, rate_text(stage.rate).c_str(),
            rate_text(digital ? 0 : -1).c_str(), stage.dir.c_str(), stage.dfile.c_str());
  }
}

void write_station(Files& files, const Station& station, long& chanid) {
  const char* sta = station.sta.c_str();
  for (const Site& site : station.sites) {
    add_row(files, "site", 155, "%-6s %8ld %8ld %9.4f %9.4f %9.4f %-50s %-4s %-6s %9.4f %9.4f", sta, site.on, site.off,
            site.lat, site.lon, site.elev, site.name.c_str(), "ss", site.reference.c_str(), site.north, site.east);
  }
  std::string chan;
  for (const Channel& channel : station.channels) {
    write_channel(files, station, channel, ++chanid);
    if (channel.chan == chan) continue;  // a later epoch of the same channel
    chan = channel.chan;
    add_row(files, "schanloc", 67, "%-6s %-8s %-8s %-8s %-15s", sta, chan.c_str(), channel.code.c_str(),
            channel.location.c_str(), "operator");
  }
}

void write_networks(Files& files, const std::vector<Station>& stations) {
  for (const auto& [code, name] : networks()) {
    const char* net = code.c_str();
    add_row(files, "network", 137, "%-8s %-80s %-4s %-15s %8d", net, name.c_str(), kNone, "operator", -1);
    for (const Station& station : stations) {
      if (station.network != code) continue;
      const char* sta = station.sta.c_str();
      add_row(files, "affiliation", 33, "%-8s %-6s", net, sta);
      add_row(files, "snetsta", 56, "%-8s %-6s %-6s %-15s", net, station.code.c_str(), sta, "operator");
    }
  }
}

const char* band(double rate) {
  if (rate == 0) return kNone;
  if (rate < 10) return "l";
  return rate < 80 ? "b" : "h";
}

void write_instruments(Files& files) {
  for (const Setup& setup : setups()) {
    if (setup.insname.empty()) continue;
    const Sensor device = setup.sensor.empty() ? Sensor{"", kNone, kNone, kNone} : sensor(setup.sensor);
    const Calibration figures = calibration(setup);
    add_row(files, "instrument", 239, "%8ld %-50s %-6s %-1s %-1s %11s %16.6f %16.6f %-64s %-32s %-6s",
            instrument_id(setup), setup.insname.c_str(), device.instype.c_str(), band(figures.rate), "d",
            rate_text(figures.rate).c_str(), figures.ncalib, figures.period, kNone, kNone, device.rsptype.c_str());
  }
}

void write_responses(Files& files) {
  for (const Setup& setup : setups()) {
    if (setup.sensor.empty()) continue;
    const Sensor& device = sensor(setup.sensor);
    files["resp/sensors/" + sensor_file(setup)] =
        device.as_table ? fap_file(device, setup.hz) : paz_file(device, setup.hz);
    for (const Fir& fir : digitizer(setup.digitizer).filters) files["resp/recorders/" + fir.name] = fir_file(fir);
  }
  files["resp/recorders/flat.paz"] = paz_file(Sensor{}, 1);
}

Files make_database() {
  Files files;
  const std::vector<Station> all = stations();
  long chanid = 0;
  for (const Station& station : all) write_station(files, station, chanid);
  write_networks(files, all);
  write_instruments(files);
  write_responses(files);
  return files;
}

void save(const Files& files, const std::filesystem::path& folder) {
  for (const auto& [name, content] : files) {
    const std::filesystem::path path = folder / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary);
    out << content;
    if (!out.flush()) throw std::runtime_error("cannot write " + path.string());
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_example DIR\n");
    return 2;
  }
  try {
    save(make_database(), argv[1]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_example: %s\n", error.what());
    return 1;
  }
  return 0;
}
