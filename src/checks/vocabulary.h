// The names of elements and attributes that rules look at. All others are passed over with what is in them.
#ifndef TRIGLUB_CHECKS_VOCABULARY_H
#define TRIGLUB_CHECKS_VOCABULARY_H

#include <string_view>

namespace triglub::checks {

bool is_element_of_interest(std::string_view name);
bool is_attribute_of_interest(std::string_view element, std::string_view name);
// An element whose text has to be a number.
bool holds_number(std::string_view element);

}  // namespace triglub::checks

#endif
