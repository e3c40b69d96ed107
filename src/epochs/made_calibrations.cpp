// The nominal calibration of an instrument is stated without a conversion: the one of the sensor is multiplied in, with
// as many digits as both hold.
#include "epochs/made_calibrations.h"

#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

#include "base/characters.h"
#include "epochs/stored_numbers.h"
#include "platform/record_expression.h"

namespace triglub {

namespace {

struct Calibration {
  double calib = 0;
  std::optional<double> period;
  std::optional<double> rate;
  std::string_view units;
};

class NominalCalibrations {
 public:
  NominalCalibrations(const TableColumns& sensor, const TableColumns& instrument, std::string_view units)
      : ratios_(sensor, "calratio"),
        periods_(sensor, "calper"),
        nominal_(instrument, "ncalib"),
        nominal_periods_(instrument, "ncalper"),
        rates_(instrument, "samprate"),
        units_(units) {
    if (instrument.has("rsptype")) types_ = instrument.texts("rsptype");
  }

  // Nothing where nothing is known. An instrument's null calibration is 1, which may well be meant: a period tells.
  std::optional<Calibration> of(std::uint32_t sensor, std::uint32_t instrument) const {
    const std::optional<double> nominal_period = nominal_periods_.at(instrument);
    if (!nominal_.at(instrument) && !nominal_period) return std::nullopt;
    Calibration made;
    made.calib = calib_of(sensor, instrument);
    if (made.calib == 0 || !std::isfinite(made.calib)) return std::nullopt;
    made.period = periods_.at(sensor);
    if (!made.period || !(*made.period > 0)) made.period = nominal_period;
    made.rate = rates_.at(instrument);
    made.units = units_of(instrument);
    return made;
  }

 private:
  double calib_of(std::uint32_t sensor, std::uint32_t instrument) const {
    const double nominal = nominal_.stored(instrument);
    const double ratio = ratios_.at(sensor).value_or(1);
    if (ratio == 1) return nominal;
    const double of_nominal = nominal_.doubt(instrument) * std::fabs(ratio);
    return rounded_within(nominal * ratio, least_doubt(of_nominal, ratios_.doubt(sensor) * std::fabs(nominal)));
  }

  std::string_view units_of(std::uint32_t instrument) const {
    if (!types_ || types_->is_null(instrument)) return units_;
    switch (to_lower(types_->text(instrument).front())) {
      case 'd':
        return "m";
      case 'v':
        return "m/s";
      case 'a':
        return "m/s**2";
      default:
        return units_;
    }
  }

  StoredNumbers ratios_;
  StoredNumbers periods_;
  StoredNumbers nominal_;
  StoredNumbers nominal_periods_;
  StoredNumbers rates_;
  std::optional<TextColumn> types_;
  std::string_view units_;
};

// The rows to be added, field by field.
class CalibrationRows {
 public:
  explicit CalibrationRows(const StationTables& tables)
      : null_time_(tables.calibration.columns().null_real("time")),
        null_end_time_(tables.calibration.columns().null_real("endtime")),
        null_period_(tables.calibration.columns().null_real("calper")),
        null_rate_(tables.calibration.columns().null_real("samprate")),
        station_texts_(tables.sitechan.columns().texts("sta")),
        channel_texts_(tables.sitechan.columns().texts("chan")) {
    rows_.made_of = tables.instrument.handle();
  }
  CalibrationRows(const CalibrationRows&) = delete;
  CalibrationRows& operator=(const CalibrationRows&) = delete;

  void add(const Epoch& epoch, std::uint32_t instrument, const Calibration& made) {
    stations_.push_back(station_texts_.text(epoch.sitechan));
    channels_.push_back(channel_texts_.text(epoch.sitechan));
    units_.push_back(made.units);
    times_.push_back(seconds_of(epoch.span.begin, null_time_));
    end_times_.push_back(seconds_of(epoch.span.end, null_end_time_));
    calibs_.push_back(made.calib);
    periods_.push_back(made.period.value_or(null_period_));
    rates_.push_back(made.rate.value_or(null_rate_));
    rows_.made_of_rows.push_back(instrument);
    ++rows_.count;
  }

  const AddedRows& rows() const { return rows_; }

 private:
  using Texts = std::vector<std::string_view>;
  using Reals = std::vector<double>;

  double null_time_;
  double null_end_time_;
  double null_period_;
  double null_rate_;
  TextColumn station_texts_;
  TextColumn channel_texts_;
  AddedRows rows_;
  // Its columns: there may be as many rows as epochs.
  Texts& stations_ = rows_.texts["sta"];
  Texts& channels_ = rows_.texts["chan"];
  Texts& units_ = rows_.texts["units"];
  Reals& times_ = rows_.reals["time"];
  Reals& end_times_ = rows_.reals["endtime"];
  Reals& calibs_ = rows_.reals["calib"];
  Reals& periods_ = rows_.reals["calper"];
  Reals& rates_ = rows_.reals["samprate"];
};

}  // namespace

void complete_calibrations(const Partners& partners, const std::string& units, StationTables* tables,
                           EpochList* epochs) {
  if (!tables->instrument.columns().has("ncalib")) return;
  const NominalCalibrations nominal(tables->sensor.columns(), tables->instrument.columns(), units);
  const std::uint32_t before = tables->calibration.row_count();
  CalibrationRows rows(*tables);
  for (Epoch& epoch : epochs->epochs) {
    if (epoch.calibration != kAbsent) continue;
    const std::uint32_t instrument = partners.instrument_of(epoch.sensor);
    const auto made = instrument == kAbsent ? std::nullopt : nominal.of(epoch.sensor, instrument);
    if (!made) continue;
    epoch.calibration = before + rows.rows().count;
    rows.add(epoch, instrument, *made);
  }
  if (rows.rows().count == 0) return;
  tables->calibration = TimeTable("calibration", with_rows(tables->calibration, rows.rows()));
}

}  // namespace triglub
