// The value of a line of the element tree at one record.
#ifndef TRIGLUB_TESTS_REFERENCE_REFERENCE_VALUE_H
#define TRIGLUB_TESTS_REFERENCE_REFERENCE_VALUE_H

#include <map>
#include <string>
#include <vector>

#include "reference/case.h"
#include "reference/reference_view.h"

namespace triglub_reference {

// The field, or std::runtime_error.
ViewField required_field(const std::string& name);

// The line's value as it is written; complaints go to `log`.
std::string evaluate(const Line& line, const Record& record, const std::map<std::string, std::string>& site,
                     std::vector<std::string>& log);

}  // namespace triglub_reference

#endif
