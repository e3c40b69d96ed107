// What the tables and the response file say of a stage of an epoch.
#ifndef TRIGLUB_SRC_STAGES_STAGE_FACTS_H
#define TRIGLUB_SRC_STAGES_STAGE_FACTS_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "epochs/response_tables.h"
#include "epochs/stored_numbers.h"
#include "platform/columns.h"
#include "stages/normalization.h"
#include "stages/response_files.h"

namespace triglub {

// Numbers as they are worked out: StageTable::round() gives those that are written.
struct StageFacts {
  const StageFilter* filter = nullptr;  // null: the stage is no more than its gain
  double gain = 0;
  double frequency = 0;                        // hertz, of the gain
  std::optional<Normalization> normalization;  // where it is not that of the file
  // Of a digital stage; rates in samples per second.
  bool is_digital = false;
  double input_rate = 0;
  bool is_rate_stored = false;  // in the table, not in the file alone
  double output_rate = 0;
  std::int64_t factor = 1;
  double delay = 0;            // seconds
  bool is_delay_known = true;  // false: neither stated nor to be seen from the filter; the delay is 0
  bool is_correction_stored = false;
  double correction = 0;  // seconds
};

// Why a stage cannot be written.
struct StageFault {
  const char* what = "";
  std::string file;  // the fault of a response file, with its path and line
};

// Reads them row by row. Does not change.
class StageTable {
 public:
  // The tables must stay; `files` must outlive it, and have read what the rows name.
  StageTable(const ResponseTables& tables, const ResponseFiles& files);

  // The facts of a row of stage under a row of calibration (NO_BASE_ROW for none). Nothing, and why in *fault, where
  // the stage cannot be written.
  std::optional<StageFacts> facts(std::uint32_t stage, std::uint32_t calibration, StageFault* fault) const;

  // Rounds what was worked out of stored numbers to as many digits as those hold: the gain with its frequency, and the
  // rates and times. Of the rows that the facts are of.
  void round_gain(std::uint32_t stage, std::uint32_t calibration, StageFacts* facts) const;
  void round_rates(std::uint32_t stage, StageFacts* facts) const;

  // Where the row has none: empty.
  std::string_view input_units(std::uint32_t stage) const;
  std::string_view output_units(std::uint32_t stage) const;
  std::string_view calibration_units(std::uint32_t calibration) const;
  // Whether a unit of the row has characters that a document cannot have.
  bool has_forbidden_units(std::uint32_t stage) const {
    return forbidden_inputs_[input_units_.codes()[stage]] || forbidden_outputs_[output_units_.codes()[stage]];
  }
  // Samples per second of the channel; nothing where neither row (NO_BASE_ROW for none) has a rate.
  std::optional<double> channel_rate(std::uint32_t calibration, std::uint32_t instrument) const;
  std::int64_t number(std::uint32_t stage) const { return numbers_[stage]; }
  std::string place(std::uint32_t stage) const { return stage_.place(stage); }

 private:
  const char* find_gain(std::uint32_t stage, std::uint32_t calibration, StageFacts* facts) const;
  const char* find_filter(std::uint32_t stage, StageFacts* facts, std::string* fault) const;
  const char* find_rates(std::uint32_t stage, StageFacts* facts) const;
  std::optional<double> find_frequency(std::uint32_t stage, std::uint32_t calibration) const;
  double rounded_frequency(std::uint32_t calibration) const;
  const char* find_normalization(std::uint32_t stage, StageFacts* facts) const;
  void find_delay(std::uint32_t stage, StageFacts* facts) const;

  TableColumns stage_;
  TableColumns calibration_;
  const ResponseFiles& files_;
  TextColumn input_units_;
  TextColumn output_units_;
  TextColumn calibration_units_;
  std::vector<bool> forbidden_inputs_;  // by code
  std::vector<bool> forbidden_outputs_;
  std::span<const std::int64_t> numbers_;
  std::span<const std::int64_t> factors_;
  std::int64_t null_factor_;
  StoredNumbers nominal_gains_;
  StoredNumbers gain_calibrations_;
  StoredNumbers rates_;
  StoredNumbers corrections_;
  StoredNumbers frequencies_;
  StoredNumbers periods_;
  StoredNumbers channel_rates_;
  StoredNumbers instrument_rates_;
};

}  // namespace triglub

#endif
