// Single values of a view, for the files of the conversion that ask for the same field again and again.
#ifndef TRIGLUB_SRC_DBHELPER_DB_VALUE_H
#define TRIGLUB_SRC_DBHELPER_DB_VALUE_H

#include <array>
#include <string>

#include "platform/database.h"
#include "state/conversion_state.h"

namespace triglub {

// Room for one value as text, as dbget asks for it.
using ValueText = std::array<char, MAX_VALUE_BYTES + 1>;

// The trimmed text of the handle's field and record, in place of what *text held. Throws as db_fieldlookup does, with
// the field's name.
void read_value(Dbptr db, const std::string& field, std::string* text);

// As get_nullvalue; the text stays for the life of the state.
const std::string& null_value(ConversionState& state, Dbptr db);

}  // namespace triglub

#endif
