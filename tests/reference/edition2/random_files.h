// Random response files: filters of every type, symmetric in every way and nearly so, of numbers that are awkward to
// write.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_RANDOM_FILES_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_RANDOM_FILES_H

#include <string>

#include "reference/case.h"
#include "reference/random_case.h"

namespace triglub_reference::edition2 {

// A number as a file may have it: few digits or all seventeen, very small or very large, zeros with signs.
std::string awkward_number(Random& random);

// Of the type paz, iir, fir, fap or fap2. Rates are above 0; delays are a few samples, or not stated.
Filter random_filter(Random& random, const std::string& type);
Filter random_filter(Random& random);

// A file with one filter; at times with none that can be used: several, of an unknown type, or a fault in it. At times
// of no rate.
ResponseFile random_file(Random& random);

}  // namespace triglub_reference::edition2

#endif
