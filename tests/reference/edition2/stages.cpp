#include "reference/edition2/stages.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "reference/edition2/core_rows.h"
#include "reference/edition2/digits.h"
#include "reference/edition2/records.h"
#include "reference/edition2/xml_text.h"

namespace triglub_reference::edition2 {

namespace {

double number(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

// The nth number of a line of a response file, 0 where it is not given.
double nth(const Numbers& numbers, std::size_t n) { return n < numbers.size() ? number(numbers[n]) : 0.0; }

std::optional<double> of_stage(const Record& record, const char* name) { return number_in(record[STAGE], STAGE, name); }
std::optional<double> of_calibration(const Record& record, const char* name) {
  return number_in(record[CALIBRATION], CALIBRATION, name);
}

// The path below the tables' folder; empty for a stage that names none.
std::string file_name(const Record& record) {
  const auto name = text_in(record[STAGE], STAGE, "dfile");
  const auto folder = text_in(record[STAGE], STAGE, "dir");
  if (!name) return "";
  return folder ? *folder + "/" + *name : *name;
}

bool is_known_type(const std::string& type) {
  for (const char* known : {"paz", "iir", "fir", "fap", "fap2"}) {
    if (type == known) return true;
  }
  return false;
}

// The filter of a file that can be used.
const Filter* usable_filter(const Record& record, const ResponseFiles& files) {
  const auto file = files.find(file_name(record));
  if (file == files.end() || !file->second.readable) return nullptr;
  const auto group = group_of(record[STAGE]);
  if (!group && file->second.filters.size() != 1) return nullptr;
  const Filter& filter = file->second.filters[group.value_or(0)];
  return is_known_type(filter.type) ? &filter : nullptr;
}

// Null: the stage has none.
const Filter* filter_of(const Record& record, const ResponseFiles& files) {
  return file_name(record).empty() ? nullptr : usable_filter(record, files);
}

bool is_fir_or_iir(const Filter* filter) {
  return filter != nullptr && (filter->type == "fir" || filter->type == "iir");
}

bool is_digital(const Record& record, const Filter* filter) {
  return is_fir_or_iir(filter) || (filter == nullptr && of_stage(record, "samprate"));
}

// --- numbers, each with its doubt ------------------------------------------------------------------------------------

// Multiplying or dividing by a stored 1 adds no doubt.
struct Known {
  double value;
  double doubt = 0;

  std::string text() const { return shortest(fewest_digits(value, doubt)); }
};

// Of a field of stage or of calibration.
double doubt_of(const char* field, double number) { return half_place(find_field(field).value(), number); }

Known gain_of(const Record& record) {
  const double nominal = *of_stage(record, "gnom");
  const double ratio = of_stage(record, "gcalib").value_or(1);
  if (ratio == 1) return {nominal};
  const double doubt_of_ratio = doubt_of("stage.gcalib", ratio);
  if (nominal == 1) return {ratio, doubt_of_ratio};
  return {nominal * ratio,
          smaller(std::abs(ratio) * doubt_of("stage.gnom", nominal), std::abs(nominal) * doubt_of_ratio)};
}

std::optional<Known> frequency_of(const Record& record) {
  const auto frequency = of_calibration(record, "fc");
  if (frequency && !group_of(record[STAGE])) return Known{*frequency};
  const auto period = of_calibration(record, "calper");
  if (!period || !(*period > 0)) return std::nullopt;
  if (*period == 1) return Known{1};
  return Known{1 / *period, doubt_of("calibration.calper", *period) / (*period * *period)};
}

long factor_of(const Record& record) { return static_cast<long>(of_stage(record, "decifac").value_or(1)); }

// Of a digital stage.
Known input_rate(const Record& record, const Filter* filter) {
  const auto rate = of_stage(record, "samprate");
  const auto factor = static_cast<double>(factor_of(record));
  if (!rate) return {filter == nullptr ? 0 : nth(filter->head, 0)};
  if (*rate == 1) return {factor};
  return {*rate * factor, doubt_of("stage.samprate", *rate) * factor};
}

double output_rate(const Record& record, const Filter* filter) {
  return input_rate(record, filter).value / static_cast<double>(factor_of(record));
}

bool is_symmetric(const std::vector<Numbers>& taps) {
  for (std::size_t i = 0; i < taps.size(); ++i) {
    if (nth(taps[i], 0) != nth(taps[taps.size() - 1 - i], 0)) return false;
  }
  return true;
}

// In samples of the input.
double samples_of_delay(const Filter* filter) {
  if (filter == nullptr || filter->type != "fir") return 0;
  if (filter->head.size() > 1 && nth(filter->head, 1) >= 0) return nth(filter->head, 1);
  const bool has_middle = !filter->first.empty() && filter->second.empty() && is_symmetric(filter->first);
  return has_middle ? static_cast<double>(filter->first.size() - 1) / 2 : 0;
}

Known delay_of(const Record& record, const Filter* filter) {
  const double samples = samples_of_delay(filter);
  const Known rate = input_rate(record, filter);
  return {samples / rate.value, samples * rate.doubt / (rate.value * rate.value)};
}

// --- units -----------------------------------------------------------------------------------------------------------

std::string output_units(const Chain& chain, std::size_t place);

std::string input_units(const Chain& chain, std::size_t place) {
  if (const auto own = text_in(chain[place][STAGE], STAGE, "iunits")) return *own;
  if (place > 0) return output_units(chain, place - 1);
  return text_in(chain[0][CALIBRATION], CALIBRATION, "units").value_or("unknown");
}

std::string output_units(const Chain& chain, std::size_t place) {
  const auto own = text_in(chain[place][STAGE], STAGE, "ounits");
  return own ? *own : input_units(chain, place);
}

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// --- chains ----------------------------------------------------------------------------------------------------------

bool is_finite_gain(const Record& record) {
  const auto nominal = of_stage(record, "gnom");
  if (!nominal || !frequency_of(record)) return false;
  const double gain = gain_of(record).value;
  return gain != 0 && std::isfinite(gain) && std::isfinite(frequency_of(record)->value);
}

bool has_rate(const Record& record, const Filter* filter) {
  const double rate = input_rate(record, filter).value;
  return factor_of(record) >= 1 && rate > 0 && std::isfinite(rate) && std::isfinite(delay_of(record, filter).value);
}

// The first stage of a chain of an instrument is normalized at the frequency of its gain.
bool is_normalized(const Record& record, const Filter* filter) {
  return group_of(record[STAGE]) == 0u && filter != nullptr && !is_fir_or_iir(filter);
}

std::optional<double> normalization_of(const Record& record, const Filter* filter) {
  return edition2::normalization_of(*filter, number(frequency_of(record)->text()));
}

bool is_whole(const Record& record, const ResponseFiles& files) {
  if (of_stage(record, "stageid").value_or(0) < 1 || !is_finite_gain(record)) return false;
  if (!file_name(record).empty() && usable_filter(record, files) == nullptr) return false;
  const Filter* filter = filter_of(record, files);
  if (is_normalized(record, filter) && !normalization_of(record, filter)) return false;
  return !is_digital(record, filter) || has_rate(record, filter);
}

bool are_units_continued(const Chain& chain, std::size_t place) {
  const auto own = text_in(chain[place][STAGE], STAGE, "iunits");
  const auto before =
      place > 0 ? std::optional(output_units(chain, place - 1)) : text_in(chain[0][CALIBRATION], CALIBRATION, "units");
  return own && before && lower(*own) == lower(*before);
}

bool are_rates_continued(const Record& before, const Record& behind, const ResponseFiles& files) {
  constexpr double same = 1e-6;
  const Filter* filter_before = filter_of(before, files);
  const Filter* filter_behind = filter_of(behind, files);
  if (!is_digital(before, filter_before)) return true;
  if (!is_digital(behind, filter_behind)) return false;
  const double rate = output_rate(before, filter_before);
  return std::abs(input_rate(behind, filter_behind).value - rate) <= same * rate;
}

// Whether no stage is missing before this one, or none that makes a difference.
bool goes_on(const Chain& chain, std::size_t place, const ResponseFiles& files) {
  const double before = place > 0 ? *of_stage(chain[place - 1], "stageid") : 0;
  if (*of_stage(chain[place], "stageid") == before + 1) return true;
  return are_units_continued(chain, place) &&
         (place == 0 || are_rates_continued(chain[place - 1], chain[place], files));
}

// --- texts -----------------------------------------------------------------------------------------------------------

std::string element(const std::string& tag, const std::string& content) {
  return "<" + tag + ">" + content + "</" + tag + ">";
}

class Lines {
 public:
  explicit Lines(std::size_t depth) : depth_(depth) {}

  void line(const std::string& text) { text_ += std::string(depth_, ' ') + text + "\n"; }
  void open(const std::string& tag) {
    line("<" + tag + ">");
    ++depth_;
  }
  void close(const std::string& tag) {
    --depth_;
    line("</" + tag + ">");
  }
  const std::string& text() const { return text_; }

 private:
  std::size_t depth_;
  std::string text_;
};

std::string error_text(double error) {
  if (error == 0) return "";
  const std::string text = "\"" + shortest(std::abs(error)) + "\"";
  return " minusError=" + text + " plusError=" + text;
}

// A number of a file in an element, with its error.
std::string number_element(const std::string& tag, double number, double error) {
  return "<" + tag + error_text(error) + ">" + shortest(number) + "</" + tag + ">";
}

class StageWriter {
 public:
  StageWriter(const Chain& chain, std::size_t place, const Request& request, std::size_t depth)
      : record_(chain[place]),
        filter_(filter_of(chain[place], request.tables.files)),
        tree_(request.tree),
        input_(input_units(chain, place)),
        output_(output_units(chain, place)),
        lines_(depth) {}

  std::string text() {
    write_filter();
    if (is_digital(record_, filter_)) write_decimation();
    lines_.open("StageGain");
    lines_.line(element("Value", gain_of(record_).text()));
    lines_.line(element("Frequency", frequency_of(record_)->text()));
    lines_.close("StageGain");
    return lines_.text();
  }

 private:
  void write_filter() {
    if (filter_ == nullptr) return write_no_filter();
    if (filter_->type == "paz") return write_poles_zeros();
    if (filter_->type.starts_with("fap")) return write_list();
    if (is_fir()) return write_fir();
    write_coefficients(filter_->first, filter_->second);
  }

  void write_no_filter() {
    if (is_digital(record_, nullptr)) return write_coefficients({}, {});
    if (input_ == output_) return;
    open_poles_zeros("1", frequency_of(record_)->text());
    lines_.close("PolesZeros");
  }

  bool is_fir() const {
    if (filter_->type != "fir" || tree_.fir_filters == "Coefficients") return false;
    const auto has_error = [](const Numbers& tap) { return nth(tap, 1) != 0; };
    return !filter_->first.empty() && filter_->second.empty() &&
           std::none_of(filter_->first.begin(), filter_->first.end(), has_error);
  }

  void write_units() {
    lines_.line(element("InputUnits", element("Name", xml_text(spelled(tree_, input_), false))));
    lines_.line(element("OutputUnits", element("Name", xml_text(spelled(tree_, output_), false))));
  }

  void open_poles_zeros(const std::string& factor, const std::string& frequency) {
    lines_.open("PolesZeros");
    write_units();
    lines_.line(element("PzTransferFunctionType", "LAPLACE (RADIANS/SECOND)"));
    lines_.line(element("NormalizationFactor", factor));
    lines_.line(element("NormalizationFrequency", frequency));
  }

  void write_poles_zeros() {
    if (is_normalized(record_, filter_)) {
      open_poles_zeros(shortest(*normalization_of(record_, filter_)), frequency_of(record_)->text());
    } else {
      open_poles_zeros(shortest(nth(filter_->head, 0)),
                       filter_->head.size() > 1 ? shortest(nth(filter_->head, 1)) : "1");
    }
    write_roots("Zero", filter_->second, 0);
    write_roots("Pole", filter_->first, filter_->second.size());
    lines_.close("PolesZeros");
  }

  void write_roots(const std::string& tag, const std::vector<Numbers>& roots, std::size_t first_number) {
    for (std::size_t i = 0; i < roots.size(); ++i) {
      lines_.open(tag + " number=\"" + std::to_string(first_number + i) + "\"");
      lines_.line(number_element("Real", nth(roots[i], 0), nth(roots[i], 2)));
      lines_.line(number_element("Imaginary", nth(roots[i], 1), nth(roots[i], 3)));
      lines_.close(tag);
    }
  }

  void write_list() {
    const double divisor = is_normalized(record_, filter_) ? *normalization_of(record_, filter_) : 1;
    lines_.open("ResponseList");
    write_units();
    for (const Numbers& row : filter_->first) {
      const double phase = nth(row, 2);
      lines_.open("ResponseListElement");
      lines_.line(number_element("Frequency", nth(row, 0), 0));
      lines_.line(number_element("Amplitude", nth(row, 1) / divisor, nth(row, 3) / divisor));
      lines_.line(number_element("Phase", std::abs(phase) > 360 ? std::fmod(phase, 360) : phase, nth(row, 4)));
      lines_.close("ResponseListElement");
    }
    lines_.close("ResponseList");
  }

  void write_fir() {
    const std::vector<Numbers>& taps = filter_->first;
    const bool is_half = is_symmetric(taps);
    lines_.open("FIR");
    write_units();
    lines_.line(element("Symmetry", !is_half ? "NONE" : taps.size() % 2 == 1 ? "ODD" : "EVEN"));
    for (std::size_t i = 0; i < (is_half ? (taps.size() + 1) / 2 : taps.size()); ++i) {
      lines_.line("<NumeratorCoefficient i=\"" + std::to_string(i + 1) + "\">" + shortest(nth(taps[i], 0)) +
                  "</NumeratorCoefficient>");
    }
    lines_.close("FIR");
  }

  void write_coefficients(const std::vector<Numbers>& numerators, const std::vector<Numbers>& denominators) {
    lines_.open("Coefficients");
    write_units();
    lines_.line(element("CfTransferFunctionType", "DIGITAL"));
    write_numbers("Numerator", numerators);
    write_numbers("Denominator", denominators);
    lines_.close("Coefficients");
  }

  void write_numbers(const std::string& tag, const std::vector<Numbers>& numbers) {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      lines_.line("<" + tag + error_text(nth(numbers[i], 1)) + " number=\"" + std::to_string(i + 1) + "\">" +
                  shortest(nth(numbers[i], 0)) + "</" + tag + ">");
    }
  }

  void write_decimation() {
    const auto corrected = of_stage(record_, "leadfac");
    const std::string delay = delay_of(record_, filter_).text();
    lines_.open("Decimation");
    lines_.line(element("InputSampleRate", input_rate(record_, filter_).text()));
    lines_.line(element("Factor", std::to_string(factor_of(record_))));
    lines_.line(element("Offset", "0"));
    lines_.line(element("Delay", delay));
    lines_.line(element("Correction", corrected ? shortest(*corrected) : delay));
    lines_.close("Decimation");
  }

  const Record& record_;
  const Filter* filter_;
  const Tree& tree_;
  std::string input_;
  std::string output_;
  Lines lines_;
};

}  // namespace

bool can_be_written(const Chain& chain, const ResponseFiles& files) {
  for (const Record& record : chain) {
    if (!is_whole(record, files)) return false;
  }
  for (std::size_t place = 0; place < chain.size(); ++place) {
    if (!goes_on(chain, place, files)) return false;
  }
  return true;
}

std::string stage_text(const Chain& chain, std::size_t place, const Request& request, std::size_t depth) {
  return StageWriter(chain, place, request, depth).text();
}

std::string spelled(const Tree& tree, const std::string& unit) {
  const auto found = tree.unit_spellings.find(unit);
  return found == tree.unit_spellings.end() ? unit : found->second;
}

}  // namespace triglub_reference::edition2
