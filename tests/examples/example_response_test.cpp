// The instrument responses of the example database: gains, rates and units of each chain, and the files it names.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <filesystem>
#include <map>
#include <numbers>
#include <set>
#include <string>
#include <vector>

#include "examples/example_reader.h"

namespace {

using example::Filter;
using example::matching;
using example::read_filter;
using example::Row;
using example::rows;
using example::text;
using example::value;

// A channel epoch: its calibration and its stages.
struct Chain {
  Row calibration;
  std::vector<Row> stages;
  std::string name;
};

// The chains that have stages at all.
std::vector<Chain> chains() {
  std::vector<Chain> list;
  for (const Row& row : rows("calibration")) {
    const std::vector<Row> stages = matching("stage", row, {"sta", "chan", "time"});
    const std::string name = text(row, "sta") + " " + text(row, "chan") + " " + row.at("time");
    if (!stages.empty()) list.push_back({row, stages, name});
  }
  return list;
}

std::string file_of(const Row& stage) {
  return text(stage, "dfile") == "-" ? "" : text(stage, "dir") + "/" + text(stage, "dfile");
}

// The stages that name a file, one for each file.
std::map<std::string, Row> stages_by_file() {
  std::map<std::string, Row> stages;
  for (const Row& stage : rows("stage")) {
    if (!file_of(stage).empty()) stages.emplace(file_of(stage), stage);
  }
  return stages;
}

std::map<std::string, Filter> filters(const std::string& type) {
  std::map<std::string, Filter> list;
  for (const auto& [file, stage] : stages_by_file()) {
    const Filter filter = read_filter(example::folder() / file);
    if (filter.type == type) list[file] = filter;
  }
  return list;
}

TEST(ExampleChains, StagesCountUpFromOne) {
  for (const Chain& chain : chains()) {
    for (std::size_t i = 0; i < chain.stages.size(); ++i) {
      EXPECT_EQ(value(chain.stages[i], "stageid"), static_cast<double>(i + 1)) << chain.name;
    }
  }
}

TEST(ExampleChains, OneMissesEveryStageOnlyWhereNothingIsSampled) {
  EXPECT_EQ(chains().size() + 2, rows("calibration").size());
}

TEST(ExampleChains, GainsMultiplyToTheCalibration) {
  for (const Chain& chain : chains()) {
    double product = 1;
    for (const Row& stage : chain.stages) product *= value(stage, "gnom");
    // Eight significant digits of calib.
    EXPECT_NEAR(product * value(chain.calibration, "calib") / 1e9, 1, 1e-7) << chain.name;
  }
}

TEST(ExampleChains, GainsAreThoseAtTheCalibrationPeriod) {
  for (const Chain& chain : chains()) {
    EXPECT_EQ(value(chain.calibration, "calper") * value(chain.calibration, "fc"), 1) << chain.name;
  }
}

// The gain of a sensor's stage, from the only file of that name.
double sensor_gain(const std::string& file) { return value(stages_by_file().at("resp/sensors/" + file), "gnom"); }

TEST(ExampleChains, TheGainOfASeismometerFollowsItsResponseFromWhereItIsGiven) {
  const Filter sts2 = read_filter(example::folder() / "resp/sensors/sts2_gen1_1Hz.paz");
  EXPECT_EQ(sensor_gain("sts2_gen1_1Hz.paz"), 1500);
  EXPECT_NEAR(sensor_gain("sts2_gen1_0.02Hz.paz"), 1500 * example::amplitude(sts2, 0.02), 1e-4);
}

TEST(ExampleChains, TheGainOfAGeophoneIsItsCoilsTimesThePendulums) {
  // f^2 / |f0^2 - f^2 + 2 i h f0 f|, natural frequency f0 and damping h
  const double f = 10, f0 = 4.5, h = 0.56;
  const double expected = 28.8 * f * f / std::hypot(f0 * f0 - f * f, 2 * h * f0 * f);
  EXPECT_NEAR(sensor_gain("sm6_10Hz.paz"), expected, 1e-6);
}

TEST(ExampleChains, EveryOutputRateFeedsTheNextStage) {
  for (const Chain& chain : chains()) {
    double rate = -1;  // of what comes in; no samples before the digitizer
    int filters = 0;
    for (const Row& stage : chain.stages) {
      const double decimation = value(stage, "decifac");
      if (text(stage, "gtype") == "digitizer") {
        EXPECT_EQ(decimation, 1) << chain.name;
        rate = value(stage, "samprate");
      } else if (rate < 0) {
        EXPECT_EQ(decimation, -1) << chain.name;
        EXPECT_EQ(value(stage, "samprate"), -1) << chain.name;
      } else {
        EXPECT_GT(decimation, 1) << chain.name;
        EXPECT_EQ(decimation * value(stage, "samprate"), rate) << chain.name;
        rate = value(stage, "samprate");
        ++filters;
      }
    }
    EXPECT_EQ(rate, value(chain.calibration, "samprate")) << chain.name;
    EXPECT_GE(filters, 2) << chain.name;
    EXPECT_LE(filters, 4) << chain.name;
  }
}

TEST(ExampleChains, EveryOutputUnitIsTheNextInputUnitOrTheNextSaysNothing) {
  for (const Chain& chain : chains()) {
    std::string unit = text(chain.calibration, "units");
    EXPECT_EQ(text(chain.stages.front(), "iunits"), unit) << chain.name;
    for (const Row& stage : chain.stages) {
      const std::string input = text(stage, "iunits");
      EXPECT_TRUE(input == "-" || input == unit) << chain.name << ": " << input << " after " << unit;
      if (text(stage, "ounits") != "-") unit = text(stage, "ounits");
    }
    EXPECT_EQ(unit, "counts") << chain.name;
  }
}

TEST(ExampleFiles, EveryFileNamedIsThereAndEveryFileThereIsNamed) {
  std::set<std::string> named, there;
  for (const auto& [file, stage] : stages_by_file()) named.insert(file);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(example::folder() / "resp")) {
    if (entry.is_regular_file()) there.insert(entry.path().lexically_relative(example::folder()).generic_string());
  }
  EXPECT_EQ(named, there);
  EXPECT_GE(there.size(), 20U);
}

TEST(ExampleFiles, TheTypeOfTheFileIsTheTypeOfTheStage) {
  for (const Row& stage : rows("stage")) {
    if (file_of(stage).empty()) continue;
    EXPECT_EQ(read_filter(example::folder() / file_of(stage)).type, text(stage, "gtype")) << file_of(stage);
  }
  EXPECT_GE(filters("paz").size(), 6U);
  EXPECT_GE(filters("fir").size(), 6U);
  EXPECT_EQ(filters("fap2").size(), 1U);
}

TEST(ExampleFiles, PolesAndZerosAreNormalisedAtTheFrequencyOfTheGains) {
  for (const Chain& chain : chains()) {
    for (const Row& stage : chain.stages) {
      if (text(stage, "gtype") != "paz") continue;
      const Filter paz = read_filter(example::folder() / file_of(stage));
      const double hz = paz.beside.value_or(1);
      EXPECT_EQ(hz, value(chain.calibration, "fc")) << chain.name;
      EXPECT_NEAR(example::amplitude(paz, hz), 1, 1e-10) << file_of(stage);
    }
  }
}

TEST(ExampleFiles, PolesLieInTheLeftHalfAndComeInPairs) {
  for (const auto& [file, paz] : filters("paz")) {
    for (const auto& pole : paz.a) {
      EXPECT_LT(pole.at(0), 0) << file;
      const auto is_mirror = [&](const auto& other) { return other.at(0) == pole.at(0) && other.at(1) == -pole.at(1); };
      EXPECT_TRUE(std::any_of(paz.a.begin(), paz.a.end(), is_mirror)) << file;
    }
  }
}

TEST(ExampleFiles, OneHasNeitherPolesNorZerosAndOneStatesErrors) {
  int empty = 0, with_errors = 0;
  for (const auto& [file, paz] : filters("paz")) {
    empty += paz.a.empty() && paz.b.empty();
    with_errors += !paz.a.empty() && paz.a.front().size() == 4;
  }
  EXPECT_GE(empty, 1);
  EXPECT_GE(with_errors, 1);
}

TEST(ExampleFiles, TheTableOfFrequenciesIsOneAtTheFrequencyOfTheGains) {
  for (const auto& [file, stage] : stages_by_file()) {
    if (text(stage, "gtype") != "fap2") continue;
    const double fc = value(matching("calibration", stage, {"sta", "chan", "time"}).at(0), "fc");
    const Filter table = read_filter(example::folder() / file);
    int seen = 0;
    for (std::size_t i = 0; i < table.a.size(); ++i) {
      ASSERT_EQ(table.a[i].size(), 5U);
      EXPECT_GT(table.a[i][0], i == 0 ? 0 : table.a[i - 1][0]);
      if (table.a[i][0] != fc) continue;
      EXPECT_EQ(table.a[i][1], 1);
      ++seen;
    }
    EXPECT_EQ(seen, 1);
  }
}

TEST(ExampleFilters, CoefficientsSumToOneAtTheRateThatComesIn) {
  for (const Row& stage : rows("stage")) {
    if (text(stage, "gtype") != "fir") continue;
    const Filter fir = read_filter(example::folder() / file_of(stage));
    EXPECT_EQ(fir.rate_or_factor, value(stage, "decifac") * value(stage, "samprate")) << file_of(stage);
    double sum = 0;
    for (const auto& coefficient : fir.a) sum += coefficient.at(0);
    EXPECT_NEAR(sum, 1, 1e-10) << file_of(stage);
    EXPECT_TRUE(fir.b.empty()) << file_of(stage);
  }
}

double fir_amplitude(const Filter& fir, double hz) {
  std::complex<double> sum = 0;
  for (std::size_t i = 0; i < fir.a.size(); ++i) {
    sum += fir.a[i].at(0) * std::polar(1.0, -2 * std::numbers::pi * hz / fir.rate_or_factor * static_cast<double>(i));
  }
  return std::abs(sum);
}

TEST(ExampleFilters, TheBandBelowTheGainsFrequencyPassesAndAliasesDoNot) {
  for (const Chain& chain : chains()) {
    const double fc = value(chain.calibration, "fc");
    for (const Row& stage : chain.stages) {
      if (text(stage, "gtype") != "fir") continue;
      const Filter fir = read_filter(example::folder() / file_of(stage));
      EXPECT_NEAR(fir_amplitude(fir, fc), 1, 0.2) << chain.name << " " << file_of(stage);
      // What this decimation folds onto the frequency of the gains.
      EXPECT_LT(fir_amplitude(fir, value(stage, "samprate") - fc), 0.02) << chain.name << " " << file_of(stage);
    }
  }
}

TEST(ExampleFilters, EveryShapeOfFilterAndWayOfStatingItsDelayIsThere) {
  std::set<std::string> shapes;
  for (const auto& [file, fir] : filters("fir")) {
    bool symmetric = true;
    for (std::size_t i = 0; i < fir.a.size(); ++i) {
      symmetric = symmetric && fir.a[i].at(0) == fir.a[fir.a.size() - 1 - i].at(0);
    }
    if (!symmetric) {
      EXPECT_NE(fir.a.front().at(0), fir.a.back().at(0)) << file;
      shapes.insert(fir.beside == -1.0 ? "asymmetric, -1" : "asymmetric, other");
      continue;
    }
    const std::string parity = fir.a.size() % 2 == 0 ? "even" : "odd";
    if (fir.beside && *fir.beside > 0) {
      EXPECT_EQ(*fir.beside, (static_cast<double>(fir.a.size()) - 1) / 2) << file;
    }
    shapes.insert(parity + (!fir.beside ? ", not stated" : *fir.beside == 0 ? ", none" : ", stated"));
  }
  EXPECT_EQ(shapes, (std::set<std::string>{"asymmetric, -1", "even, not stated", "even, stated", "odd, none",
                                           "odd, not stated", "odd, stated"}));
}

TEST(ExampleFilters, TheAsymmetricOnePeaksInItsFirstQuarter) {
  const Filter fir = read_filter(example::folder() / "resp/recorders/200_div2_minimum.fir");
  const std::size_t peak = std::max_element(fir.a.begin(), fir.a.end()) - fir.a.begin();
  EXPECT_LT(peak, fir.a.size() / 4);
}

}  // namespace
