// The filter blocks of a response stage, and the delay of a digital filter.
#include <complex>
#include <string_view>
#include <vector>

#include "resp_helper.h"
#include "resp_helper/text_block.h"

namespace {

using triglub::TextBlock;

constexpr std::string_view kIndentation = "          ";

void write_units(TextBlock& block, std::string_view input_units, std::string_view output_units) {
  block.line(" <InputUnits><Name>", input_units, "</Name></InputUnits>");
  block.line(" <OutputUnits><Name>", output_units, "</Name></OutputUnits>");
}

// The files hold one error for a number, not two: it stands for both sides.
void write_number(TextBlock& block, std::string_view indentation, std::string_view tag, double number, double error) {
  block.line(indentation, "<", tag, " minusError=\"", error, "\" plusError=\"", error, "\">", number, "</", tag, ">");
}

// Records made by hand may leave the errors out.
template <typename Number>
Number error_at(const std::vector<Number>& errors, std::size_t i) {
  return i < errors.size() ? errors[i] : Number{};
}

void write_roots(TextBlock& block, std::string_view tag, const std::vector<std::complex<double>>& roots,
                 const std::vector<std::complex<double>>& errors) {
  for (std::size_t i = 0; i < roots.size(); ++i) {
    block.line(" <", tag, " number=\"", i, "\">");
    const std::complex<double> error = error_at(errors, i);
    write_number(block, "  ", "Real", roots[i].real(), error.real());
    write_number(block, "  ", "Imaginary", roots[i].imag(), error.imag());
    block.line(" </", tag, ">");
  }
}

void write_coefficients(TextBlock& block, std::string_view tag, const std::vector<double>& coefficients,
                        const std::vector<double>& errors) {
  for (std::size_t i = 0; i < coefficients.size(); ++i)
    write_number(block, " ", tag, coefficients[i], error_at(errors, i));
}

}  // namespace

std::string paz_as_xml(Paz* paz, std::string input_units, std::string output_units) {
  TextBlock block(kIndentation);
  block.line("<PolesZeros>");
  write_units(block, input_units, output_units);
  block.line(" <PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>");
  block.line(" <NormalizationFactor>", paz->normalization, "</NormalizationFactor>");
  block.line(" <NormalizationFrequency>", paz->normalization_frequency, "</NormalizationFrequency>");
  write_roots(block, "Zero", paz->zeros, paz->zero_errors);
  write_roots(block, "Pole", paz->poles, paz->pole_errors);
  block.line("</PolesZeros>");
  return block.take();
}

std::string fir_as_xml(Fir* fir, std::string input_units, std::string output_units) {
  TextBlock block(kIndentation);
  block.line("<Coefficients>");
  write_units(block, input_units, output_units);
  // The comment marks a filter that came from a file: whether its coefficients are of the digital kind is not derived
  // from them, unlike for the stages without a file, which are digital by definition.
  block.line(" <CfTransferFunctionType>DIGITAL<!-- not implemented --></CfTransferFunctionType>");
  write_coefficients(block, "Numerator", fir->numerators, fir->numerator_errors);
  write_coefficients(block, "Denominator", fir->denominators, fir->denominator_errors);
  block.line("</Coefficients>");
  return block.take();
}

std::string fap2_as_xml(Fap2* /*fap2*/, std::string /*input_units*/, std::string /*output_units*/) {
  return "     <!-- FAP2 not implemented  --> \n";
}

double get_fir_delay(Fir* fir) {
  if (fir->delay >= 0) return fir->delay / fir->samprate;
  if (fir->numerators.empty()) return 0.0;
  // Equal ends are taken for a symmetric filter, whose delay is half its length; comparing them exactly is right, as
  // both were read from the same digits.
  const bool is_symmetric = fir->numerators.front() == fir->numerators.back();
  const double length = static_cast<double>(fir->numerators.size()) - 1;
  return (is_symmetric ? length / 2 : length) / fir->samprate;
}
