// The split of records by category, as the exported functions define it: the exact form, one search or look at a time.
// category_runs.h has the fast form for the records of most tables.
#ifndef TRIGLUB_SRC_WRITER_CATEGORIES_H
#define TRIGLUB_SRC_WRITER_CATEGORIES_H

#include <string>
#include <vector>

#include "elements.h"
#include "platform/database.h"
#include "smartindex.h"
#include "state/conversion_state.h"

namespace triglub {

// As get_categories and pseudo_subset, with FatalFailure where those end the process.
std::vector<std::string> categories_of(const ConversionState& state, Dbptr db, const ElementDescription& line,
                                       const SmartIndex& index);
SmartIndex records_of_category(const ConversionState& state, Dbptr db, const std::string& expression,
                               const SmartIndex& index);

// The trace line of a look for a line's categories.
void trace_categories(const ConversionState& state, const ElementDescription& line);

}  // namespace triglub

#endif
