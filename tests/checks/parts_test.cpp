// What the rules stand on: dates, units, amplitudes.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "checks/channel.h"
#include "checks/instant.h"
#include "checks/transfer.h"
#include "checks/unit_names.h"

namespace triglub::checks {
namespace {

constexpr std::int64_t kSecond = 1'000'000;

std::optional<std::int64_t> microseconds(std::string_view text) {
  const auto instant = parse_instant(text);
  if (!instant) return std::nullopt;
  return instant->microseconds;
}

TEST(Instants, AreReadInUtc) {
  EXPECT_EQ(microseconds("1970-01-01T00:00:00Z"), 0);
  EXPECT_EQ(microseconds("1970-01-02T00:00:01Z"), 86401 * kSecond);
  EXPECT_EQ(microseconds("1969-12-31T23:59:59.5Z"), -kSecond / 2);
  EXPECT_EQ(microseconds("2000-03-01T00:00:00Z"), 951868800 * kSecond);
  EXPECT_EQ(microseconds("1970-01-01T00:00:00"), 0);
  EXPECT_EQ(microseconds("1970-01-01T24:00:00Z"), 86400 * kSecond);
  EXPECT_EQ(microseconds("1970-01-01T02:30:00+02:30"), 0);
  EXPECT_EQ(microseconds("1969-12-31T22:00:00-02:00"), 0);
  EXPECT_EQ(microseconds("1970-01-01T00:00:00.123456789Z"), 123456);
}

TEST(Instants, OfNoCalendarAreNone) {
  for (const char* text : {"",
                           "Z",
                           "1970",
                           "1970-01-01",
                           "1970-01-01 00:00:00Z",
                           "1970-01-01T00:00Z",
                           "1970-1-01T00:00:00Z",
                           "1970-13-01T00:00:00Z",
                           "1970-00-01T00:00:00Z",
                           "1970-02-29T00:00:00Z",
                           "1970-01-32T00:00:00Z",
                           "1970-01-01T25:00:00Z",
                           "1970-01-01T24:00:01Z",
                           "1970-01-01T00:60:00Z",
                           "1970-01-01T00:00:60Z",
                           "1970-01-01T00:00:00.Z",
                           "1970-01-01T00:00:00z",
                           "1970-01-01T00:00:00ZZ",
                           "1970-01-01T00:00:00+1:00",
                           "1970-01-01T00:00:00+15:00",
                           "-1970-01-01T00:00:00Z",
                           "19700-01-01T00:00:00Z",
                           "1970-01-01T00:00:00.5Z "}) {
    EXPECT_EQ(microseconds(text), std::nullopt) << text;
  }
}

TEST(Instants, SpansMeetWithoutOverlapping) {
  EXPECT_FALSE(overlap({0, 10}, {10, 20}));
  EXPECT_FALSE(overlap({10, 20}, {0, 10}));
  EXPECT_TRUE(overlap({0, 10}, {9, 20}));
  EXPECT_TRUE(overlap({0, std::nullopt}, {9, 20}));
  EXPECT_TRUE(overlap({std::nullopt, std::nullopt}, {std::nullopt, 0}));
  EXPECT_FALSE(overlap({std::nullopt, 5}, {5, std::nullopt}));
}

TEST(Units, OfFdsnAreKnownInAnyCase) {
  for (const char* name :
       {"m",      "m/s",    "M/S", "nm/s", "NM/S",   "m/s**2", "M/S**2", "m/s/s",  "V",   "mV",  "A",
        "Pa",     "hPa",    "kPa", "mbar", "T",      "nT",     "rad/s",  "degC",   "K",   "%",   "count",
        "counts", "COUNTS", "s",   "Hz",   "W/m**2", "mm",     "cm/s",   "strain", "V/m", "ohm", "m**3/m**3"}) {
    EXPECT_TRUE(is_known_unit(name)) << name;
  }
  for (const char* name : {"", "unknown", "x", "meters per second", "cnt", "m/", "mm m", "kcount", "kkm", "m s"}) {
    EXPECT_FALSE(is_known_unit(name)) << name;
  }
}

TEST(Units, AreTheSameButForCase) {
  EXPECT_TRUE(is_same_unit("m/s", "M/S"));
  EXPECT_TRUE(is_same_unit("", ""));
  EXPECT_FALSE(is_same_unit("count", "counts"));
  EXPECT_FALSE(is_same_unit("m", "M/S"));
}

Filter digital(FilterKind kind, std::vector<double> numerators, std::vector<double> denominators = {}) {
  Filter filter;
  filter.kind = kind;
  filter.is_digital = true;
  filter.numerators = std::move(numerators);
  filter.denominators = std::move(denominators);
  return filter;
}

TEST(Amplitudes, OfARecursiveFilterAreThoseOfItsSums) {
  const Filter filter = digital(FilterKind::coefficients, {0.5, 0.25}, {1, -0.25});
  const double turn = 2 * std::numbers::pi * 3 / 20;
  const std::complex<double> back = std::polar(1.0, -turn);
  const double expected = std::abs((0.5 + 0.25 * back) / (1.0 - 0.25 * back));
  EXPECT_NEAR(std::exp(*log_amplitude(filter, 20, 3)), expected, 1e-12);
  EXPECT_NEAR(std::exp(*log_amplitude(filter, 20, 0)), 1, 1e-12);
}

TEST(Amplitudes, OfASymmetricFirAreThoseOfAllOfIt) {
  Filter half = digital(FilterKind::fir, {1, 2, 4});
  for (const auto& [symmetry, all] : {std::pair<std::string, std::vector<double>>{"ODD", {1, 2, 4, 2, 1}},
                                      {"EVEN", {1, 2, 4, 4, 2, 1}},
                                      {"NONE", {1, 2, 4}}}) {
    half.symmetry = symmetry;
    EXPECT_EQ(all_numerators(half), all);
    EXPECT_NEAR(*log_amplitude(half, 10, 1.5), *log_amplitude(digital(FilterKind::coefficients, all), 10, 1.5), 1e-12);
  }
  half.numerators.clear();
  half.symmetry = "ODD";
  EXPECT_TRUE(all_numerators(half).empty());
}

TEST(Amplitudes, OfPolesAndZerosDoNotOverflow) {
  const Element element{"NormalizationFactor", 1, "1e300", {}, {}};
  Filter filter;
  filter.normalization = figure(&element);
  for (int i = 0; i < 100; ++i) filter.poles.push_back({{-1e100, 0}, 1});
  EXPECT_NEAR(*log_amplitude(filter, std::nullopt, 1), 300 * std::log(10) - 10000 * std::log(10), 1e-6);
  filter.is_in_hertz = true;
  filter.poles = {{{0, 0}, 1}};
  EXPECT_NEAR(*log_amplitude(filter, std::nullopt, 2), 300 * std::log(10) - std::log(2), 1e-9);
}

TEST(Amplitudes, ThatCannotBeKnownAreNone) {
  const Filter filter = digital(FilterKind::coefficients, {1});
  EXPECT_FALSE(log_amplitude(filter, std::nullopt, 1));
  EXPECT_FALSE(log_amplitude(filter, 0, 1));
  Filter incomplete = filter;
  incomplete.is_complete = false;
  EXPECT_FALSE(log_amplitude(incomplete, 10, 1));
  Filter list;
  list.kind = FilterKind::list;
  EXPECT_FALSE(log_amplitude(list, std::nullopt, 1));
  list.points = {{1, 5, 1}, {2, 6, 1}};
  EXPECT_FALSE(log_amplitude(list, std::nullopt, 0.5));
  EXPECT_FALSE(log_amplitude(list, std::nullopt, 2.5));
  EXPECT_NEAR(std::exp(*log_amplitude(list, std::nullopt, 2)), 6, 1e-12);
}

}  // namespace
}  // namespace triglub::checks
