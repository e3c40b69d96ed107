// Rows are made once for each instrument and calibration, and shared by their epochs.
#include "epochs/made_stages.h"

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "epochs/chain_keys.h"
#include "epochs/instrument_files.h"
#include "epochs/row_budget.h"
#include "epochs/stage_rows.h"

namespace triglub {

namespace {

// Chains that were made: the first row, and how many.
using Chain = std::pair<std::uint32_t, std::uint32_t>;

class ChainMaker {
 public:
  ChainMaker(const StationTables& tables, ResponseReach reach)
      : instruments_(tables.instrument.handle()),
        first_row_(tables.stage.row_count()),
        keys_(tables),
        files_(tables.instrument.handle(), tables.stage.handle(), reach),
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

  // So many stages of an instrument are to be made, or given to an epoch.
  void take(std::size_t stages, std::uint32_t instrument) {
    budget_.take(stages, [&] { return instruments_.place(instrument); });
  }

 private:
  Chain make(const ChainKey& key) {
    const InstrumentFile& file = files_.file(key.instrument);
    take(file.groups.size(), key.instrument);
    const Chain chain = {first_row_ + rows_.rows().count, static_cast<std::uint32_t>(file.groups.size())};
    const std::string& folder = folders_.try_emplace(key.instrument, files_.folder(key.instrument)).first->second;
    rows_.add(file, key, keys_.units(key), folder, files_.name(key.instrument));
    return chain;
  }

  RowBudget budget_;
  TableColumns instruments_;
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

std::vector<InstrumentStage> complete_stages(const Partners& partners, ResponseReach reach, StationTables* tables,
                                             EpochList* epochs) {
  const TableColumns& instruments = tables->instrument.columns();
  if (!instruments.has("dir") || !instruments.has("dfile")) return {};
  ChainMaker maker(*tables, reach);
  for (Epoch& epoch : epochs->epochs) {
    if (epoch.stage_count > 0) continue;
    const std::uint32_t instrument = partners.instrument_of(epoch.sensor);
    if (instrument == kAbsent || !maker.has_file(instrument)) continue;
    const Chain& chain = maker.chain_of(epoch.calibration, instrument);
    maker.take(chain.second, instrument);
    append(chain, &epoch, &epochs->stages);
  }
  if (maker.rows().rows().count > 0) {
    tables->stage = TimeTable("stage", with_rows(tables->stage, maker.rows().rows()));
  }
  return maker.rows().take_stages();
}

}  // namespace triglub
