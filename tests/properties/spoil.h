// Databases as they must not be, but are found: nulls, numbers at their limits, texts of any bytes, rows that are
// doubled, dropped, moved to other keys or end before they begin, response files that say nothing sensible.
#ifndef TRIGLUB_TESTS_PROPERTIES_SPOIL_H
#define TRIGLUB_TESTS_PROPERTIES_SPOIL_H

#include <string>
#include <utility>

#include "properties/databases.h"
#include "reference/random_case.h"

namespace triglub_properties {

using triglub_reference::Random;

// One of the database's response files, which must have some: its name and its text.
const std::pair<const std::string, std::string>& any_file(Random& random, const Database& database);

// Spoils a few places of the database, or many.
void spoil(Random& random, Database& database);

}  // namespace triglub_properties

#endif
