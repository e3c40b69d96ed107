// The document of a database of several networks, written network by network.
//
// The library takes a category's records from its first to its last in station order. That is exact where stations of
// different networks do not interleave, so each network is converted by itself, as in a process of its own, and stands
// inside the one root element that a conversion of everything would have.
#ifndef TRIGLUB_TOOL_NETWORKS_H
#define TRIGLUB_TOOL_NETWORKS_H

#include <optional>
#include <string>
#include <vector>

#include "conversion.h"
#include "tool/output.h"
#include "tool/subset.h"

namespace triglub::tool {

// What is to be converted, and how.
struct Request {
  std::string source;  // the database by name, for messages
  triglub::Conversion* conversion = nullptr;
  Dbptr db;
  Pf* pf = nullptr;
  Conditions conditions;
  Conditions late_conditions{};  // of tables that only the master view has
  unsigned int flags = 0;
};

// The master view over all that the request selects. Throws what the library throws.
Dbptr master_view(const Request& request);

// Writes the root element with its networks, which up to `jobs` processes convert side by side. `everything` is the
// master view of the request, which has records. The document is the same for any number of jobs. Ends the process when
// a network cannot be written.
void write_document(Output& output, const Request& request, Dbptr everything, unsigned int jobs);

}  // namespace triglub::tool

#endif
