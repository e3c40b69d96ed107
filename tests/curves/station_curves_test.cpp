// Documents of real stations: the curves of their responses are those that were computed elsewhere from the published
// ones, by both conventions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "curves/curve.h"
#include "curves/library_document.h"
#include "curves/response_document.h"

namespace triglub_curves {

namespace {

constexpr double kMostPercent = 0.1;
constexpr double kMostDegrees = 0.1;

// A row of a file of curves.
struct CurveRow {
  std::string codes;  // network,station,location,channel
  std::string start;
  double frequency;
  double amplitude;
  double phase;  // degrees
  double stated_amplitude;
  double stated_phase;
};

std::vector<std::string> words_of(const std::string& line) {
  std::vector<std::string> words;
  std::istringstream stream(line);
  for (std::string word; std::getline(stream, word, ',');) words.push_back(word);
  return words;
}

CurveRow row_of(const std::vector<std::string>& words) {
  const auto number = [&](std::size_t i) { return std::stod(words.at(i)); };
  return {words.at(0) + "," + words.at(1) + "," + words.at(2) + "," + words.at(3),
          words.at(4),
          number(5),
          number(6),
          number(7),
          number(8),
          number(9)};
}

std::vector<CurveRow> rows_in(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);  // names
  std::vector<CurveRow> rows;
  while (std::getline(file, line)) rows.push_back(row_of(words_of(line)));
  return rows;
}

// Times to the second have texts in their order.
std::string second_of(const std::string& time) { return time.substr(0, 19); }

bool holds(const ChannelEpoch& epoch, const CurveRow& row) {
  const std::string codes = epoch.network + "," + epoch.station + "," + epoch.location + "," + epoch.channel;
  return codes == row.codes && second_of(epoch.start) <= second_of(row.start) &&
         (epoch.end.empty() || second_of(row.start) < second_of(epoch.end));
}

// The one epoch that holds when the row's begins; null when there is none, or more than one.
const ChannelEpoch* find_epoch(const std::vector<ChannelEpoch>& epochs, const CurveRow& row) {
  const auto is_meant = [&](const ChannelEpoch& epoch) { return holds(epoch, row); };
  if (std::count_if(epochs.begin(), epochs.end(), is_meant) != 1) return nullptr;
  return &*std::find_if(epochs.begin(), epochs.end(), is_meant);
}

// The largest deviations of one pair of columns.
struct Deviation {
  double percent = 0;
  double degrees = 0;

  void add(const CurveRow& row, Complex response, double amplitude, double phase) {
    const double by_percent = std::abs(std::abs(response) / amplitude - 1) * 100;
    const double by_degrees = std::abs(std::remainder(std::arg(response) * 180 / std::numbers::pi - phase, 360));
    EXPECT_LT(by_percent, kMostPercent) << row.codes << " " << row.start << " at " << row.frequency << " hertz";
    EXPECT_LT(by_degrees, kMostDegrees) << row.codes << " " << row.start << " at " << row.frequency << " hertz";
    percent = std::max(percent, by_percent);
    degrees = std::max(degrees, by_degrees);
  }
  void tell(const std::string& name) const {
    std::cout << name << ": at most " << percent << " % and " << degrees << " degrees\n";
    testing::Test::RecordProperty(name + "_percent", std::to_string(percent));
    testing::Test::RecordProperty(name + "_degrees", std::to_string(degrees));
  }
};

struct Case {
  const char* name;
  const char* curves;  // the database of which the curves are
  std::size_t rows;
};

class CurvesOfStations : public testing::TestWithParam<Case> {};

TEST_P(CurvesOfStations, AreThoseOfThePublishedResponses) {
  const std::string data = TRIGLUB_SOURCE_DIR "/../shared/data/";
  const std::string database = data + GetParam().name + "/" + GetParam().name;
  if (!std::filesystem::exists(database + ".site")) GTEST_SKIP() << "no database " << database;
  const std::vector<CurveRow> rows = rows_in(data + GetParam().curves + "/response.csv");
  ASSERT_EQ(rows.size(), GetParam().rows);
  const std::vector<ChannelEpoch> epochs = read_responses(shipped_document(database));
  Deviation renormalized;
  Deviation stated;
  for (const CurveRow& row : rows) {
    const ChannelEpoch* epoch = find_epoch(epochs, row);
    ASSERT_NE(epoch, nullptr) << row.codes << " " << row.start;
    renormalized.add(row, renormalized_response(*epoch, row.frequency), row.amplitude, row.phase);
    stated.add(row, stated_response(*epoch, row.frequency), row.stated_amplitude, row.stated_phase);
  }
  renormalized.tell("renormalized");
  stated.tell("stated");
}

// "merged" has the stations of "observatories", its epochs told apart by sensor, calibration and stage rows only.
INSTANTIATE_TEST_SUITE_P(Curve, CurvesOfStations,
                         testing::Values(Case{"observatories", "observatories", 408},
                                         Case{"merged", "observatories", 408}, Case{"moved", "moved", 1728}),
                         [](const auto& info) { return info.param.name; });

}  // namespace

}  // namespace triglub_curves
