// A second implementation of the second edition of the writing rules, as plain as it can be: all rows looked at for
// each piece of time, all records for each element. It is slow and right by inspection; the library is held against it.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_WRITER_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_WRITER_H

#include <string>

#include "reference/edition2/case.h"

namespace triglub_reference::edition2 {

Outcome plain_conversion(const Request& request);

// The element tree as the text of a parameter file.
std::string tree_text(const Tree& tree);

}  // namespace triglub_reference::edition2

#endif
