// Documents of one channel epoch with stages made by hand.
//
//     epoch_of(stage("<PolesZeros>...</PolesZeros>", 5, 1) + stage(kDigital, 2, 1))
#ifndef TRIGLUB_TESTS_CURVES_MADE_DOCUMENT_H
#define TRIGLUB_TESTS_CURVES_MADE_DOCUMENT_H

#include <initializer_list>
#include <string>

#include "curves/response_document.h"

namespace triglub_curves {

inline const std::string kUnits = "<InputUnits><Name>V</Name></InputUnits><OutputUnits><Name>V</Name></OutputUnits>";

inline std::string tagged(const std::string& tag, const std::string& content) {
  return "<" + tag + ">" + content + "</" + tag + ">";
}

inline std::string stage(const std::string& content, double gain, double frequency) {
  return "<Stage number=\"1\">" + content + "<StageGain><Value>" + std::to_string(gain) + "</Value><Frequency>" +
         std::to_string(frequency) + "</Frequency></StageGain></Stage>";
}

inline std::string decimation(double rate, double correction = 0) {
  return "<Decimation><InputSampleRate>" + std::to_string(rate) +
         "</InputSampleRate><Factor>1</Factor><Offset>0</Offset><Delay>0</Delay><Correction>" +
         std::to_string(correction) + "</Correction></Decimation>";
}

inline std::string roots(const std::string& tag, std::initializer_list<const char*> reals) {
  std::string text;
  for (const char* real : reals) {
    text += "<" + tag + " number=\"0\"><Real>" + real + "</Real><Imaginary>0</Imaginary></" + tag + ">";
  }
  return text;
}

inline std::string poles_zeros(const std::string& type, const std::string& factor, const std::string& zeros_poles) {
  return tagged("PolesZeros", kUnits + tagged("PzTransferFunctionType", type) + tagged("NormalizationFactor", factor) +
                                  tagged("NormalizationFrequency", "1") + zeros_poles);
}

inline std::string values(const std::string& tag, std::initializer_list<const char*> numbers) {
  std::string text;
  for (const char* number : numbers) text += tagged(tag, number);
  return text;
}

inline std::string coefficients(const std::string& type, const std::string& numbers) {
  return tagged("Coefficients", kUnits + tagged("CfTransferFunctionType", type) + numbers);
}

inline std::string fir(const std::string& symmetry, std::initializer_list<const char*> numbers) {
  return tagged("FIR", kUnits + tagged("Symmetry", symmetry) + values("NumeratorCoefficient", numbers));
}

inline std::string sensitivity(const std::string& units, const std::string& frequency) {
  return "<InstrumentSensitivity><Value>1</Value><Frequency>" + frequency + "</Frequency><InputUnits><Name>" + units +
         "</Name></InputUnits><OutputUnits><Name>counts</Name></OutputUnits></InstrumentSensitivity>";
}

inline std::string document_of(const std::string& response) {
  return "<FDSNStationXML xmlns=\"http://www.fdsn.org/xml/station/1\"><Network code=\"KR\"><Station code=\"AAK\">"
         "<Channel code=\"BHZ\" locationCode=\"00\" startDate=\"2000-01-01T00:00:00Z\"><Response>" +
         response + "</Response></Channel></Station></Network></FDSNStationXML>";
}

inline ChannelEpoch epoch_of(const std::string& response) { return read_responses(document_of(response)).at(0); }

}  // namespace triglub_curves

#endif
