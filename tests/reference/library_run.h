// The library's side of a comparison: cases as files, conversions in a process of their own.
#ifndef TRIGLUB_TESTS_REFERENCE_LIBRARY_RUN_H
#define TRIGLUB_TESTS_REFERENCE_LIBRARY_RUN_H

#include <string>
#include <vector>

#include "reference/case.h"

namespace triglub_reference {

// The element tree as the text of a parameter file.
std::string tree_text(const Tree& tree);

// Everything that is needed to see the case again.
std::string describe(const Request& request);

// Runs the conversions one after the other in one new process: a fatal report of one ends the list, and what the
// library keeps from call to call stays among them. A process that crashes gives fewer outcomes than it should.
std::vector<Outcome> library_conversions(const std::vector<Request>& requests);

}  // namespace triglub_reference

#endif
