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
  bool follow_outside = false;  // response files may be outside of the folders of the tables that name them
  unsigned int jobs = 1;        // processes that write networks side by side
};

inline ResponseReach reach_of(const ConvertOptions& options) {
  return options.follow_outside ? ResponseReach::anywhere : ResponseReach::below_table;
}

// Writes the document. The exit status: 0, or 1 when the data could not be converted (after messages).
int convert(const ConvertOptions& options);

}  // namespace triglub::tool

#endif
