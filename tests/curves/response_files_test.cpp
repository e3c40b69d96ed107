// Random response files and what becomes of them in the document: every number is the one that the file has. The
// documents are held to the published schemas too, where these are at hand.
//
// FILES_SEED in the environment repeats one case that failed, FILES_CASES sets the number of cases.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "curves/library_document.h"
#include "curves/response_document.h"
#include "curves/station_schema.h"
#include "reference/edition2/random_files.h"
#include "reference/response_text.h"
#include "support/flat_database.h"
#include "support/random_seed.h"

namespace triglub_curves {

namespace {

using triglub_reference::Filter;
using triglub_reference::Numbers;
using triglub_reference::Random;
using triglub_reference::ResponseFile;
using triglub_test::FlatDatabase;

double number(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

// Of a line of a file; 0 where it is not given.
double nth(const Numbers& numbers, std::size_t n) { return n < numbers.size() ? number(numbers[n]) : 0; }

void expect_same(double got, double put) {
  EXPECT_EQ(got, put);
  EXPECT_FALSE(got == 0 && std::signbit(got)) << "a negative zero";
}

void expect_same(const Number& got, double put, double error) {
  expect_same(got.value, put);
  const auto expected = error == 0 ? std::nullopt : std::optional(std::abs(error));
  EXPECT_EQ(got.minus_error, expected);
  EXPECT_EQ(got.plus_error, expected);
}

void expect_same(const std::vector<Root>& got, const std::vector<Numbers>& put, std::size_t first_number) {
  ASSERT_EQ(got.size(), put.size());
  for (std::size_t i = 0; i < put.size(); ++i) {
    EXPECT_EQ(got[i].number, static_cast<long>(first_number + i));
    expect_same(got[i].real, nth(put[i], 0), nth(put[i], 2));
    expect_same(got[i].imaginary, nth(put[i], 1), nth(put[i], 3));
  }
}

// The first of those that were put into the file, as many as `count`.
void expect_same(const std::vector<Coefficient>& got, const std::vector<Numbers>& put, std::size_t count) {
  ASSERT_EQ(got.size(), count);
  for (std::size_t i = 0; i < count; ++i) {
    EXPECT_EQ(got[i].number, static_cast<long>(i + 1));
    expect_same(got[i].value, nth(put[i], 0), nth(put[i], 1));
  }
}

void expect_poles_zeros(const Stage& got, const Filter& put) {
  ASSERT_TRUE(std::holds_alternative<PolesZeros>(got.filter));
  const auto& filter = std::get<PolesZeros>(got.filter);
  EXPECT_EQ(filter.type, "LAPLACE (RADIANS/SECOND)");
  expect_same(filter.factor, nth(put.head, 0));
  expect_same(filter.frequency, put.head.size() > 1 ? nth(put.head, 1) : 1);
  expect_same(filter.zeros, put.second, 0);
  expect_same(filter.poles, put.first, put.second.size());
}

void expect_coefficients(const Stage& got, const Filter& put) {
  ASSERT_TRUE(std::holds_alternative<Coefficients>(got.filter));
  const auto& filter = std::get<Coefficients>(got.filter);
  EXPECT_EQ(filter.type, "DIGITAL");
  expect_same(filter.numerators, put.first, put.first.size());
  expect_same(filter.denominators, put.second, put.second.size());
}

bool is_symmetric(const std::vector<Numbers>& taps) {
  return std::equal(taps.begin(), taps.end(), taps.rbegin(),
                    [](const Numbers& a, const Numbers& b) { return nth(a, 0) == nth(b, 0); });
}

void expect_fir(const Stage& got, const Filter& put) {
  ASSERT_TRUE(std::holds_alternative<FirFilter>(got.filter));
  const auto& filter = std::get<FirFilter>(got.filter);
  const std::size_t all = put.first.size();
  const std::string symmetry = !is_symmetric(put.first) ? "NONE" : all % 2 == 1 ? "ODD" : "EVEN";
  EXPECT_EQ(filter.symmetry, symmetry);
  expect_same(filter.numerators, put.first, symmetry == "NONE" ? all : (all + 1) / 2);
}

// In degrees, with its whole turns taken away.
double within_a_turn(double phase) { return std::abs(phase) > 360 ? std::fmod(phase, 360) : phase; }

void expect_list(const Stage& got, const Filter& put) {
  ASSERT_TRUE(std::holds_alternative<ResponseList>(got.filter));
  const auto& elements = std::get<ResponseList>(got.filter).elements;
  ASSERT_EQ(elements.size(), put.first.size());
  for (std::size_t i = 0; i < elements.size(); ++i) {
    expect_same(elements[i].frequency, nth(put.first[i], 0));
    expect_same(elements[i].amplitude, nth(put.first[i], 1), nth(put.first[i], 3));
    expect_same(elements[i].phase, within_a_turn(nth(put.first[i], 2)), nth(put.first[i], 4));
  }
}

bool has_error(const std::vector<Numbers>& taps) {
  return std::any_of(taps.begin(), taps.end(), [](const Numbers& tap) { return nth(tap, 1) != 0; });
}

bool is_plain_fir(const Filter& put) {
  return put.type == "fir" && put.second.empty() && !put.first.empty() && !has_error(put.first);
}

// How filters without feedback are written.
enum class FirForm { fir, coefficients };

void expect_filter(const Stage& got, const Filter& put, FirForm form) {
  if (put.type == "paz") return expect_poles_zeros(got, put);
  if (put.type.starts_with("fap")) return expect_list(got, put);
  if (is_plain_fir(put) && form == FirForm::fir) return expect_fir(got, put);
  expect_coefficients(got, put);
}

// The seconds of a filter's delay, and what is left of it.
std::optional<double> delay_of(const Filter& put, double input_rate) {
  if (put.type == "fir" && put.head.size() > 1 && nth(put.head, 1) >= 0) return nth(put.head, 1) / input_rate;
  const bool is_known = put.type == "fir" && put.second.empty() && !put.first.empty() && is_symmetric(put.first);
  return is_known ? std::optional(static_cast<double>(put.first.size() - 1) / 2 / input_rate) : std::nullopt;
}

// A row of the table of stages and its file.
struct Put {
  std::map<std::string, std::string> row;
  ResponseFile file;

  std::optional<double> at(const char* field) const {
    const auto found = row.find(field);
    return found == row.end() ? std::nullopt : std::optional(number(found->second));
  }
};

// Rates have seven decimals, so what is computed from them is no closer than that.
constexpr double kHalfOfTheLastPlace = 0.00000005;

void expect_decimation(const Stage& got, const Put& put) {
  const Filter& filter = put.file.filters[0];
  ASSERT_EQ(got.decimation.has_value(), filter.type == "fir" || filter.type == "iir");
  if (!got.decimation) return;
  const double factor = put.at("decifac").value_or(1);
  const auto rate = put.at("samprate");
  const double input_rate = rate ? *rate * factor : nth(filter.head, 0);
  EXPECT_EQ(got.decimation->factor, static_cast<long>(factor));
  EXPECT_EQ(got.decimation->offset, 0);
  EXPECT_NEAR(got.decimation->input_rate, input_rate, rate ? kHalfOfTheLastPlace * factor : 0);
  const double delay = delay_of(filter, input_rate).value_or(0);
  const double doubt = rate ? delay * kHalfOfTheLastPlace / *rate : delay * 1e-15;
  EXPECT_NEAR(got.decimation->delay, delay, doubt);
  const auto corrected = put.at("leadfac");
  EXPECT_NEAR(got.decimation->correction, corrected.value_or(delay), corrected ? 0 : doubt);
}

bool is_usable(const Put& put) {
  const std::vector<std::string> types = {"paz", "iir", "fir", "fap", "fap2"};
  const Filter& filter = put.file.filters[0];
  const bool has_rate = (filter.type != "fir" && filter.type != "iir") || put.at("samprate") || nth(filter.head, 0) > 0;
  return put.file.readable && put.file.filters.size() == 1 && has_rate &&
         std::find(types.begin(), types.end(), filter.type) != types.end();
}

void expect_same(const ChannelEpoch& got, const Put& put, FirForm form) {
  EXPECT_TRUE(got.sensitivity.has_value());
  ASSERT_EQ(got.stages.size(), is_usable(put) ? 1 : 0);
  if (got.stages.empty()) return;
  const Stage& stage = got.stages[0];
  EXPECT_EQ(stage.number, 1);
  EXPECT_EQ(stage.gain, *put.at("gnom"));
  EXPECT_EQ(stage.gain_frequency, 0.05);
  EXPECT_EQ(stage.input_units + " " + stage.output_units, "m/s V");
  expect_filter(stage, put.file.filters[0], form);
  expect_decimation(stage, put);
}

constexpr int kChannels = 8;

std::string channel(int i) { return "BH" + std::to_string(i); }

Put random_put(Random& random, int i) {
  Put put = {{{"sta", "AAK"},
              {"chan", channel(i)},
              {"time", "946684800.00000"},
              {"stageid", "1"},
              {"gnom", random.pick({"1500", "1", "0.000125", "-2.5", "1.5e+09"})},
              {"iunits", "m/s"},
              {"ounits", "V"},
              {"dir", "resp"},
              {"dfile", channel(i)}},
             triglub_reference::edition2::random_file(random)};
  if (random.percent(50)) put.row["samprate"] = random.pick({"40.0000000", "33.3333333", "0.1", "100"});
  if (random.percent(50)) put.row["decifac"] = random.pick({"1", "2", "3", "125"});
  if (random.percent(50)) put.row["leadfac"] = random.pick({"0.0000000", "0.1234567", "2.5", "-0.5000000"});
  return put;
}

void write(const std::vector<Put>& puts, FlatDatabase& files) {
  files.add_row("snetsta", {{"snet", "KR"}, {"fsta", "AAK"}, {"sta", "AAK"}});
  files.add_row("site", {{"sta", "AAK"}, {"ondate", "2000001"}, {"lat", "42"}, {"lon", "74"}, {"elev", "1"}});
  for (const Put& put : puts) {
    const std::string& chan = put.row.at("chan");
    files.add_row("sitechan", {{"sta", "AAK"}, {"chan", chan}, {"ondate", "2000001"}});
    files.add_row("calibration", {{"sta", "AAK"},
                                  {"chan", chan},
                                  {"time", "946684800.00000"},
                                  {"units", "m/s"},
                                  {"calib", "1"},
                                  {"calper", "1"},
                                  {"fc", "0.05"}});
    files.add_row("stage", put.row);
    files.write_file("resp/" + chan, triglub_reference::response_text(put.file));
  }
}

void expect_valid(const std::string& document) {
  for (const char* version : {"1.1", "1.2"}) {
    EXPECT_EQ(has_schema(version) ? faults_of(document, version) : "", "") << version;
  }
}

// The seed of each case that failed is told.
void read_back(std::uint64_t seed, FirForm form) {
  SCOPED_TRACE("FILES_SEED=" + std::to_string(seed));
  Random random(seed);
  std::vector<Put> puts;
  puts.reserve(kChannels);
  for (int i = 0; i < kChannels; ++i) puts.push_back(random_put(random, i));
  FlatDatabase files;
  write(puts, files);
  const std::string form_key = form == FirForm::fir ? "" : "fir_filters Coefficients\n";
  const std::string document = shipped_document(files.write(), form_key);
  expect_valid(document);
  const auto epochs = read_responses(document);
  ASSERT_EQ(epochs.size(), puts.size());
  for (std::size_t i = 0; i < puts.size(); ++i) {
    SCOPED_TRACE(triglub_reference::response_text(puts[i].file));
    expect_same(epochs[i], puts[i], form);
  }
}

std::uint64_t setting(const char* variable, std::uint64_t otherwise) {
  const char* text = std::getenv(variable);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

// Until one fails.
void read_back_many(FirForm form) {
  constexpr std::uint64_t usual_cases = 100;
  const bool is_repeated = std::getenv("FILES_SEED") != nullptr;
  const std::uint64_t first = is_repeated ? setting("FILES_SEED", 0) : triglub_test::random_seed();
  const std::uint64_t count = setting("FILES_CASES", is_repeated ? 1 : usual_cases);
  for (std::uint64_t i = 0; i < count && !testing::Test::HasFailure(); ++i) read_back(first + i, form);
}

TEST(ResponseFilesInDocuments, HoldEveryNumber) { read_back_many(FirForm::fir); }

TEST(ResponseFilesInDocuments, HoldEveryNumberWithFiltersAsCoefficients) { read_back_many(FirForm::coefficients); }

}  // namespace

}  // namespace triglub_curves
