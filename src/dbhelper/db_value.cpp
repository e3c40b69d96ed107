// Values and null texts as the engine answers them, at the texts that the classic interface gives.
#include "dbhelper/db_value.h"

#include "dbhelper.h"
#include "platform/text.h"

namespace triglub {

void read_value(Dbptr db, const std::string& field, std::string* text) {
  ValueText value;
  if (dbget(db, value.data()) == dbINVALID) {
    throw dbquery_error("dbget was unable to retrieve value of field [" + field + "]");
  }
  *text = strtrim(value.data());
}

const std::string& null_value(ConversionState& state, Dbptr db) {
  const auto [entry, is_new] = state.null_texts.try_emplace(db.field * 1001);
  // A query that fails leaves the empty text, and is not asked again.
  if (is_new) dbquery(db, dbNULL_VALUE, entry->second);
  return entry->second;
}

}  // namespace triglub
