// The names of units.
#ifndef TRIGLUB_CHECKS_UNIT_NAMES_H
#define TRIGLUB_CHECKS_UNIT_NAMES_H

#include <string_view>

namespace triglub::checks {

// One of the names that FDSN has for units, in SI spelling or in an older one, whatever the case of its letters.
bool is_known_unit(std::string_view name);
// Letter case aside.
bool is_same_unit(std::string_view a, std::string_view b);

}  // namespace triglub::checks

#endif
