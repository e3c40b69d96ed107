#include "reference/edition2/random_files.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

namespace triglub_reference::edition2 {

namespace {

constexpr int kMostRoots = 4;
constexpr int kMostTaps = 7;

std::string seventeen_digits(double number) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", number);
  return text;
}

std::string positive_number(Random& random) {
  return random.pick({"1", "40", "100", "0.1", "200.5", "0.30000000000000004", "1000000", "33.333333333333336"});
}

std::string error(Random& random) { return random.pick({"0", "0", "-0.0", "0.5", "-0.25", "1e-300", "0.1"}); }

// With or without the errors of its numbers.
Numbers entry(Random& random, int numbers, int errors) {
  Numbers all;
  for (int i = 0; i < numbers; ++i) all.push_back(awkward_number(random));
  const bool has_errors = random.percent(30);
  for (int i = 0; has_errors && i < errors; ++i) all.push_back(error(random));
  return all;
}

std::vector<Numbers> entries(Random& random, int numbers, int errors, int most) {
  std::vector<Numbers> all;
  for (int n = random.between(0, most); n > 0; --n) all.push_back(entry(random, numbers, errors));
  return all;
}

std::vector<Numbers> mirrored(std::vector<Numbers> taps) {
  for (std::size_t i = 0; i < taps.size() / 2; ++i) taps[taps.size() - 1 - i] = taps[i];
  return taps;
}

std::string negated(const std::string& number) { return number[0] == '-' ? number.substr(1) : "-" + number; }

std::vector<Numbers> antisymmetric(std::vector<Numbers> taps) {
  taps = mirrored(taps);
  for (std::size_t i = 0; i < taps.size() / 2; ++i) taps[i][0] = negated(taps[i][0]);
  return taps;
}

// Symmetric but for the last place of the last one.
std::vector<Numbers> nearly_symmetric(std::vector<Numbers> taps) {
  taps = mirrored(taps);
  if (taps.empty()) return taps;
  constexpr double last = 0.7;
  taps.back()[0] = taps.front()[0] = seventeen_digits(last);
  if (taps.size() > 1) taps.back()[0] = seventeen_digits(std::nextafter(last, 1));
  return taps;
}

std::vector<Numbers> without_errors(std::vector<Numbers> taps) {
  for (Numbers& tap : taps) tap.resize(1);
  return taps;
}

std::vector<Numbers> random_taps(Random& random) {
  std::vector<Numbers> taps = entries(random, 1, 1, kMostTaps);
  if (random.percent(75)) taps = without_errors(taps);
  switch (random.below(4)) {
    case 0:
      return taps;
    case 1:
      return antisymmetric(taps);
    case 2:
      return nearly_symmetric(taps);
    default:
      return mirrored(taps);
  }
}

Filter random_fir(Random& random) {
  Filter fir = {"fir", {positive_number(random)}, random_taps(random), {}};
  if (random.percent(15)) fir.second = entries(random, 1, 1, 2);
  if (random.percent(50)) fir.head.push_back(random.pick({"-1", "0", "2.5", "17", "0.33333333333333331", "-3"}));
  return fir;
}

Numbers list_row(Random& random, bool has_errors) {
  const std::string phase =
      random.percent(50)
          ? random.pick({"360", "-360", "360.00000000000006", "-360.5", "720", "-720", "1e300", "540", "-180", "359.9"})
          : awkward_number(random);
  Numbers row = {awkward_number(random), awkward_number(random), phase};
  if (has_errors) row.insert(row.end(), {error(random), error(random)});
  return row;
}

Filter random_list(Random& random, const std::string& type) {
  Filter list = {type, {}, {}, {}};
  for (int n = random.between(1, kMostRoots); n > 0; --n) list.first.push_back(list_row(random, random.percent(30)));
  return list;
}

Filter random_paz(Random& random) {
  Filter paz = {"paz", {awkward_number(random)}, entries(random, 2, 2, kMostRoots), entries(random, 2, 2, kMostRoots)};
  if (random.percent(60)) paz.head.push_back(awkward_number(random));
  return paz;
}

bool is_digital(const Filter& filter) { return filter.type == "fir" || filter.type == "iir"; }

}  // namespace

std::string awkward_number(Random& random) {
  switch (random.below(3)) {
    case 0:
      return random.pick({"0",
                          "-0",
                          "-0.0",
                          "1",
                          "-1",
                          "0.1",
                          "1e300",
                          "-1e300",
                          "4.9e-324",
                          "-2.2250738585072011e-308",
                          "1.7976931348623157e308",
                          "1e-400",
                          "-1e-400",
                          "0.30000000000000004",
                          "9007199254740993",
                          "1E+05",
                          "123456789012345678",
                          "00012.50",
                          "1e23",
                          "-5e-5",
                          "0.0001",
                          "100000000000000000000"});
    case 1:
      return seventeen_digits(std::ldexp(random.between(-1000000000, 1000000000) / 3.0, random.between(-90, 60)));
    default:
      return std::to_string(random.between(-99999, 99999) / 100.0);
  }
}

Filter random_filter(Random& random, const std::string& type) {
  if (type == "paz") return random_paz(random);
  if (type.starts_with("fap")) return random_list(random, type);
  if (type == "fir") return random_fir(random);
  return {"iir", {positive_number(random)}, entries(random, 1, 1, kMostTaps), entries(random, 1, 1, kMostTaps)};
}

Filter random_filter(Random& random) {
  return random_filter(random, random.pick({"paz", "iir", "fir", "fir", "fir", "fap", "fap2"}));
}

ResponseFile random_file(Random& random) {
  ResponseFile file;
  file.filters.push_back(random_filter(random));
  if (is_digital(file.filters[0]) && random.percent(3)) file.filters[0].head[0] = random.pick({"0", "-5", "-0.0"});
  if (random.percent(3)) file.filters[0].type = random.pick({"pazzle", "firm", "fapx", "other"});
  if (random.percent(3)) file.filters.push_back(random_filter(random));
  file.readable = !random.percent(2);
  return file;
}

}  // namespace triglub_reference::edition2
