// Documents against a published schema of FDSN StationXML.
#ifndef TRIGLUB_TESTS_CURVES_STATION_SCHEMA_H
#define TRIGLUB_TESTS_CURVES_STATION_SCHEMA_H

#include <string>

namespace triglub_curves {

// True where the schema of that version ("1.2") is at hand.
bool has_schema(const std::string& version);

// What the schema says against the document; empty when it is valid. std::runtime_error where the schema is not read or
// the document is not well-formed.
std::string faults_of(const std::string& document, const std::string& version);

}  // namespace triglub_curves

#endif
