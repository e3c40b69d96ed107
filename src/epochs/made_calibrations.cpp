// The nominal calibration of an instrument is stated without a conversion: the one of the sensor is multiplied in, with
// as many digits as both hold.
#include "epochs/made_calibrations.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
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

bool has_all(const TableColumns& table, std::initializer_list<const char*> fields) {
  return std::all_of(fields.begin(), fields.end(), [&](const char* field) { return table.has(field); });
}

// A schema of one's own may lack what others have.
bool can_be_made(const StationTables& tables) {
  return has_all(tables.instrument.columns(), {"ncalib", "ncalper", "samprate", "rsptype"}) &&
         has_all(tables.sensor.columns(), {"calratio", "calper"});
}

class NominalCalibrations {
 public:
  NominalCalibrations(const TableColumns& sensor, const TableColumns& instrument, std::string_view units)
      : ratios_(sensor, "calratio"),
        periods_(sensor, "calper"),
        nominal_(instrument, "ncalib"),
        nominal_periods_(instrument, "ncalper"),
        rates_(instrument, "samprate"),
        types_(instrument.texts("rsptype")),
        units_(units) {}

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
    const double doubt_of_ratio = ratios_.doubt(sensor) * std::fabs(nominal);
    if (nominal == 1) return rounded_within(ratio, doubt_of_ratio);
    return rounded_within(nominal * ratio, least_doubt(nominal_.doubt(instrument) * std::fabs(ratio), doubt_of_ratio));
  }

  std::string_view units_of(std::uint32_t instrument) const {
    if (types_.is_null(instrument)) return units_;
    switch (to_lower(types_.text(instrument).front())) {
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
  TextColumn types_;
  std::string_view units_;
};

// The rows to be added, field by field.
class CalibrationRows {
 public:
  explicit CalibrationRows(const StationTables& tables)
      : columns_(tables.calibration.columns()),
        stations_(tables.sitechan.columns().texts("sta")),
        channels_(tables.sitechan.columns().texts("chan")) {
    rows_.made_of = tables.instrument.handle();
  }

  void add(const Epoch& epoch, std::uint32_t instrument, const Calibration& made) {
    rows_.texts["sta"].push_back(stations_.text(epoch.sitechan));
    rows_.texts["chan"].push_back(channels_.text(epoch.sitechan));
    rows_.texts["units"].push_back(made.units);
    add("time", seconds_of(epoch.span.begin, columns_.null_real("time")));
    add("endtime", seconds_of(epoch.span.end, columns_.null_real("endtime")));
    add("calib", made.calib);
    add("calper", made.period.value_or(columns_.null_real("calper")));
    add("samprate", made.rate.value_or(columns_.null_real("samprate")));
    rows_.made_of_rows.push_back(instrument);
    ++rows_.count;
  }

  const AddedRows& rows() const { return rows_; }

 private:
  void add(const char* field, double value) { rows_.reals[field].push_back(value); }

  const TableColumns& columns_;
  TextColumn stations_;
  TextColumn channels_;
  AddedRows rows_;
};

}  // namespace

void complete_calibrations(const Partners& partners, const std::string& units, StationTables* tables,
                           EpochList* epochs) {
  if (!can_be_made(*tables)) return;
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
  if (rows.rows().count > 0)
    tables->calibration = TimeTable("calibration", with_rows(tables->calibration, rows.rows()));
}

}  // namespace triglub
