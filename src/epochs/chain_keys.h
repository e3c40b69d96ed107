// What the chain of an instrument's file depends on, beside the file.
#ifndef TRIGLUB_SRC_EPOCHS_CHAIN_KEYS_H
#define TRIGLUB_SRC_EPOCHS_CHAIN_KEYS_H

#include <cstdint>
#include <string_view>
#include <tuple>

#include "epochs/station_tables.h"
#include "epochs/stored_numbers.h"
#include "platform/columns.h"

namespace triglub {

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

// Keys of epochs, by their rows of calibration and instrument. Does not change.
class ChainKeys {
 public:
  // Of the tables as they are now: they must stay.
  explicit ChainKeys(const StationTables& tables);

  // kAbsent for no row of calibration.
  ChainKey key_of(std::uint32_t calibration, std::uint32_t instrument) const;
  // Empty for none.
  std::string_view units(const ChainKey& key) const;

 private:
  double gain_of(std::uint32_t calibration) const;

  TextColumn units_;
  StoredNumbers calibs_;
  StoredNumbers rates_;
  StoredNumbers instrument_rates_;
};

}  // namespace triglub

#endif
