#include "reference/edition2/core_rows.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <numbers>
#include <set>

#include "reference/edition2/digits.h"
#include "reference/edition2/records.h"

namespace triglub_reference::edition2 {

namespace {

constexpr const char* kGroup = "(group)";

std::set<std::string> stations_of(const Tables& tables) {
  std::set<std::string> stations;
  for (const Table table : {SITE, SITECHAN}) {
    for (const Row& row : rows_of(tables, table)) {
      if (const auto sta = text_in(&row, table, "sta")) stations.insert(*sta);
    }
  }
  return stations;
}

// A text of a table that documents do not have.
std::string text_at(const Row& row, const std::string& field) {
  const auto found = row.find(field);
  const std::string text = found == row.end() ? "" : trimmed(found->second);
  return text == "-" ? "" : text;
}

std::set<std::string> networks_of(const Tables& tables, const std::string& sta) {
  std::set<std::string> nets;
  const auto affiliation = tables.rows.find("affiliation");
  if (affiliation == tables.rows.end()) return nets;
  for (const Row& row : affiliation->second) {
    if (text_at(row, "sta") == sta && !text_at(row, "net").empty()) nets.insert(text_at(row, "net"));
  }
  return nets;
}

double half_place_of(const char* field, double number) { return half_place(find_field(field).value(), number); }

std::string digits_within(double number, double doubt) { return shortest(fewest_digits(number, doubt)); }

// Of ncalib and calratio.
std::string product(double nominal, double ratio) {
  const double of_nominal = half_place_of("instrument.ncalib", nominal);
  const double of_ratio = half_place_of("sensor.calratio", ratio);
  if (ratio == 1) return shortest(nominal);
  if (nominal == 1) return digits_within(ratio, of_ratio);
  return digits_within(nominal * ratio, std::min(std::abs(ratio) * of_nominal, std::abs(nominal) * of_ratio));
}

std::string units_of(const Row* instrument, const std::string& otherwise) {
  const std::string type = text_in(instrument, INSTRUMENT, "rsptype").value_or(" ");
  if (type[0] == 'D' || type[0] == 'd') return "m";
  if (type[0] == 'V' || type[0] == 'v') return "m/s";
  return type[0] == 'A' || type[0] == 'a' ? "m/s**2" : otherwise;
}

bool is_digital(const Filter& filter) { return filter.type == "fir" || filter.type == "iir"; }

double rate_of(const Filter& filter) { return std::strtod(filter.head.at(0).c_str(), nullptr); }

// To the rate of the next digital group, or of the channel.
std::optional<std::string> factor_of(const std::vector<Filter>& groups, std::size_t group,
                                     std::optional<double> channel_rate) {
  std::optional<double> output = channel_rate;
  for (std::size_t i = groups.size() - 1; i > group; --i) {
    if (is_digital(groups[i])) output = rate_of(groups[i]);
  }
  const double input = rate_of(groups[group]);
  if (!(input > 0) || !output || !(*output > 0) || input / *output > 1e9) return std::nullopt;
  return std::to_string(std::llround(input / *output));
}

double number(const Numbers& line, std::size_t i) { return std::strtod(line.at(i).c_str(), nullptr); }

double amplitude_of_paz(const Filter& filter, double frequency) {
  const std::complex<double> s(0, 2 * std::numbers::pi * frequency);
  const auto distance = [&](const Numbers& root) {
    return std::abs(s - std::complex(number(root, 0), number(root, 1)));
  };
  double amplitude = 1;
  for (std::size_t i = 0; i < std::max(filter.first.size(), filter.second.size()); ++i) {
    if (i < filter.second.size()) amplitude *= distance(filter.second[i]);
    if (i < filter.first.size()) amplitude /= distance(filter.first[i]);
  }
  return amplitude;
}

// Of the first stretch of the table that has the frequency.
double amplitude_of_list(const Filter& filter, double frequency) {
  for (std::size_t i = 0; i < filter.first.size(); ++i) {
    const double f = number(filter.first[i], 0);
    const double amplitude = number(filter.first[i], 1);
    if (f == frequency) return amplitude;
    if (i == 0) continue;
    const double before = number(filter.first[i - 1], 0);
    if ((before < frequency) == (f < frequency)) continue;
    const double from = number(filter.first[i - 1], 1);
    return from + (frequency - before) / (f - before) * (amplitude - from);
  }
  return 0;
}

}  // namespace

Tables with_memberships(Tables tables) {
  std::vector<Row> made;
  for (const std::string& sta : stations_of(tables)) {
    if (!rows_with(tables, SNETSTA, {{"sta", sta}}).empty()) continue;
    for (const std::string& net : networks_of(tables, sta))
      made.push_back({{"snet", net}, {"fsta", sta}, {"sta", sta}});
  }
  std::vector<Row>& rows = tables.rows["snetsta"];
  rows.insert(rows.end(), made.begin(), made.end());
  return tables;
}

std::optional<Row> nominal_calibration(const Row* sitechan, const Row* sensor, const Row* instrument, const Span& span,
                                       const std::string& units) {
  if (instrument == nullptr) return std::nullopt;
  const auto nominal = number_in(instrument, INSTRUMENT, "ncalib");
  auto period = number_in(instrument, INSTRUMENT, "ncalper");
  if (!nominal && !period) return std::nullopt;
  const std::string calib = product(nominal.value_or(1), number_in(sensor, SENSOR, "calratio").value_or(1));
  if (calib == "0") return std::nullopt;
  const auto own_period = number_in(sensor, SENSOR, "calper");
  if (own_period && *own_period > 0) period = own_period;
  Row row = {{"sta", *text_in(sitechan, SITECHAN, "sta")},
             {"chan", *text_in(sitechan, SITECHAN, "chan")},
             {"units", units_of(instrument, units)},
             {"calib", calib}};
  if (span.begin > -kForever) row["time"] = shortest(span.begin / 1000.0);
  if (span.end < kForever) row["endtime"] = shortest(span.end / 1000.0);
  if (period) row["calper"] = shortest(*period);
  if (const auto rate = number_in(instrument, INSTRUMENT, "samprate")) row["samprate"] = shortest(*rate);
  return row;
}

std::vector<Row> instrument_stages(const Row* instrument, const Row* calibration, const ResponseFiles& files) {
  const auto name = text_in(instrument, INSTRUMENT, "dfile");
  if (!name) return {};
  const auto folder = text_in(instrument, INSTRUMENT, "dir");
  const auto file = files.find(folder ? *folder + "/" + *name : *name);
  const bool can_be_read = file != files.end() && file->second.readable;
  const std::vector<Filter> groups = can_be_read ? file->second.filters : std::vector<Filter>(1);
  auto rate = number_in(calibration, CALIBRATION, "samprate");
  if (!rate) rate = number_in(instrument, INSTRUMENT, "samprate");
  const auto calib = number_in(calibration, CALIBRATION, "calib");
  std::vector<Row> rows;
  std::optional<std::string> units = text_in(calibration, CALIBRATION, "units");
  for (std::size_t i = 0; i < groups.size(); ++i) {
    Row row = {
        {"stageid", std::to_string(i + 1)}, {"gtype", groups[i].type}, {"dfile", *name}, {kGroup, std::to_string(i)}};
    if (folder) row["dir"] = *folder;
    if (units) row["iunits"] = *units;
    units = is_digital(groups[i]) || i + 1 == groups.size() ? "count" : "V";
    row["ounits"] = *units;
    if (i > 0) row["gnom"] = "1";
    if (i == 0 && calib) {
      row["gnom"] = digits_within(1e9 / *calib, 1e9 * half_place_of("calibration.calib", *calib) / (*calib * *calib));
    }
    if (is_digital(groups[i])) row["decifac"] = factor_of(groups, i, rate).value_or("-1");
    rows.push_back(row);
  }
  return rows;
}

std::optional<std::size_t> group_of(const Row* stage) {
  if (stage == nullptr || !stage->contains(kGroup)) return std::nullopt;
  return std::stoul(stage->at(kGroup));
}

std::optional<double> normalization_of(const Filter& filter, double frequency) {
  const double factor =
      filter.type == "paz" ? 1 / amplitude_of_paz(filter, frequency) : amplitude_of_list(filter, frequency);
  return factor == 0 || !std::isfinite(factor) ? std::nullopt : std::optional(factor);
}

}  // namespace triglub_reference::edition2
