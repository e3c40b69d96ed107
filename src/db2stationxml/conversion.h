// What the files of the conversion share behind the public header.
#ifndef TRIGLUB_SRC_DB2STATIONXML_CONVERSION_H
#define TRIGLUB_SRC_DB2STATIONXML_CONVERSION_H

#include <string>

#include "platform/parfile.h"

namespace triglub {

// The parameter file of the latest call, from which groups are built. Not owned; null before the first call.
Pf* conversion_parameters();

// True when the document is cut at groups with that tag: they and everything below them are left out.
bool is_cut(const std::string& tag);

}  // namespace triglub

#endif
