// The filters are low passes, a sinc under a Hamming window: coefficients of the magnitudes and digits that real chains
// have. Every other model states its delay, the others leave it to be told from the coefficients.
#include "response_files.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace triglub_bench {

namespace {

constexpr int kMinCoefficients = 60;
constexpr int kMoreCoefficients = 20;

std::string formatted(const char* format, double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

void write_file(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
}

int coefficient_count(int model, int stage) {
  return kMinCoefficients + kMoreCoefficients * ((model + 3 * stage) % kModels);
}

std::vector<double> low_pass(int count) {
  const double middle = (count - 1) / 2.0;
  std::vector<double> taps;
  for (int i = 0; i < count; ++i) {
    const double x = std::numbers::pi * (i - middle) / kDecimation;
    const double window = 0.54 - 0.46 * std::cos(2.0 * std::numbers::pi * i / (count - 1));
    taps.push_back(window * (x == 0.0 ? 1.0 : std::sin(x) / x));
  }
  const double sum = std::accumulate(taps.begin(), taps.end(), 0.0);
  for (double& tap : taps) tap /= sum;
  return taps;
}

std::string seismometer_text(int model) {
  const std::string corner = formatted("%.6f", 0.037 / (1 + model % 4));
  std::string text = "theoretical 1 seismometer paz made\n" + formatted("%.8g", 5.7e4 + model) + " 1\n4\n";
  text += "-" + corner + " " + corner + "\n-" + corner + " -" + corner + "\n";
  text += "-251.3 0\n-131." + std::to_string(model) + " 467.3\n2\n0 0\n0 0\n";
  return text;
}

std::string filter_text(double rate, int count, bool states_delay) {
  std::string text = "theoretical 1 digitizer fir made\n" + formatted("%.6g", rate);
  if (states_delay) text += " " + formatted("%.1f", (count - 1) / 2.0);
  text += "\n" + std::to_string(count) + "\n";
  for (const double tap : low_pass(count)) text += formatted("%.10e", tap) + "\n";
  return text + "0\n";
}

}  // namespace

std::string seismometer_file(int model) { return "paz." + std::to_string(model); }

std::string filter_file(const Band& band, int model, int stage) {
  return "fir." + std::string(band.letters) + "." + std::to_string(model) + "." + std::to_string(stage);
}

double input_rate(const Band& band, int stage, int length) {
  return band.sample_rate * std::pow(kDecimation, length - stage);
}

void write_response_files(const std::string& folder, int length) {
  std::filesystem::create_directories(folder);
  for (int model = 0; model < kModels; ++model) {
    write_file(folder + "/" + seismometer_file(model), seismometer_text(model));
    for (const Band& band : kBands) {
      for (int stage = 0; stage < length; ++stage) {
        write_file(folder + "/" + filter_file(band, model, stage),
                   filter_text(input_rate(band, stage, length), coefficient_count(model, stage), model % 2 == 1));
      }
    }
  }
}

}  // namespace triglub_bench
