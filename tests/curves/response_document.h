// The responses of a StationXML document as a client reads them. Knows the format only, nothing of how this library
// writes it.
#ifndef TRIGLUB_TESTS_CURVES_RESPONSE_DOCUMENT_H
#define TRIGLUB_TESTS_CURVES_RESPONSE_DOCUMENT_H

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace triglub_curves {

struct Number {
  double value = 0;
  std::optional<double> minus_error = {};
  std::optional<double> plus_error = {};
};

struct Root {
  long number;
  Number real;
  Number imaginary;
};

struct Coefficient {
  std::optional<long> number;
  Number value;
};

struct PolesZeros {
  std::string type;         // PzTransferFunctionType
  double factor = 1;        // normalization
  double frequency = 1;     // of the normalization, hertz
  std::vector<Root> zeros;  // in the order of the document
  std::vector<Root> poles;
};

struct Coefficients {
  std::string type;  // CfTransferFunctionType
  std::vector<Coefficient> numerators;
  std::vector<Coefficient> denominators;
};

struct FirFilter {
  std::string symmetry;                 // NONE, ODD or EVEN
  std::vector<Coefficient> numerators;  // as many as are written: of a symmetric filter one half
};

struct ListElement {
  double frequency;  // hertz
  Number amplitude;
  Number phase;  // degrees
};

struct ResponseList {
  std::vector<ListElement> elements;
};

// Nothing: the stage is no more than its gain.
using Filter = std::variant<std::monostate, PolesZeros, Coefficients, FirFilter, ResponseList>;

struct Decimation {
  double input_rate = 0;  // samples per second
  long factor = 1;
  long offset = 0;
  double delay = 0;       // seconds
  double correction = 0;  // seconds
};

struct Stage {
  long number = 0;
  Filter filter;
  std::string input_units;  // both empty without a filter
  std::string output_units;
  std::optional<Decimation> decimation;
  double gain = 0;
  double gain_frequency = 0;  // hertz
};

struct Sensitivity {
  double value = 0;
  double frequency = 0;  // hertz
  std::string input_units;
};

struct ChannelEpoch {
  std::string network;
  std::string station;
  std::string location;
  std::string channel;
  std::string start;  // as the document has it
  std::string end;    // empty while it is open
  std::optional<Sensitivity> sensitivity;
  std::vector<Stage> stages;  // in the order of the document
};

// All channel epochs, in the order of the document. std::runtime_error, with what and the line, where the document is
// not well-formed or a response has an element that is not known, lacks one that it needs, or a number that is none.
std::vector<ChannelEpoch> read_responses(const std::string& document);

}  // namespace triglub_curves

#endif
