// The exported variables, and the one state that refers to them.
#include "state/process_state.h"

#include "db2stationxml.h"
#include "dbhelper.h"
#include "elements/keywords.h"

unsigned int verbosity = 0;
unsigned int xml_depth = 0;
std::string date_xml_with_ms_format = triglub::kNoDateFormat;
std::string date_xml_format = triglub::kNoDateFormat;
std::map<std::string, GroupType> INTERPRETERS = triglub::keyword_codes();

namespace triglub {

ConversionState& process_state() {
  static ConversionState state(::verbosity, ::xml_depth, ::date_xml_with_ms_format, ::date_xml_format, ::INTERPRETERS);
  return state;
}

}  // namespace triglub
