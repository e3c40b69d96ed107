// Numbers are written so that they read back to the same; errors only where the file has some.
#include "stages/filter_blocks.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <vector>

#include "platform/record_expression.h"

namespace triglub {

namespace {

constexpr double kLargestPhase = 360;  // degrees

class BlockText {
 public:
  BlockText(std::size_t depth, std::string* text) : depth_(depth), text_(text) {}

  template <typename... Pieces>
  void line(const Pieces&... pieces) {
    text_->append(depth_, ' ');
    (append(pieces), ...);
    *text_ += '\n';
  }
  BlockText inner() const { return {depth_ + 1, text_}; }

 private:
  void append(std::string_view piece) { text_->append(piece); }
  void append(double number) { append_shortest(number, text_); }
  void append(std::size_t number) { append_decimal(static_cast<std::int64_t>(number), text_); }
  void append(std::int64_t number) { append_decimal(number, text_); }

  std::size_t depth_;
  std::string* text_;
};

void write_units(BlockText block, const Units& units) {
  block.line("<InputUnits><Name>", units.input, "</Name></InputUnits>");
  block.line("<OutputUnits><Name>", units.output, "</Name></OutputUnits>");
}

// The files hold one error for a number, which stands for both sides.
std::string error_attributes(double error) {
  if (error == 0) return "";
  std::string number;
  append_shortest(std::fabs(error), &number);
  return " minusError=\"" + number + "\" plusError=\"" + number + "\"";
}

template <typename Number>
Number error_at(const std::vector<Number>& errors, std::size_t i) {
  return i < errors.size() ? errors[i] : Number{};
}

void write_number(BlockText block, std::string_view tag, double number, double error) {
  block.line("<", tag, error_attributes(error), ">", number, "</", tag, ">");
}

void write_roots(BlockText block, std::string_view tag, const std::vector<std::complex<double>>& roots,
                 const std::vector<std::complex<double>>& errors, std::size_t first_number) {
  for (std::size_t i = 0; i < roots.size(); ++i) {
    const std::complex<double> error = error_at(errors, i);
    block.line("<", tag, " number=\"", first_number + i, "\">");
    write_number(block.inner(), "Real", roots[i].real(), error.real());
    write_number(block.inner(), "Imaginary", roots[i].imag(), error.imag());
    block.line("</", tag, ">");
  }
}

void write_coefficients(BlockText block, std::string_view tag, const std::vector<double>& coefficients,
                        const std::vector<double>& errors) {
  for (std::size_t i = 0; i < coefficients.size(); ++i) {
    block.line("<", tag, error_attributes(error_at(errors, i)), " number=\"", i + 1, "\">", coefficients[i], "</", tag,
               ">");
  }
}

void write_poles_zeros(BlockText block, const Paz& paz, const Units& units) {
  write_units(block, units);
  block.line("<PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>");
  block.line("<NormalizationFactor>", paz.normalization, "</NormalizationFactor>");
  block.line("<NormalizationFrequency>", paz.normalization_frequency, "</NormalizationFrequency>");
  write_roots(block, "Zero", paz.zeros, paz.zero_errors, 0);
  write_roots(block, "Pole", paz.poles, paz.pole_errors, paz.zeros.size());
}

void write_filter_coefficients(BlockText block, const Fir& fir, const Units& units) {
  write_units(block, units);
  block.line("<CfTransferFunctionType>DIGITAL</CfTransferFunctionType>");
  write_coefficients(block, "Numerator", fir.numerators, fir.numerator_errors);
  write_coefficients(block, "Denominator", fir.denominators, fir.denominator_errors);
}

std::string_view name_of(Symmetry symmetry) {
  switch (symmetry) {
    case Symmetry::odd:
      return "ODD";
    case Symmetry::even:
      return "EVEN";
    case Symmetry::none:
      break;
  }
  return "NONE";
}

// Of a symmetric filter the first half, with the one in the middle.
void write_fir(BlockText block, const StageFilter& filter, const Units& units) {
  const std::vector<double>& all = filter.fir().numerators;
  const std::size_t count = filter.symmetry == Symmetry::none ? all.size() : (all.size() + 1) / 2;
  write_units(block, units);
  block.line("<Symmetry>", name_of(filter.symmetry), "</Symmetry>");
  for (std::size_t i = 0; i < count; ++i) {
    block.line("<NumeratorCoefficient i=\"", i + 1, "\">", all[i], "</NumeratorCoefficient>");
  }
}

// Phases of a table may go on and on; the schema has one turn to either side.
double within_a_turn(double phase) {
  return std::fabs(phase) > kLargestPhase ? std::fmod(phase, kLargestPhase) : phase;
}

void write_list(BlockText block, const Fap& fap, const Units& units) {
  write_units(block, units);
  for (std::size_t i = 0; i < fap.frequencies.size(); ++i) {
    block.line("<ResponseListElement>");
    write_number(block.inner(), "Frequency", fap.frequencies[i], 0);
    write_number(block.inner(), "Amplitude", fap.amplitudes[i], error_at(fap.amplitude_errors, i));
    write_number(block.inner(), "Phase", within_a_turn(fap.phases[i]), error_at(fap.phase_errors, i));
    block.line("</ResponseListElement>");
  }
}

bool is_any_not_0(const std::vector<double>& errors) {
  return std::any_of(errors.begin(), errors.end(), [](double error) { return error != 0; });
}

bool can_be_fir(const StageFilter& filter) {
  if (filter.group->type != RESPONSE_FIR) return false;
  const Fir& fir = filter.fir();
  return !fir.numerators.empty() && fir.denominators.empty() && !is_any_not_0(fir.numerator_errors);
}

template <typename Write>
std::string block_of(std::string_view tag, std::size_t depth, const Write& write) {
  std::string text;
  BlockText block(depth, &text);
  block.line("<", tag, ">");
  write(block.inner());
  block.line("</", tag, ">");
  return text;
}

std::string poles_zeros_block(const Paz& paz, const Units& units, std::size_t depth) {
  return block_of("PolesZeros", depth, [&](BlockText block) { write_poles_zeros(block, paz, units); });
}

std::string list_block(const Fap& fap, const Units& units, std::size_t depth) {
  return block_of("ResponseList", depth, [&](BlockText block) { write_list(block, fap, units); });
}

std::string normalized_block(const StageFilter& filter, const Normalization& normalization, const Units& units,
                             std::size_t depth) {
  if (filter.is_list()) {
    Fap fap = filter.fap();
    for (double& amplitude : fap.amplitudes) amplitude /= normalization.factor;
    for (double& error : fap.amplitude_errors) error /= normalization.factor;
    return list_block(fap, units, depth);
  }
  Paz paz = filter.paz();
  paz.normalization = normalization.factor;
  paz.normalization_frequency = normalization.frequency;
  return poles_zeros_block(paz, units, depth);
}

std::string coefficients_block(const Fir& fir, const Units& units, std::size_t depth) {
  return block_of("Coefficients", depth, [&](BlockText block) { write_filter_coefficients(block, fir, units); });
}

}  // namespace

std::string filter_block(const StageFilter& filter, bool is_fir_allowed, const Units& units, std::size_t depth,
                         const std::optional<Normalization>& normalization) {
  if (normalization) return normalized_block(filter, *normalization, units, depth);
  if (filter.group->type == RESPONSE_PAZ) return poles_zeros_block(filter.paz(), units, depth);
  if (filter.is_list()) return list_block(filter.fap(), units, depth);
  if (!is_fir_allowed || !can_be_fir(filter)) return coefficients_block(filter.fir(), units, depth);
  return block_of("FIR", depth, [&](BlockText block) { write_fir(block, filter, units); });
}

std::string unit_change_block(double frequency, const Units& units, std::size_t depth) {
  Paz paz;
  paz.normalization_frequency = frequency;
  return poles_zeros_block(paz, units, depth);
}

std::string digital_gain_block(const Units& units, std::size_t depth) {
  return coefficients_block(Fir{}, units, depth);
}

void append_decimation(const StageFacts& facts, std::size_t depth, std::string* text) {
  BlockText block(depth, text);
  block.line("<Decimation>");
  block.inner().line("<InputSampleRate>", facts.input_rate, "</InputSampleRate>");
  block.inner().line("<Factor>", facts.factor, "</Factor>");
  block.inner().line("<Offset>0</Offset>");
  block.inner().line("<Delay>", facts.delay, "</Delay>");
  block.inner().line("<Correction>", facts.correction, "</Correction>");
  block.line("</Decimation>");
}

void append_gain(const StageFacts& facts, std::size_t depth, std::string* text) {
  BlockText block(depth, text);
  block.line("<StageGain>");
  block.inner().line("<Value>", facts.gain, "</Value>");
  block.inner().line("<Frequency>", facts.frequency, "</Frequency>");
  block.line("</StageGain>");
}

}  // namespace triglub
