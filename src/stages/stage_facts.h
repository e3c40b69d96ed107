// What the tables and the response file say of a stage of an epoch.
#ifndef TRIGLUB_SRC_STAGES_STAGE_FACTS_H
#define TRIGLUB_SRC_STAGES_STAGE_FACTS_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/columns.h"
#include "platform/database.h"
#include "stages/response_files.h"

namespace triglub {

struct StageFacts {
  const ResponseGroup* filter = nullptr;  // null: the stage is no more than its gain
  double gain = 0;
  double frequency = 0;  // hertz, of the gain
  // Of a digital stage; the rate is what enters it, in samples per second.
  bool is_digital = false;
  double input_rate = 0;
  std::int64_t factor = 1;
  double delay = 0;       // seconds
  double correction = 0;  // seconds
};

// Reads them row by row. Does not change.
class StageTable {
 public:
  // `files` must outlive it, and have read what the rows name.
  StageTable(Dbptr stage, Dbptr calibration, const ResponseFiles& files);

  // The facts of a row of stage under a row of calibration (NO_BASE_ROW for none). Nothing, and why in *fault, where
  // the stage cannot be written.
  std::optional<StageFacts> facts(std::uint32_t stage, std::uint32_t calibration, std::string* fault) const;

  // Where the row has none: empty.
  std::string_view input_units(std::uint32_t stage) const;
  std::string_view output_units(std::uint32_t stage) const;
  std::string_view calibration_units(std::uint32_t calibration) const;
  std::int64_t number(std::uint32_t stage) const { return numbers_[stage]; }
  std::string place(std::uint32_t stage) const { return stage_.place(stage); }

 private:
  // A column of numbers, null where the field is.
  struct Reals {
    std::span<const double> values;
    double null = 0;
    std::optional<double> at(std::uint32_t row) const {
      return row == NO_BASE_ROW || values[row] == null ? std::nullopt : std::optional(values[row]);
    }
  };
  static Reals reals(const TableColumns& table, const char* field);
  std::string find_gain(std::uint32_t stage, std::uint32_t calibration, StageFacts* facts) const;
  std::string find_filter(std::uint32_t stage, StageFacts* facts) const;
  std::string find_rate(std::uint32_t stage, StageFacts* facts) const;

  TableColumns stage_;
  TableColumns calibration_;
  const ResponseFiles& files_;
  TextColumn input_units_;
  TextColumn output_units_;
  TextColumn calibration_units_;
  std::span<const std::int64_t> numbers_;
  std::span<const std::int64_t> factors_;
  std::int64_t null_factor_;
  Reals nominal_gains_;
  Reals gain_calibrations_;
  Reals rates_;
  Reals corrections_;
  Reals frequencies_;
  Reals periods_;
};

}  // namespace triglub

#endif
