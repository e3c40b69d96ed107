// Numbers are written so that they read back to the same; errors only where the file has some.
#include "stages/filter_blocks.h"

#include <complex>
#include <cstdint>
#include <vector>

#include "platform/record_expression.h"

namespace triglub {

namespace {

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
  append_shortest(error, &number);
  return " minusError=\"" + number + "\" plusError=\"" + number + "\"";
}

template <typename Number>
Number error_at(const std::vector<Number>& errors, std::size_t i) {
  return i < errors.size() ? errors[i] : Number{};
}

void write_roots(BlockText block, std::string_view tag, const std::vector<std::complex<double>>& roots,
                 const std::vector<std::complex<double>>& errors, std::size_t first_number) {
  for (std::size_t i = 0; i < roots.size(); ++i) {
    const std::complex<double> error = error_at(errors, i);
    block.line("<", tag, " number=\"", first_number + i, "\">");
    block.inner().line("<Real", error_attributes(error.real()), ">", roots[i].real(), "</Real>");
    block.inner().line("<Imaginary", error_attributes(error.imag()), ">", roots[i].imag(), "</Imaginary>");
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

}  // namespace

std::string poles_zeros_block(const Paz& paz, const Units& units, std::size_t depth) {
  std::string text;
  BlockText block(depth, &text);
  block.line("<PolesZeros>");
  write_units(block.inner(), units);
  block.inner().line("<PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>");
  block.inner().line("<NormalizationFactor>", paz.normalization, "</NormalizationFactor>");
  block.inner().line("<NormalizationFrequency>", paz.normalization_frequency, "</NormalizationFrequency>");
  write_roots(block.inner(), "Zero", paz.zeros, paz.zero_errors, 0);
  write_roots(block.inner(), "Pole", paz.poles, paz.pole_errors, paz.zeros.size());
  block.line("</PolesZeros>");
  return text;
}

std::string coefficients_block(const Fir& fir, const Units& units, std::size_t depth) {
  std::string text;
  BlockText block(depth, &text);
  block.line("<Coefficients>");
  write_units(block.inner(), units);
  block.inner().line("<CfTransferFunctionType>DIGITAL</CfTransferFunctionType>");
  write_coefficients(block.inner(), "Numerator", fir.numerators, fir.numerator_errors);
  write_coefficients(block.inner(), "Denominator", fir.denominators, fir.denominator_errors);
  block.line("</Coefficients>");
  return text;
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
