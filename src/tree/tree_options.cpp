// A key that is absent leaves its default.
#include "tree/tree_options.h"

#include <algorithm>

#include "tree/top_level.h"

namespace triglub {

namespace {

constexpr const char* kUnitSpellings = "unit_spellings";
constexpr const char* kFirFilters = "fir_filters";
constexpr const char* kCalibUnits = "calib_units";

bool is_there(Pf* pf, const char* key) { return std::ranges::count(pf_keys(pf, ""), key) > 0; }

// Null, and told, for what is no string.
const char* read_string(Pf* pf, const char* key, const std::string& meant, FaultList* faults) {
  if (!is_there(pf, key)) return nullptr;
  const char* text = pfget_string(pf, key);
  if (text == nullptr || *text == '\0') {
    faults->add(pf_key_line(pf, key), "'" + std::string(key) + "' must be a string, " + meant);
    return nullptr;
  }
  return text;
}

void read_spelling(Pf* pf, const std::string& path, const std::string& unit, TreeOptions* options, FaultList* faults) {
  const char* spelling = pfget_string(pf, path.c_str());
  if (spelling == nullptr || *spelling == '\0') {
    return faults->add(pf_key_line(pf, path.c_str()), "the unit '" + unit + "' has no spelling");
  }
  options->unit_spellings.emplace(unit, spelling);
}

void read_unit_spellings(Pf* pf, TreeOptions* options, FaultList* faults) {
  const char* table = read_string(pf, kUnitSpellings, "the name of a table of units and their spellings", faults);
  if (table == nullptr) return;
  const std::vector<std::string> tables = table_keys(pf);
  if (std::ranges::count(tables, table) == 0) {
    return faults->add(pf_key_line(pf, kUnitSpellings),
                       "the table '" + std::string(table) + "' is not defined" + did_you_mean(table, tables));
  }
  for (const std::string& unit : pf_keys(pf, table)) {
    read_spelling(pf, std::string(table) + "{" + unit + "}", unit, options, faults);
  }
}

void read_fir_filters(Pf* pf, TreeOptions* options, FaultList* faults) {
  static const std::vector<std::string> forms = {"FIR", "Coefficients"};
  const char* form = read_string(pf, kFirFilters, "FIR or Coefficients", faults);
  if (form == nullptr) return;
  if (std::ranges::count(forms, form) == 0) {
    faults->add(pf_key_line(pf, kFirFilters),
                "'fir_filters' is '" + std::string(form) + "': FIR or Coefficients" + did_you_mean(form, forms));
  }
  options->writes_fir_as_coefficients = forms[1] == form;
}

}  // namespace

const std::vector<std::string>& option_keys() {
  static const std::vector<std::string> keys = {kUnitSpellings, kFirFilters, kCalibUnits};
  return keys;
}

TreeOptions read_options(Pf* pf, FaultList* faults) {
  TreeOptions options;
  read_unit_spellings(pf, &options, faults);
  read_fir_filters(pf, &options, faults);
  const char* units = read_string(pf, kCalibUnits, "the unit of ground motion of instruments that do not tell", faults);
  if (units != nullptr) options.calibration_units = units;
  return options;
}

}  // namespace triglub
