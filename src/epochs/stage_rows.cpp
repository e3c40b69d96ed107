// The first stage has the whole gain, for that is all that a calibration tells; the others are 1.
#include "epochs/stage_rows.h"

#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

namespace triglub {

namespace {

constexpr std::string_view kBetweenAnalogue = "V";
constexpr std::string_view kDigital = "count";

// By how much the rate goes down in a digital group: to that of the next one, or of the channel (0: not known).
std::optional<std::int64_t> factor_of(const std::vector<InstrumentGroup>& groups, std::size_t group,
                                      double channel_rate) {
  const double input = groups[group].input_rate.value_or(0);
  double output = channel_rate;
  for (std::size_t next = groups.size(); --next > group;) output = groups[next].input_rate.value_or(output);
  const double factor = input / output;
  constexpr double kMostFactor = 1e9;
  if (!(factor > 0) || factor > kMostFactor) return std::nullopt;
  return std::llround(factor);
}

}  // namespace

StageRows::StageRows(const TableColumns& stage, Dbptr instrument)
    : null_gain_(stage.null_real("gnom")), null_factor_(stage.null_integer("decifac")) {
  rows_.made_of = instrument;
}

void StageRows::add(const InstrumentFile& of, const ChainKey& key, std::string_view units, std::string_view folder,
                    std::string_view file) {
  const std::vector<InstrumentGroup>& groups = of.groups;
  for (std::size_t group = 0; group < groups.size(); ++group) {
    const bool is_last = group + 1 == groups.size();
    const std::string_view output = is_last || groups[group].input_rate ? kDigital : kBetweenAnalogue;
    add_units(units, output);
    add_numbers(groups, group, key);
    rows_.texts["gtype"].push_back(groups[group].type);
    rows_.texts["dir"].push_back(folder);
    rows_.texts["dfile"].push_back(file);
    rows_.made_of_rows.push_back(key.instrument);
    stages_.push_back({of.file, static_cast<std::uint32_t>(group), group == 0});
    units = output;
  }
  rows_.count = static_cast<std::uint32_t>(stages_.size());
}

void StageRows::add_units(std::string_view input, std::string_view output) {
  rows_.texts["iunits"].push_back(input);
  rows_.texts["ounits"].push_back(output);
}

void StageRows::add_numbers(const std::vector<InstrumentGroup>& groups, std::size_t group, const ChainKey& key) {
  const double first_gain = key.gain == 0 ? null_gain_ : key.gain;
  const auto factor = groups[group].input_rate ? factor_of(groups, group, key.rate) : std::nullopt;
  rows_.integers["stageid"].push_back(static_cast<std::int64_t>(group) + 1);
  rows_.integers["decifac"].push_back(factor.value_or(null_factor_));
  rows_.reals["gnom"].push_back(group == 0 ? first_gain : 1);
}

std::vector<InstrumentStage> StageRows::take_stages() { return std::move(stages_); }

}  // namespace triglub
