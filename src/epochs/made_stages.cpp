// A response file is looked at once for each pair of folder and name, and rows are made once for each instrument and
// calibration.
#include "epochs/made_stages.h"

#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "epochs/stored_numbers.h"
#include "platform/record_expression.h"
#include "platform/response.h"

namespace triglub {

namespace {

constexpr std::string_view kBetweenAnalogue = "V";
constexpr std::string_view kDigital = "count";
constexpr double kNanometers = 1e9;  // calib is in 1e-9 units of ground motion

struct Group {
  std::string type;
  std::optional<double> input_rate;  // of a digital filter, samples per second
};
using Groups = std::vector<Group>;

Group group_of(const ResponseGroup& group) {
  Group made{group.type_name, std::nullopt};
  if (group.type == RESPONSE_FIR || group.type == RESPONSE_IIR) {
    made.input_rate = static_cast<const Fir*>(group.filter)->samprate;
  }
  return made;
}

// Of a file that cannot be read one of no type.
Groups read_groups(const std::string& path) {
  Response* response = nullptr;
  std::string fault;
  if (read_response(path.c_str(), &response, &fault) != 0) return {Group{}};
  const std::unique_ptr<Response, decltype(&free_response)> owner(response, &free_response);
  Groups groups;
  for (const ResponseGroup& group : response->groups) groups.push_back(group_of(group));
  return groups;
}

const char* folder_of(Dbptr table) {
  const char* folder = nullptr;
  return dbquery(table, dbTABLE_DIRNAME, &folder) >= 0 && folder != nullptr ? folder : ".";
}

// The files of instruments, as rows of stage name them.
class InstrumentFiles {
 public:
  InstrumentFiles(Dbptr instrument, Dbptr stage)
      : folders_(TableColumns(instrument).texts("dir")), names_(TableColumns(instrument).texts("dfile")) {
    base_ = folder_of(instrument);
    if (base_ == folder_of(stage)) return;
    std::error_code error;  // a folder that cannot be told stays as it is
    elsewhere_ = std::filesystem::absolute(base_, error).string();
  }

  bool is_named(std::uint32_t instrument) const { return !names_.is_null(instrument); }
  std::string_view name(std::uint32_t instrument) const { return names_.text(instrument); }
  // Empty for none.
  std::string folder(std::uint32_t instrument) const {
    std::string own(folders_.is_null(instrument) ? "" : folders_.text(instrument));
    if (elsewhere_.empty() || own.starts_with('/')) return own;
    return own.empty() ? elsewhere_ : elsewhere_ + "/" + own;
  }

  const Groups& groups(std::uint32_t instrument) {
    const std::uint64_t key = std::uint64_t{folders_.codes()[instrument]} << 32 | names_.codes()[instrument];
    const auto [entry, is_new] = files_.try_emplace(key);
    if (is_new) entry->second = read_groups(path_of(instrument));
    return entry->second;
  }

 private:
  std::string path_of(std::uint32_t instrument) const {
    const std::string folder = this->folder(instrument);
    const std::string name(names_.text(instrument));
    if (folder.empty()) return base_ + "/" + name;
    return (folder.starts_with('/') ? folder : base_ + "/" + folder) + "/" + name;
  }

  TextColumn folders_;
  TextColumn names_;
  std::string base_;
  std::string elsewhere_;  // where stages look elsewhere: the folder in full
  std::unordered_map<std::uint64_t, Groups> files_;
};

// What tells the chains of one instrument apart.
struct ChainKey {
  std::uint32_t instrument = 0;
  std::uint32_t units = TextColumn::kNull;  // code
  double gain = 0;                          // 0: not known
  double rate = 0;                          // of the channel; 0: not known

  friend bool operator<(const ChainKey& a, const ChainKey& b) {
    return std::tie(a.instrument, a.units, a.gain, a.rate) < std::tie(b.instrument, b.units, b.gain, b.rate);
  }
  friend bool operator==(const ChainKey&, const ChainKey&) = default;
};

// Keys of epochs, by their rows of calibration and instrument.
class ChainKeys {
 public:
  explicit ChainKeys(const StationTables& tables)
      : units_(tables.calibration.columns().texts("units")),
        calibs_(tables.calibration.columns(), "calib"),
        rates_(tables.calibration.columns(), "samprate"),
        instrument_rates_(tables.instrument.columns(), "samprate") {}

  ChainKey key_of(std::uint32_t calibration, std::uint32_t instrument) const {
    ChainKey key;
    key.instrument = instrument;
    const auto own_rate = rates_.at(calibration);
    key.rate = (own_rate ? own_rate : instrument_rates_.at(instrument)).value_or(0);
    if (calibration == kAbsent) return key;
    key.units = units_.codes()[calibration];
    key.gain = gain_of(calibration);
    return key;
  }
  std::string_view units(const ChainKey& key) const {
    return key.units == TextColumn::kNull ? std::string_view() : units_.text_of(key.units);
  }

 private:
  // Counts per unit of ground motion, with as many digits as the calibration has.
  double gain_of(std::uint32_t calibration) const {
    const std::optional<double> calib = calibs_.at(calibration);
    if (!calib || *calib == 0) return 0;
    const double gain =
        rounded_within(kNanometers / *calib, kNanometers * calibs_.doubt(calibration) / (*calib * *calib));
    return std::isfinite(gain) ? gain : 0;
  }

  TextColumn units_;
  StoredNumbers calibs_;
  StoredNumbers rates_;
  StoredNumbers instrument_rates_;
};

// By how much the rate goes down in a digital group: to that of the next one, or of the channel (0: not known).
std::optional<std::int64_t> factor_of(const Groups& groups, std::size_t group, double channel_rate) {
  const double input = groups[group].input_rate.value_or(0);
  double output = channel_rate;
  for (std::size_t next = groups.size(); --next > group;) output = groups[next].input_rate.value_or(output);
  const double factor = input / output;
  constexpr double kMostFactor = 1e9;
  if (!(input > 0) || !(output > 0) || factor > kMostFactor) return std::nullopt;
  return std::llround(factor);
}

// The rows to be added.
class StageRows {
 public:
  StageRows(const TableColumns& stage, Dbptr instrument)
      : null_gain_(stage.null_real("gnom")), null_factor_(stage.null_integer("decifac")) {
    rows_.made_of = instrument;
  }

  void add(const Groups& groups, const ChainKey& key, std::string_view units, std::string_view folder,
           std::string_view file) {
    for (std::size_t group = 0; group < groups.size(); ++group) {
      const bool is_last = group + 1 == groups.size();
      const std::string_view output = is_last || groups[group].input_rate ? kDigital : kBetweenAnalogue;
      add_units(units, output);
      add_numbers(groups, group, key);
      rows_.texts["gtype"].push_back(groups[group].type);
      rows_.texts["dir"].push_back(folder);
      rows_.texts["dfile"].push_back(file);
      rows_.made_of_rows.push_back(key.instrument);
      stages_.push_back({static_cast<std::uint32_t>(group), group == 0});
      units = output;
    }
    rows_.count = static_cast<std::uint32_t>(stages_.size());
  }

  const AddedRows& rows() const { return rows_; }
  std::vector<InstrumentStage> take_stages() { return std::move(stages_); }

 private:
  void add_units(std::string_view input, std::string_view output) {
    rows_.texts["iunits"].push_back(input);
    rows_.texts["ounits"].push_back(output);
  }

  void add_numbers(const Groups& groups, std::size_t group, const ChainKey& key) {
    const double first_gain = key.gain == 0 ? null_gain_ : key.gain;
    const auto factor = groups[group].input_rate ? factor_of(groups, group, key.rate) : std::nullopt;
    rows_.integers["stageid"].push_back(static_cast<std::int64_t>(group) + 1);
    rows_.integers["decifac"].push_back(factor.value_or(null_factor_));
    rows_.reals["gnom"].push_back(group == 0 ? first_gain : 1);
  }

  double null_gain_;
  std::int64_t null_factor_;
  AddedRows rows_;
  std::vector<InstrumentStage> stages_;
};

// Chains that were made: the first row, and how many.
using Chain = std::pair<std::uint32_t, std::uint32_t>;

class ChainMaker {
 public:
  explicit ChainMaker(const StationTables& tables)
      : first_row_(tables.stage.row_count()),
        keys_(tables),
        files_(tables.instrument.handle(), tables.stage.handle()),
        rows_(tables.stage.columns(), tables.instrument.handle()) {}

  bool has_file(std::uint32_t instrument) const { return files_.is_named(instrument); }

  const Chain& chain_of(std::uint32_t calibration, std::uint32_t instrument) {
    const ChainKey key = keys_.key_of(calibration, instrument);
    if (latest_ != nullptr && latest_->first == key) return latest_->second;
    const auto [entry, is_new] = chains_.try_emplace(key);
    if (is_new) entry->second = make(key);
    latest_ = &*entry;
    return entry->second;
  }

  StageRows& rows() { return rows_; }

 private:
  Chain make(const ChainKey& key) {
    const Groups& groups = files_.groups(key.instrument);
    const Chain chain = {first_row_ + rows_.rows().count, static_cast<std::uint32_t>(groups.size())};
    const std::string& folder = folders_.try_emplace(key.instrument, files_.folder(key.instrument)).first->second;
    rows_.add(groups, key, keys_.units(key), folder, files_.name(key.instrument));
    return chain;
  }

  std::uint32_t first_row_;
  ChainKeys keys_;
  InstrumentFiles files_;
  StageRows rows_;
  std::map<ChainKey, Chain> chains_;
  const std::pair<const ChainKey, Chain>* latest_ = nullptr;
  std::map<std::uint32_t, std::string> folders_;  // by instrument; rows refer to them
};

void append(const Chain& chain, Epoch* epoch, std::vector<std::uint32_t>* stages) {
  epoch->first_stage = static_cast<std::uint32_t>(stages->size());
  epoch->stage_count = chain.second;
  for (std::uint32_t i = 0; i < chain.second; ++i) stages->push_back(chain.first + i);
}

}  // namespace

std::vector<InstrumentStage> complete_stages(const Partners& partners, StationTables* tables, EpochList* epochs) {
  const TableColumns& instruments = tables->instrument.columns();
  if (!instruments.has("dir") || !instruments.has("dfile") || !instruments.has("samprate")) return {};
  ChainMaker maker(*tables);
  for (Epoch& epoch : epochs->epochs) {
    if (epoch.stage_count > 0) continue;
    const std::uint32_t instrument = partners.instrument_of(epoch.sensor);
    if (instrument == kAbsent || !maker.has_file(instrument)) continue;
    append(maker.chain_of(epoch.calibration, instrument), &epoch, &epochs->stages);
  }
  if (maker.rows().rows().count > 0) {
    tables->stage = TimeTable("stage", with_rows(tables->stage, maker.rows().rows()));
  }
  return maker.rows().take_stages();
}

}  // namespace triglub
