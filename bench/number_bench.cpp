// Numbers and times as texts. Rivals: snprintf and streams that give the same texts, which is checked.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "dbhelper.h"
#include "platform/timeconv.h"
#include "resp_helper.h"

namespace {

constexpr unsigned int kSeed = 11;

void number_sizes(benchmark::internal::Benchmark* bench) { bench->Arg(1000)->Arg(10000); }

// Between low and high, with as many decimals as a table has.
std::vector<double> numbers(benchmark::State& state, double low, double high, double decimals) {
  std::mt19937_64 random(kSeed);
  std::vector<double> numbers(static_cast<std::size_t>(state.range(0)));
  for (double& number : numbers) {
    const double share = static_cast<double>(random() >> 11U) / 9007199254740992.0;
    number = std::round((low + share * (high - low)) * decimals) / decimals;
  }
  return numbers;
}

// Each value in turn through `as_text`; `other` must give the same texts.
template <typename Value, typename AsText, typename Other>
void run(benchmark::State& state, const std::vector<Value>& values, AsText as_text, Other other) {
  for (const Value& value : values) {
    if (std::string(as_text(value)) != std::string(other(value))) return state.SkipWithError("texts differ");
  }
  for ([[maybe_unused]] const auto& round : state) {
    for (const Value& value : values) benchmark::DoNotOptimize(as_text(value));
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * values.size()));
}

// --- degrees ---------------------------------------------------------------------------------------------------------

std::string six_decimals(const std::string& digits) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%f", std::stod(digits));
  return text.data();
}

std::string six_decimals_by_stream(const std::string& digits) {
  std::ostringstream text;
  text.setf(std::ios::fixed);
  text << std::stod(digits);
  return text.str();
}

// As a table holds them: four decimals.
std::vector<std::string> degrees(benchmark::State& state) {
  std::vector<std::string> degrees;
  for (const double number : numbers(state, -90.0, 90.0, 1e4)) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.4f", number);
    degrees.emplace_back(text.data());
  }
  return degrees;
}

void degrees_as_latitude(benchmark::State& state) { run(state, degrees(state), as_valid_lat, six_decimals); }
BENCHMARK(degrees_as_latitude)->Apply(number_sizes);

void rival_degrees_by_snprintf(benchmark::State& state) { run(state, degrees(state), six_decimals, as_valid_lat); }
BENCHMARK(rival_degrees_by_snprintf)->Apply(number_sizes);

void rival_degrees_by_stream(benchmark::State& state) {
  run(state, degrees(state), six_decimals_by_stream, as_valid_lat);
}
BENCHMARK(rival_degrees_by_stream)->Apply(number_sizes);

// --- times -----------------------------------------------------------------------------------------------------------

std::string milliseconds_text(double seconds) { return epoch2str(seconds, "%GT%H:%M:%S.%u"); }

std::string by_strftime(double seconds) {
  // The same rounding: to the nearest millisecond, the carry going up.
  const auto milliseconds = static_cast<long>(std::llround(seconds * 1000.0));
  const std::time_t whole = milliseconds / 1000;
  std::tm fields{};
  std::array<char, 32> text{};
  gmtime_r(&whole, &fields);
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &fields);
  std::snprintf(text.data() + length, text.size() - length, ".%03ld", milliseconds % 1000);
  return text.data();
}

void time_as_text(benchmark::State& state) {
  run(state, numbers(state, 0.0, 2e9, 1e3), milliseconds_text, by_strftime);
}
BENCHMARK(time_as_text)->Apply(number_sizes);

void rival_time_by_strftime(benchmark::State& state) {
  run(state, numbers(state, 0.0, 2e9, 1e3), by_strftime, milliseconds_text);
}
BENCHMARK(rival_time_by_strftime)->Apply(number_sizes);

// --- the coefficients of a filter ------------------------------------------------------------------------------------

constexpr const char* kIndentation = "          ";
constexpr const char* kFrameTop =
    "          <Coefficients>\n"
    "           <InputUnits><Name>counts</Name></InputUnits>\n"
    "           <OutputUnits><Name>counts</Name></OutputUnits>\n"
    "           <CfTransferFunctionType>DIGITAL<!-- not implemented --></CfTransferFunctionType>\n";
constexpr const char* kFrameBottom = "          </Coefficients>\n";

std::string filter_by_stream(const std::vector<double>& coefficients) {
  std::ostringstream text;
  text << kFrameTop;
  for (const double coefficient : coefficients) {
    text << kIndentation << " <Numerator minusError=\"" << 0.0 << "\" plusError=\"" << 0.0 << "\">" << coefficient
         << "</Numerator>\n";
  }
  text << kFrameBottom;
  return text.str();
}

std::string filter_by_snprintf(const std::vector<double>& coefficients) {
  std::string text = kFrameTop;
  for (const double coefficient : coefficients) {
    std::array<char, 128> line{};
    const int length =
        std::snprintf(line.data(), line.size(), "%s <Numerator minusError=\"%g\" plusError=\"%g\">%g</Numerator>\n",
                      kIndentation, 0.0, 0.0, coefficient);
    text.append(line.data(), static_cast<std::size_t>(length));
  }
  return text + kFrameBottom;
}

std::string filter_by_library(const std::vector<double>& coefficients) {
  Fir fir;
  fir.samprate = 200.0;
  fir.numerators = coefficients;
  fir.numerator_errors.assign(coefficients.size(), 0.0);
  return fir_as_xml(&fir, "counts", "counts");
}

template <typename AsText, typename Other>
void run_filter(benchmark::State& state, AsText as_text, Other other) {
  const std::vector<double> coefficients = numbers(state, -0.5, 0.5, 1e10);
  std::string text = as_text(coefficients);
  if (text != other(coefficients)) return state.SkipWithError("texts differ");
  for ([[maybe_unused]] const auto& round : state) {
    text = as_text(coefficients);
    benchmark::DoNotOptimize(text);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * coefficients.size()));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

void filter(benchmark::State& state) { run_filter(state, filter_by_library, filter_by_stream); }
BENCHMARK(filter)->Apply(number_sizes);

void rival_filter_by_snprintf(benchmark::State& state) { run_filter(state, filter_by_snprintf, filter_by_library); }
BENCHMARK(rival_filter_by_snprintf)->Apply(number_sizes);

void rival_filter_by_stream(benchmark::State& state) { run_filter(state, filter_by_stream, filter_by_library); }
BENCHMARK(rival_filter_by_stream)->Apply(number_sizes);

}  // namespace
