#include "reference/reference_stage.h"

#include <cstdlib>
#include <sstream>

namespace triglub_reference {

namespace {

const std::string TEN = "          ";
const std::string EIGHT = "        ";

double number(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

std::string field(const Record& record, const char* name) { return text_of(record, *find_field(name)); }

// The nth number of a line of a response file, 0 where it is not given.
double nth(const Numbers& numbers, std::size_t n) { return n < numbers.size() ? number(numbers[n]) : 0.0; }

// The row's values as the stage is written from them.
struct Stage {
  std::string input;
  std::string output;
  double gain;
  double frequency;
  int factor;
  double rate;
};

std::string units_text(const Stage& stage) {
  return TEN + " <InputUnits><Name>" + stage.input + "</Name></InputUnits>\n" + TEN + " <OutputUnits><Name>" +
         stage.output + "</Name></OutputUnits>\n";
}

std::string decimation_text(double rate, int factor, double delay) {
  std::ostringstream out;
  out << EIGHT << "<Decimation>\n";
  out << EIGHT << "  <InputSampleRate>" << rate << " </InputSampleRate>\n";
  out << EIGHT << "  <Factor>" << (factor == -1 ? 1 : factor) << "</Factor>\n";
  out << EIGHT << "  <Offset>0</Offset>\n";
  out << EIGHT << "  <Delay>" << delay << "</Delay>\n";
  out << EIGHT << "  <Correction>" << delay << "</Correction>\n";
  out << EIGHT << "</Decimation>\n";
  return out.str();
}

std::string digital_text(const Stage& stage) {
  return TEN + "<Coefficients>\n" + units_text(stage) + TEN +
         " <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>\n" + TEN + "</Coefficients>\n" +
         decimation_text(stage.rate, stage.factor, 0);
}

std::string with_error(const std::string& tag, double value, double error) {
  std::ostringstream out;
  out << TEN << tag << " minusError=\"" << error << "\" plusError=\"" << error << "\">" << value;
  return out.str();
}

std::string coefficients_text(const std::string& tag, const std::vector<Numbers>& coefficients) {
  std::string text;
  for (const Numbers& one : coefficients) text += with_error(" <" + tag, nth(one, 0), nth(one, 1)) + "</" + tag + ">\n";
  return text;
}

double delay_in_seconds(const Filter& fir) {
  const double rate = nth(fir.head, 0);
  const double stated = fir.head.size() > 1 ? nth(fir.head, 1) : -1;
  if (stated >= 0) return stated / rate;
  if (fir.first.empty()) return 0;
  const double last = static_cast<double>(fir.first.size()) - 1;
  const bool symmetric = nth(fir.first.front(), 0) == nth(fir.first.back(), 0);
  return (symmetric ? last / 2 : last) / rate;
}

std::string fir_text(const Filter& fir, const Stage& stage) {
  return TEN + "<Coefficients>\n" + units_text(stage) + TEN +
         " <CfTransferFunctionType>DIGITAL<!-- not implemented --></CfTransferFunctionType>\n" +
         coefficients_text("Numerator", fir.first) + coefficients_text("Denominator", fir.second) + TEN +
         "</Coefficients>\n" +
         decimation_text(stage.rate == -1.0 ? nth(fir.head, 0) / stage.factor : stage.rate, stage.factor,
                         delay_in_seconds(fir));
}

std::string roots_text(const std::string& tag, const std::vector<Numbers>& roots) {
  std::string text;
  for (std::size_t i = 0; i < roots.size(); ++i) {
    text += TEN + " <" + tag + " number=\"" + std::to_string(i) + "\">\n";
    text += with_error("  <Real", nth(roots[i], 0), nth(roots[i], 2)) + "</Real>\n";
    text += with_error("  <Imaginary", nth(roots[i], 1), nth(roots[i], 3)) + "</Imaginary>\n";
    text += TEN + " </" + tag + ">\n";
  }
  return text;
}

std::string paz_text(const Filter& paz, const Stage& stage) {
  std::ostringstream head;
  head << TEN << " <NormalizationFactor>" << nth(paz.head, 0) << "</NormalizationFactor>\n"
       << TEN << " <NormalizationFrequency>" << (paz.head.size() > 1 ? nth(paz.head, 1) : 1.0)
       << "</NormalizationFrequency>\n";
  return TEN + "<PolesZeros>\n" + units_text(stage) + TEN +
         " <PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>\n" + head.str() +
         roots_text("Zero", paz.second) + roots_text("Pole", paz.first) + TEN + "</PolesZeros>\n";
}

// The word in the file is compared by its first three letters, the kind behind it by the whole word.
std::string filter_text(const Filter& filter, const Stage& stage) {
  const std::string family = filter.type.substr(0, 3);
  if (family != "fir" && family != "fap" && family != "paz") return "";
  const std::string expected = family == "fap" ? "fap2" : family;
  if (filter.type != expected) {
    return "<!-- Expected response type " + expected + ", which did not match retrieved response type -->\n";
  }
  if (family == "fap") return "     <!-- FAP2 not implemented  --> \n";
  return family == "fir" ? fir_text(filter, stage) : paz_text(filter, stage);
}

std::string gain_text(const Stage& stage) {
  std::ostringstream out;
  out << TEN << "<StageGain>\n";
  out << TEN << "  <Value>" << stage.gain << "</Value>\n";
  out << TEN << "  <Frequency>" << stage.frequency << "</Frequency>\n";
  out << TEN << "</StageGain>\n";
  return out.str();
}

Stage stage_of(const Record& record, ProcessState& state) {
  Stage stage = {.input = field(record, "stage.iunits"),
                 .output = field(record, "stage.ounits"),
                 .gain = number(field(record, "stage.gnom")),
                 .frequency = number(field(record, "calibration.fc")),
                 .factor = std::atoi(field(record, "stage.decifac").c_str()),
                 .rate = number(field(record, "stage.samprate"))};
  if (stage.input == "-") stage.input = state.latest_unit;
  if (stage.output == "-") stage.output = stage.input;
  state.latest_unit = stage.output;
  return stage;
}

}  // namespace

std::map<std::string, ResponseFile> readable_responses(const Tables& tables) {
  std::map<std::string, ResponseFile> responses;
  const auto stages = tables.rows.find("stage");
  if (stages == tables.rows.end()) return responses;
  for (const Row& row : stages->second) {
    const auto dir = row.find("dir");
    const auto dfile = row.find("dfile");
    if (dir == row.end() || dfile == row.end() || dir->second.empty() || dfile->second.empty()) continue;
    if (dir->second[0] == '-' || dfile->second[0] == '-') continue;
    const auto file = tables.files.find(dir->second + "/" + dfile->second);
    if (file != tables.files.end() && file->second.readable) responses.insert(*file);
  }
  return responses;
}

std::string stage_text(const Record& record, ProcessState& state) {
  Stage stage = stage_of(record, state);
  const std::string dfile = field(record, "stage.dfile");
  if (dfile == "-") return digital_text(stage) + gain_text(stage);
  const std::string name = field(record, "stage.dir") + "/" + dfile;
  if (!state.responses) throw MissingCache{};
  const auto found = state.responses->find(name);
  if (found == state.responses->end()) throw std::runtime_error("problems with response file \"" + name + "\"");
  if (stage.factor != -1) stage.rate *= stage.factor;
  const std::vector<Filter>& filters = found->second.filters;
  if (filters.size() != 1) {
    throw std::runtime_error("expected single group. instead got " + std::to_string(filters.size()));
  }
  return filter_text(filters[0], stage) + gain_text(stage);
}

}  // namespace triglub_reference
