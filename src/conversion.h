// What the files of the conversion share behind the public header.
#ifndef TRIGLUB_SRC_CONVERSION_H
#define TRIGLUB_SRC_CONVERSION_H

#include <string>

#include "elements.h"
#include "platform/parfile.h"

namespace triglub {

// The parameter file of the latest call, from which groups are built. Not owned; null before the first call.
Pf* conversion_parameters();

// The group definition of that name, read from the parameter file when first asked for in a call, then shared. Throws
// as ElementGroup's constructor does.
const ElementGroup& group_definition(const std::string& name);

// True when the document is cut at the group: it and everything below it are left out.
bool is_cut(const ElementGroup& group);

}  // namespace triglub

#endif
