// What stands in the document for a line that is no group.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_VALUE_TEXT_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_VALUE_TEXT_H

#include <map>
#include <string>

#include "reference/edition2/case.h"
#include "reference/edition2/expression.h"
#include "reference/edition2/rows.h"

namespace triglub_reference::edition2 {

// The value of the line at the first of an element's records, as XML text; empty where there is none. A quotation mark
// is an entity in attributes.
std::string value_text(const Line& line, const RecordList& records, const std::map<std::string, std::string>& site,
                       bool is_attribute);

// The number of distinct values that are not null.
long distinct_values(const Node& node, const RecordList& records);

}  // namespace triglub_reference::edition2

#endif
