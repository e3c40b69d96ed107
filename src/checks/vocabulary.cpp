// The names are in the order of the alphabet, for they are searched by halves.
#include "checks/vocabulary.h"

#include <algorithm>
#include <array>

namespace triglub::checks {

namespace {

constexpr auto kStructure = std::to_array<std::string_view>({"Channel",
                                                             "Coefficients",
                                                             "Decimation",
                                                             "FDSNStationXML",
                                                             "FIR",
                                                             "InputUnits",
                                                             "InstrumentPolynomial",
                                                             "InstrumentSensitivity",
                                                             "Network",
                                                             "OutputUnits",
                                                             "Pole",
                                                             "PolesZeros",
                                                             "Polynomial",
                                                             "Response",
                                                             "ResponseList",
                                                             "ResponseListElement",
                                                             "Stage",
                                                             "StageGain",
                                                             "Station",
                                                             "Zero"});

constexpr auto kTexts =
    std::to_array<std::string_view>({"CfTransferFunctionType", "Name", "PzTransferFunctionType", "Symmetry"});

constexpr auto kNumbers = std::to_array<std::string_view>({"Amplitude",
                                                           "ApproximationLowerBound",
                                                           "ApproximationUpperBound",
                                                           "Azimuth",
                                                           "Coefficient",
                                                           "Correction",
                                                           "Delay",
                                                           "Denominator",
                                                           "Depth",
                                                           "Dip",
                                                           "Elevation",
                                                           "Factor",
                                                           "Frequency",
                                                           "FrequencyLowerBound",
                                                           "FrequencyUpperBound",
                                                           "Imaginary",
                                                           "InputSampleRate",
                                                           "Latitude",
                                                           "Longitude",
                                                           "MaximumError",
                                                           "NormalizationFactor",
                                                           "NormalizationFrequency",
                                                           "Numerator",
                                                           "NumeratorCoefficient",
                                                           "Offset",
                                                           "Phase",
                                                           "Real",
                                                           "SampleRate",
                                                           "SelectedNumberChannels",
                                                           "SelectedNumberStations",
                                                           "TotalNumberChannels",
                                                           "TotalNumberStations",
                                                           "Value"});

constexpr auto kAttributes = std::to_array<std::string_view>({"code", "endDate", "locationCode", "startDate"});

template <class Names>
constexpr bool has(const Names& names, std::string_view name) {
  return std::binary_search(names.begin(), names.end(), name);
}

static_assert(std::is_sorted(kStructure.begin(), kStructure.end()));
static_assert(std::is_sorted(kTexts.begin(), kTexts.end()));
static_assert(std::is_sorted(kNumbers.begin(), kNumbers.end()));
static_assert(std::is_sorted(kAttributes.begin(), kAttributes.end()));

}  // namespace

bool is_element_of_interest(std::string_view name) {
  return has(kNumbers, name) || has(kStructure, name) || has(kTexts, name);
}

bool is_attribute_of_interest(std::string_view element, std::string_view name) {
  return has(kAttributes, name) || (element == "Stage" && name == "number");
}

bool holds_number(std::string_view element) { return has(kNumbers, element); }

}  // namespace triglub::checks
