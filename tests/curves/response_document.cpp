// The document as a tree of libxml2; each function reads one kind of element and refuses what it does not know, so that
// nothing of a response can be overlooked.
#include "curves/response_document.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>

namespace triglub_curves {

namespace {

constexpr const char* kNamespace = "http://www.fdsn.org/xml/station/1";

std::string text_of(xmlChar* owned) {
  const std::unique_ptr<xmlChar, decltype(xmlFree)> text(owned, xmlFree);
  return text == nullptr ? "" : reinterpret_cast<const char*>(text.get());
}

// An element; valid only as long as its document.
class Element {
 public:
  explicit Element(xmlNode* node) : node_(node) {}

  std::string name() const { return reinterpret_cast<const char*>(node_->name); }
  std::string text() const { return text_of(xmlNodeGetContent(node_)); }
  std::optional<std::string> attribute(const char* of_name) const {
    const auto* name = reinterpret_cast<const xmlChar*>(of_name);
    if (xmlHasProp(node_, name) == nullptr) return std::nullopt;
    return text_of(xmlGetProp(node_, name));
  }
  std::vector<Element> children() const {
    std::vector<Element> all;
    for (xmlNode* child = xmlFirstElementChild(node_); child != nullptr; child = xmlNextElementSibling(child)) {
      all.emplace_back(child);
    }
    return all;
  }
  std::vector<Element> children(const std::string& of_name) const {
    std::vector<Element> all;
    for (const Element& child : children()) {
      if (child.name() == of_name) all.push_back(child);
    }
    return all;
  }
  bool is_of_stations() const {
    return node_->ns != nullptr && reinterpret_cast<const char*>(node_->ns->href) == std::string(kNamespace);
  }
  [[noreturn]] void fail(const std::string& why) const {
    throw std::runtime_error("line " + std::to_string(xmlGetLineNo(node_)) + ": " + name() + ": " + why);
  }

 private:
  xmlNode* node_;
};

double number_in(const Element& element, const std::string& text) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0') element.fail("'" + text + "' is no number");
  return number;
}

long integer_in(const Element& element, const std::string& text) {
  char* end = nullptr;
  const long number = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0') element.fail("'" + text + "' is no integer");
  return number;
}

double number_of(const Element& element) { return number_in(element, element.text()); }
long integer_of(const Element& element) { return integer_in(element, element.text()); }

std::optional<double> number_at(const Element& element, const char* attribute) {
  const auto text = element.attribute(attribute);
  return text ? std::optional(number_in(element, *text)) : std::nullopt;
}

Number number_with_errors(const Element& element) {
  return {number_of(element), number_at(element, "minusError"), number_at(element, "plusError")};
}

// What is to be done with each child, by its name.
using Readers = std::map<std::string, std::function<void(const Element&)>>;

// Fails where a child has no reader, and where there is none of a name of `needed`.
void read_children(const Element& element, const Readers& readers, const std::vector<std::string>& needed) {
  for (const Element& child : element.children()) {
    const auto reader = readers.find(child.name());
    if (reader == readers.end()) element.fail("has a " + child.name());
    reader->second(child);
  }
  for (const std::string& name : needed) {
    if (element.children(name).empty()) element.fail("has no " + name);
  }
}

std::string units_name(const Element& units) {
  std::string name;
  read_children(units, {{"Name", [&](const Element& child) { name = child.text(); }}}, {"Name"});
  return name;
}

// The readers of a filter's units.
Readers units_readers(Stage& stage) {
  return {{"InputUnits", [&](const Element& child) { stage.input_units = units_name(child); }},
          {"OutputUnits", [&](const Element& child) { stage.output_units = units_name(child); }}};
}

Readers joined(Readers some, const Readers& others) {
  some.insert(others.begin(), others.end());
  return some;
}

Root root_of(const Element& element) {
  Root root = {};
  const auto number = element.attribute("number");
  if (!number) element.fail("has no number");
  root.number = integer_in(element, *number);
  read_children(element,
                {{"Real", [&](const Element& child) { root.real = number_with_errors(child); }},
                 {"Imaginary", [&](const Element& child) { root.imaginary = number_with_errors(child); }}},
                {"Real", "Imaginary"});
  return root;
}

Coefficient coefficient_of(const Element& element, const char* number_name) {
  const auto number = element.attribute(number_name);
  return {number ? std::optional(integer_in(element, *number)) : std::nullopt, number_with_errors(element)};
}

void read_poles_zeros(const Element& element, Stage& stage) {
  PolesZeros filter;
  const Readers readers = {
      {"PzTransferFunctionType", [&](const Element& child) { filter.type = child.text(); }},
      {"NormalizationFactor", [&](const Element& child) { filter.factor = number_of(child); }},
      {"NormalizationFrequency", [&](const Element& child) { filter.frequency = number_of(child); }},
      {"Zero", [&](const Element& child) { filter.zeros.push_back(root_of(child)); }},
      {"Pole", [&](const Element& child) { filter.poles.push_back(root_of(child)); }}};
  read_children(
      element, joined(readers, units_readers(stage)),
      {"InputUnits", "OutputUnits", "PzTransferFunctionType", "NormalizationFactor", "NormalizationFrequency"});
  stage.filter = filter;
}

void read_coefficients(const Element& element, Stage& stage) {
  Coefficients filter;
  const Readers readers = {
      {"CfTransferFunctionType", [&](const Element& child) { filter.type = child.text(); }},
      {"Numerator", [&](const Element& child) { filter.numerators.push_back(coefficient_of(child, "number")); }},
      {"Denominator", [&](const Element& child) { filter.denominators.push_back(coefficient_of(child, "number")); }}};
  read_children(element, joined(readers, units_readers(stage)),
                {"InputUnits", "OutputUnits", "CfTransferFunctionType"});
  stage.filter = filter;
}

void read_fir(const Element& element, Stage& stage) {
  FirFilter filter;
  const Readers readers = {
      {"Symmetry", [&](const Element& child) { filter.symmetry = child.text(); }},
      {"NumeratorCoefficient", [&](const Element& child) { filter.numerators.push_back(coefficient_of(child, "i")); }}};
  read_children(element, joined(readers, units_readers(stage)), {"InputUnits", "OutputUnits", "Symmetry"});
  stage.filter = filter;
}

ListElement list_element(const Element& element) {
  ListElement read = {};
  read_children(element,
                {{"Frequency", [&](const Element& child) { read.frequency = number_of(child); }},
                 {"Amplitude", [&](const Element& child) { read.amplitude = number_with_errors(child); }},
                 {"Phase", [&](const Element& child) { read.phase = number_with_errors(child); }}},
                {"Frequency", "Amplitude", "Phase"});
  return read;
}

void read_response_list(const Element& element, Stage& stage) {
  ResponseList filter;
  const Readers readers = {
      {"ResponseListElement", [&](const Element& child) { filter.elements.push_back(list_element(child)); }}};
  read_children(element, joined(readers, units_readers(stage)), {"InputUnits", "OutputUnits"});
  stage.filter = filter;
}

void read_decimation(const Element& element, Stage& stage) {
  Decimation read;
  read_children(element,
                {{"InputSampleRate", [&](const Element& child) { read.input_rate = number_of(child); }},
                 {"Factor", [&](const Element& child) { read.factor = integer_of(child); }},
                 {"Offset", [&](const Element& child) { read.offset = integer_of(child); }},
                 {"Delay", [&](const Element& child) { read.delay = number_of(child); }},
                 {"Correction", [&](const Element& child) { read.correction = number_of(child); }}},
                {"InputSampleRate", "Factor", "Offset", "Delay", "Correction"});
  stage.decimation = read;
}

void read_gain(const Element& element, Stage& stage) {
  read_children(element,
                {{"Value", [&](const Element& child) { stage.gain = number_of(child); }},
                 {"Frequency", [&](const Element& child) { stage.gain_frequency = number_of(child); }}},
                {"Value", "Frequency"});
}

Stage stage_of(const Element& element) {
  Stage stage;
  const auto number = element.attribute("number");
  if (!number) element.fail("has no number");
  stage.number = integer_in(element, *number);
  read_children(element,
                {{"PolesZeros", [&](const Element& child) { read_poles_zeros(child, stage); }},
                 {"Coefficients", [&](const Element& child) { read_coefficients(child, stage); }},
                 {"FIR", [&](const Element& child) { read_fir(child, stage); }},
                 {"ResponseList", [&](const Element& child) { read_response_list(child, stage); }},
                 {"Decimation", [&](const Element& child) { read_decimation(child, stage); }},
                 {"StageGain", [&](const Element& child) { read_gain(child, stage); }}},
                {"StageGain"});
  return stage;
}

Sensitivity sensitivity_of(const Element& element) {
  Sensitivity read;
  read_children(element,
                {{"Value", [&](const Element& child) { read.value = number_of(child); }},
                 {"Frequency", [&](const Element& child) { read.frequency = number_of(child); }},
                 {"InputUnits", [&](const Element& child) { read.input_units = units_name(child); }},
                 {"OutputUnits", [](const Element& child) { units_name(child); }}},
                {"Value", "Frequency", "InputUnits", "OutputUnits"});
  return read;
}

void read_response(const Element& element, ChannelEpoch& epoch) {
  read_children(element,
                {{"InstrumentSensitivity", [&](const Element& child) { epoch.sensitivity = sensitivity_of(child); }},
                 {"Stage", [&](const Element& child) { epoch.stages.push_back(stage_of(child)); }}},
                {});
}

ChannelEpoch epoch_of(const Element& network, const Element& station, const Element& channel) {
  ChannelEpoch epoch;
  epoch.network = network.attribute("code").value_or("");
  epoch.station = station.attribute("code").value_or("");
  epoch.location = channel.attribute("locationCode").value_or("");
  epoch.channel = channel.attribute("code").value_or("");
  epoch.start = channel.attribute("startDate").value_or("");
  epoch.end = channel.attribute("endDate").value_or("");
  for (const Element& response : channel.children("Response")) read_response(response, epoch);
  return epoch;
}

using Document = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

Document parsed(const std::string& text) {
  constexpr int options = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_BIG_LINES;
  Document document(xmlReadMemory(text.data(), static_cast<int>(text.size()), "document", nullptr, options),
                    &xmlFreeDoc);
  if (document == nullptr) throw std::runtime_error("the document is not well-formed");
  return document;
}

}  // namespace

std::vector<ChannelEpoch> read_responses(const std::string& document) {
  const Document tree = parsed(document);
  const Element root(xmlDocGetRootElement(tree.get()));
  if (root.name() != "FDSNStationXML" || !root.is_of_stations()) root.fail("is no document of stations");
  std::vector<ChannelEpoch> epochs;
  for (const Element& network : root.children("Network")) {
    for (const Element& station : network.children("Station")) {
      for (const Element& channel : station.children("Channel")) epochs.push_back(epoch_of(network, station, channel));
    }
  }
  return epochs;
}

}  // namespace triglub_curves
