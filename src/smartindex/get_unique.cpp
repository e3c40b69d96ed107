// The distinct texts of a field over the selected records: one pass over the index's runs, an ordered set.
#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dbhelper.h"
#include "platform/database.h"
#include "platform/text.h"
#include "smartindex.h"

std::vector<std::string> get_unique(Dbptr db, std::string field, SmartIndex index) {
  db = db_setfield(db, std::move(field));
  db_getfieldtype(db);  // only for its failure: a field without a type has no values to list
  const auto record_count = static_cast<unsigned long>(db_nrecs(db));

  std::set<std::string, std::less<>> values;
  std::array<char, MAX_VALUE_BYTES + 1> buffer{};
  std::string_view latest;
  for (const auto& [begin, end] : index.runs()) {
    for (unsigned long record = begin; record < std::min(end, record_count); ++record) {
      db.record = static_cast<std::int64_t>(record);
      // A value that cannot be read leaves the text of the record before it, which is in the set already (or is the
      // empty text, at the first record): one bad value never stops the listing.
      dbget(db, buffer.data());
      const std::string_view value = strtrim(buffer.data());
      if (!values.empty() && value == latest) continue;  // records of one station stand together
      auto place = values.find(value);
      if (place == values.end()) place = values.emplace(value).first;
      latest = *place;
    }
  }
  return {values.begin(), values.end()};
}
