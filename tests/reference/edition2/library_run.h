// The library's side of a comparison: a case as files, and the conversion of them.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_LIBRARY_RUN_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_LIBRARY_RUN_H

#include <string>

#include "reference/edition2/case.h"

namespace triglub_reference::edition2 {

// What the library says meanwhile is kept from standard error. Changes TRIGLUB_PFPATH.
Outcome library_conversion(const Request& request);

// Everything that is needed to see the case again.
std::string describe(const Request& request);

}  // namespace triglub_reference::edition2

#endif
