// `triglub convert`: a database to a StationXML document.
#ifndef TRIGLUB_TOOL_CONVERT_H
#define TRIGLUB_TOOL_CONVERT_H

#include <string>
#include <vector>

#include "conversion.h"
#include "tool/subset.h"

namespace triglub::tool {

// What the command line asks for.
struct ConvertOptions {
  std::string source;
  std::string output;  // empty or "-": standard output
  std::string parameters = "stationxml";
  DetailLevel level = DetailLevel::response;
  unsigned int verbosity = 0;  // 0 to 3
  Conditions conditions;
  bool strict = false;
  bool follow_outside = false;  // response files outside of their table's folder are read
  unsigned int jobs = 1;        // processes that write networks side by side
};

// Writes the document. The exit status: 0, or 1 when the data could not be converted (after messages).
int convert(const ConvertOptions& options);

}  // namespace triglub::tool

#endif
