// What is not there, or is no number, is left open here: each check tells for itself whether it needs it.
#include "checks/channel.h"

#include <algorithm>
#include <array>

namespace triglub::checks {

namespace {

std::string text_in(const Element* parent, std::string_view name) {
  const Element* found = child(parent, name);
  return found == nullptr ? std::string() : std::string(trimmed(found->text));
}

Units read_units(const Element& element) {
  return {text_in(child(&element, "InputUnits"), "Name"), text_in(child(&element, "OutputUnits"), "Name")};
}

Gain read_gain(const Element& element) {
  return {&element, figure_in(&element, "Value"), figure_in(&element, "Frequency")};
}

Decimation read_decimation(const Element& element) {
  return {&element,
          figure_in(&element, "InputSampleRate"),
          figure_in(&element, "Factor"),
          figure_in(&element, "Offset"),
          figure_in(&element, "Delay"),
          figure_in(&element, "Correction")};
}

void add_number(const Element& element, Filter& filter, std::vector<double>* numbers) {
  const Figure number = figure(&element);
  if (!number) filter.is_complete = false;
  numbers->push_back(number.value.value_or(0));
}

void add_root(const Element& element, Filter& filter, std::vector<Root>* roots) {
  const Figure real = figure_in(&element, "Real");
  const Figure imaginary = figure_in(&element, "Imaginary");
  if (!real || !imaginary) filter.is_complete = false;
  roots->push_back({{real.value.value_or(0), imaginary.value.value_or(0)}, element.line});
}

void add_point(const Element& element, Filter& filter) {
  const Figure frequency = figure_in(&element, "Frequency");
  const Figure amplitude = figure_in(&element, "Amplitude");
  if (!frequency || !amplitude) filter.is_complete = false;
  filter.points.push_back({frequency.value.value_or(0), amplitude.value.value_or(0), element.line});
}

void add_part(const Element& part, Filter& filter) {
  if (part.name == "Numerator" || part.name == "NumeratorCoefficient") add_number(part, filter, &filter.numerators);
  if (part.name == "Denominator") add_number(part, filter, &filter.denominators);
  if (part.name == "Zero") add_root(part, filter, &filter.zeros);
  if (part.name == "Pole") add_root(part, filter, &filter.poles);
  if (part.name == "ResponseListElement") add_point(part, filter);
}

void read_function_type(Filter& filter) {
  const bool has_roots = filter.kind == FilterKind::poles_zeros;
  const std::string type = text_in(filter.element, has_roots ? "PzTransferFunctionType" : "CfTransferFunctionType");
  filter.is_digital = filter.kind == FilterKind::fir || type.starts_with("DIGITAL");
  filter.is_in_hertz = type.ends_with("(HERTZ)");
}

Filter read_filter(FilterKind kind, const Element& element) {
  Filter filter;
  filter.kind = kind;
  filter.element = &element;
  filter.units = read_units(element);
  filter.symmetry = text_in(&element, "Symmetry");
  filter.normalization = figure_in(&element, "NormalizationFactor");
  filter.normalization_frequency = figure_in(&element, "NormalizationFrequency");
  read_function_type(filter);
  for (const Element& part : element.children) add_part(part, filter);
  return filter;
}

struct NamedKind {
  std::string_view name;
  FilterKind kind;
};
constexpr std::array<NamedKind, 4> kKinds{{{"PolesZeros", FilterKind::poles_zeros},
                                           {"Coefficients", FilterKind::coefficients},
                                           {"FIR", FilterKind::fir},
                                           {"ResponseList", FilterKind::list}}};

Stage read_stage(const Element& element) {
  Stage stage;
  stage.element = &element;
  stage.number = attribute_text(element, "number");
  for (const NamedKind& one : kKinds) {
    const Element* found = child(&element, one.name);
    if (found != nullptr && !stage.filter) stage.filter = read_filter(one.kind, *found);
  }
  if (const Element* found = child(&element, "Decimation")) stage.decimation = read_decimation(*found);
  if (const Element* found = child(&element, "StageGain")) stage.gain = read_gain(*found);
  if (const Element* found = child(&element, "Polynomial")) stage.polynomial = read_units(*found);
  return stage;
}

void read_response(Channel& channel) {
  if (const Element* found = child(channel.response, "InstrumentSensitivity")) {
    channel.sensitivity = Sensitivity{read_gain(*found), read_units(*found)};
  }
  channel.has_instrument_polynomial = child(channel.response, "InstrumentPolynomial") != nullptr;
  for (const Element& part : channel.response->children) {
    if (part.name == "Stage") channel.stages.push_back(read_stage(part));
  }
}

// The words of a code: between underscores, or letter by letter.
std::string word_at(const std::string& code, std::size_t place) {
  const auto dividers = std::count(code.begin(), code.end(), '_');
  if (dividers == 0 && code.size() == 3) return code.substr(place, 1);
  if (dividers != 2) return "";
  std::size_t begin = 0;
  for (; place > 0; --place) begin = code.find('_', begin) + 1;
  return code.substr(begin, code.find('_', begin) - begin);
}

char letter_at(const std::string& code, std::size_t place) {
  const std::string word = word_at(code, place);
  return word.size() == 1 ? word.front() : '\0';
}

}  // namespace

const Units* Stage::units() const {
  if (polynomial) return &*polynomial;
  return filter ? &filter->units : nullptr;
}

char Channel::band() const { return letter_at(code, 0); }
char Channel::instrument() const { return letter_at(code, 1); }
char Channel::orientation() const { return letter_at(code, 2); }

Channel read_channel(const Element& element) {
  Channel channel;
  channel.element = &element;
  channel.code = attribute_text(element, "code");
  channel.location = attribute_text(element, "locationCode");
  channel.latitude = figure_in(&element, "Latitude");
  channel.longitude = figure_in(&element, "Longitude");
  channel.elevation = figure_in(&element, "Elevation");
  channel.depth = figure_in(&element, "Depth");
  channel.azimuth = figure_in(&element, "Azimuth");
  channel.dip = figure_in(&element, "Dip");
  channel.rate = figure_in(&element, "SampleRate");
  channel.response = child(&element, "Response");
  if (channel.response != nullptr) read_response(channel);
  return channel;
}

}  // namespace triglub::checks
